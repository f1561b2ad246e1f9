#include "desk/LaunchedPrograms.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"
#include "support/TestServices.h"

#include <QFile>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

// Remembers what it was asked to start; refuses the paths in `missing`.
class RecordingLauncher final : public ProgramLauncher {
 public:
  bool Start(const QString& program) override {
    asked << program;
    return !missing.contains(program);
  }
  QStringList asked;
  QStringList missing;
};

struct Setup : test::TestServices {
  RecordingLauncher launcher;
};

}  // namespace

class TestLaunchedPrograms : public QObject {
  Q_OBJECT

 private slots:
  void listFileFollowsSameProgramsAndUsableNames() {
    AppState state;
    QCOMPARE(ProgramListFile(state, u"Mobilfunk"_s), u"DialUp/Mobilfunk.prg"_s);
    QCOMPARE(ProgramListFile(state, u"a/b"_s), QString());
    QCOMPARE(ProgramListFile(state, QString()), QString());
    state.SamePrograms = true;
    QCOMPARE(ProgramListFile(state, u"a/b"_s), u"DialUp/General.prg"_s);
  }

  void writingMakesConfigAndReadsBack() {
    test::TempDataDir data;
    const QList<ProgramListEntry> list = {{u"/usr/bin/thunderbird"_s, true},
                                          {u"/home/ich/Post holen.sh"_s, false}};
    QVERIFY(WriteProgramList(data.dir(), u"DialUp/General.prg"_s, list));
    QVERIFY(data.dir().DirExists(u"Config"_s));
    QCOMPARE(data.read(u"DialUp/General.prg"_s),
             QByteArray("/usr/bin/thunderbird\r\n 1 \r\n/home/ich/Post holen.sh\r\n 0 \r\n"));
    const QList<ProgramListEntry> back = ReadProgramList(data.dir(), u"DialUp/General.prg"_s);
    QCOMPARE(back.size(), 2);
    QCOMPARE(back[1].path, list[1].path);
    QVERIFY(back[0].checked && !back[1].checked);
    QVERIFY(!WriteProgramList(data.dir(), QString(), list));  // an entry without a usable name
  }

  void startsCheckedProgramsInOrderOnlyForOwnDials() {
    Setup s;
    s.data.write(u"DialUp/Mobilfunk.prg"_s,
                 "/bin/eins\r\n1\r\n/bin/aus\r\n0\r\n/weg\r\n1\r\n"
                 "/bin/zwei\r\n1\r\n/bin/ohne Wert\r\n");
    s.data.write(u"DialUp/General.prg"_s, "/bin/allgemein\r\n1\r\n");
    s.launcher.missing = {u"/weg"_s};

    // Detected by monitoring: nothing starts.
    QCOMPARE(LaunchPrograms(s.services, u"Mobilfunk"_s, s.launcher), 0);
    QVERIFY(s.launcher.asked.isEmpty());

    s.state.DialedByProgram = true;
    QCOMPARE(LaunchPrograms(s.services, u"Mobilfunk"_s, s.launcher), 2);
    QCOMPARE(s.launcher.asked, (QStringList{"/bin/eins", "/weg", "/bin/zwei"}));

    // The entry's own list is ignored, but kept, while the general list is in use.
    s.launcher.asked.clear();
    s.state.SamePrograms = true;
    QCOMPARE(LaunchPrograms(s.services, u"Mobilfunk"_s, s.launcher), 1);
    QCOMPARE(s.launcher.asked, QStringList{"/bin/allgemein"});
    QVERIFY(s.data.dir().FileExists(u"DialUp/Mobilfunk.prg"_s));

    s.launcher.asked.clear();
    s.state.SamePrograms = false;
    QCOMPARE(LaunchPrograms(s.services, u"unbekannt"_s, s.launcher), 0);
    QCOMPARE(LaunchPrograms(s.services, u"../Config/Options"_s, s.launcher), 0);
    QVERIFY(s.launcher.asked.isEmpty());
  }

  void theDetachedLauncherRunsProgramsAndDesktopEntries() {
    test::TempDataDir dir;
    auto write = [&](const QString& name, const QByteArray& text) {
      dir.write(name, text);
      return dir.path(name);
    };
    // A script runs in its own folder; a missing program is passed over.
    const QString script = write(u"Post holen.sh"_s, "#!/bin/sh\ntouch gestartet\n");
    QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    DetachedProgramLauncher launcher;
    QVERIFY(!launcher.Start(dir.path(u"gibt es nicht"_s)));
    QVERIFY(launcher.Start(script));
    QTRY_VERIFY(QFile::exists(dir.path(u"gestartet"_s)));

    // Quotes hold an argument together, placeholders for files go, %% and
    // the value escapes are kept as the desktop reads them.
    const QString mail =
        write(u"mail.desktop"_s,
              "[Desktop Entry]\n# comment=no\nName=Post\nName[en]=Mail\nType=Application\n"
              "Exec=\"/opt/Mail Programm/bin/post\" --profile \"a \\\"b\\\" 5%%\" %U -n 100%% --title=%c\n"
              "[Desktop Action New]\nExec=falsch\n");
    QCOMPARE(DesktopEntryCommand(mail), (QStringList{"/opt/Mail Programm/bin/post", "--profile", "a \"b\" 5%",
                                                     "-n", "100%", "--title=Post"}));
    const QString link = write(u"link.desktop"_s, "[Desktop Entry]\nType=Link\nURL=http://example.org\n");
    QVERIFY(DesktopEntryCommand(link).isEmpty() &&
            DesktopEntryCommand(dir.path(u"fehlt.desktop"_s)).isEmpty());
    QVERIFY(!launcher.Start(link));

    const QString marker = dir.path(u"Marker"_s);
    QVERIFY(launcher.Start(write(u"Marker.DESKTOP"_s, "[Desktop Entry]\nType=Application\nExec=touch \"" +
                                                          marker.toUtf8() + "\" %F\n")));
    QTRY_VERIFY(QFile::exists(marker));
  }
};

QTEST_GUILESS_MAIN(TestLaunchedPrograms)
#include "test_launchedprograms.moc"
