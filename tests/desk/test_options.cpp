#include "desk/OptionsFile.h"
#include "detection/SimulatedRemoteAccess.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Options.h"
#include "frame/Services.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"
#include "support/TestServices.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace minutor;

namespace {

struct Setup : test::TestServices {
  SimulatedRemoteAccess remote;
};

// Points XDG_CONFIG_HOME somewhere else for the life of a test.
class ConfigHome {
 public:
  explicit ConfigHome(const QString& path) : old_(qgetenv("XDG_CONFIG_HOME")) {
    qputenv("XDG_CONFIG_HOME", path.toUtf8());
  }
  ~ConfigHome() { qputenv("XDG_CONFIG_HOME", old_); }

 private:
  QByteArray old_;
};

}  // namespace

class TestOptions : public QObject {
  Q_OBJECT

 private slots:
  void optionsFileRoundTripsAndFeedsTheStartUpReader() {
    Setup s;
    QCOMPARE(ReadOptionsSettings(s.data.dir()).currency, 0);  // missing file

    OptionsSettings o;
    o.currency = 11;
    o.samePrograms = true;
    o.startMinimized = true;
    o.autostart = true;
    o.onlyMarkedEntries = true;
    QVERIFY(WriteOptionsSettings(s.data.dir(), o));
    QCOMPARE(s.data.read(QStringLiteral("Config/Options.cfg")),
             QByteArray(" 11 \r\n 1 \r\n 0 \r\n 1 \r\n 1 \r\n 1 \r\n"));

    const OptionsSettings back = ReadOptionsSettings(s.data.dir());
    QCOMPARE(back.currency, 11);
    QVERIFY(back.samePrograms && !back.hideToTray && back.startMinimized && back.autostart &&
            back.onlyMarkedEntries);

    // The start-up reader and the panel agree on what the file means.
    AppState fromStartUp;
    LoadOptions(s.data.dir(), fromStartUp);
    ApplyOptionsSettings(s.state, back);
    QCOMPARE(s.state.Waehrung, QStringLiteral("chK"));
    QCOMPARE(fromStartUp.Waehrung, s.state.Waehrung);
    QCOMPARE(fromStartUp.SamePrograms, s.state.SamePrograms);
    QCOMPARE(fromStartUp.StartMinimized, s.state.StartMinimized);
    QCOMPARE(fromStartUp.OnlyMarkedEntries, s.state.OnlyMarkedEntries);

    for (const QByteArray& currency : {QByteArray("12"), QByteArray("-1"), QByteArray("Dollar")}) {
      s.data.write(QStringLiteral("Config/Options.cfg"), currency + "\r\n1\r\n");
      QCOMPARE(ReadOptionsSettings(s.data.dir()).currency, 0);
    }
    QCOMPARE(CurrencyNames().size(), 12);
    QCOMPARE(CurrencySign(static_cast<int>(CurrencyNames().indexOf(QStringLiteral("Pfund")))),
             QStringLiteral("£"));
  }

  void denyListKeepsOrderAndToleratesAnOddFile() {
    Setup s;
    QVERIFY(ReadDenyList(s.data.dir()).isEmpty());
    QVERIFY(
        WriteDenyList(s.data.dir(), {{QStringLiteral("Mobilfunk"), true}, {QStringLiteral("Büro"), false}}));
    QCOMPARE(s.data.read(QStringLiteral("DialUp/Deny.sec")),
             QByteArray("Mobilfunk\r\n 1 \r\nB\xfcro\r\n 0 \r\n"));

    s.data.write(QStringLiteral("DialUp/Deny.sec"), "Mobilfunk\n1\nLetzter ohne Wert\n");
    const QList<DenyEntry> entries = ReadDenyList(s.data.dir());
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries[1].name, QStringLiteral("Letzter ohne Wert"));
    QVERIFY(entries[0].allowed && !entries[1].allowed);
  }

  void theGuardCutsWhatIsNotMarked() {
    Setup s;
    s.remote.AddEntry(QStringLiteral("Mobilfunk"));
    s.remote.AddEntry(QStringLiteral("Dialer 0190"));
    const QString dialer = s.remote.BringUp(QStringLiteral("Dialer 0190"));
    QVERIFY(!IsUnwantedConnection(s.services, s.remote));  // guard off
    QVERIFY(s.remote.hangUps.isEmpty());

    s.state.OnlyMarkedEntries = true;
    QVERIFY(IsUnwantedConnection(s.services, s.remote));  // no Deny.sec: everything named is cut
    QCOMPARE(s.remote.hangUps, QStringList{dialer});
    QVERIFY(!IsUnwantedConnection(s.services, s.remote));  // nothing reported, nothing cut

    // Odd file: the last name has no value and isn't allowed; names are case-blind.
    s.data.write(QStringLiteral("DialUp/Deny.sec"), "MOBILFUNK\r\n1\r\nDialer 0190\r\n");
    s.remote.BringUp(QStringLiteral("Mobilfunk"));
    QVERIFY(!IsUnwantedConnection(s.services, s.remote));
    s.remote.BringUp(QStringLiteral("Dialer 0190"));  // the last connection is the one judged
    QVERIFY(IsUnwantedConnection(s.services, s.remote));
    QCOMPARE(s.remote.hangUps.size(), 2);
    QCOMPARE(s.remote.GetRasConnections().size(), 1);
    QVERIFY(s.prompter.messages.isEmpty());

    // An entry added to the system later is cut until it is marked.
    s.remote.AddEntry(QStringLiteral("Neu"));
    s.remote.BringUp(QStringLiteral("Neu"));
    QVERIFY(IsUnwantedConnection(s.services, s.remote));
  }

  void autostartFileIsWrittenAndRemoved() {
    QTemporaryDir home;
    ConfigHome config(home.path() + QStringLiteral("/conf"));
    test::RecordingPrompter prompter;
    const QString file = home.path() + QStringLiteral("/conf/autostart/minutor.desktop");
    QCOMPARE(AutostartFile(), file);

    SetAutostart(true, QStringLiteral("/opt/Min utor/bin/minutor"), prompter);
    QFile desktop(file);
    QVERIFY(desktop.open(QIODevice::ReadOnly));
    const QByteArray text = desktop.readAll();
    desktop.close();
    QVERIFY(text.startsWith("[Desktop Entry]\n"));
    QVERIFY(text.contains("\nType=Application\n"));
    QVERIFY(text.contains("\nName=Minutor\n"));
    QVERIFY(text.contains("\nExec=\"/opt/Min utor/bin/minutor\"\n"));
    QVERIFY(prompter.messages.isEmpty());

    QVERIFY(WriteAutostartFile(QStringLiteral("/usr/bin/minutor")));
    QVERIFY(desktop.open(QIODevice::ReadOnly));
    QVERIFY(desktop.readAll().contains("\nExec=/usr/bin/minutor\n"));
    desktop.close();

    SetAutostart(false, {}, prompter);
    QVERIFY(!QFile::exists(file));
    QVERIFY(RemoveAutostartFile());  // already gone
    QVERIFY(prompter.messages.isEmpty());
  }

  void autostartThatCantBeWrittenTellsTheUser() {
    QTemporaryDir home;
    const QString notAFolder = home.path() + QStringLiteral("/file");
    QFile plain(notAFolder);
    QVERIFY(plain.open(QIODevice::WriteOnly));
    plain.close();
    ConfigHome config(notAFolder);
    test::RecordingPrompter prompter;
    SetAutostart(true, QStringLiteral("/usr/bin/minutor"), prompter);
    QCOMPARE(prompter.messages,
             QStringList{QStringLiteral("Konnte den Autostart nicht einrichten. Bitte erstellen Sie manuell "
                                        "einen Link im Autostart Menü des Startmenüs.")});

    ConfigHome relative(QStringLiteral("relativ"));  // not absolute: ignored
    QCOMPARE(AutostartFile(), QDir::homePath() + QStringLiteral("/.config/autostart/minutor.desktop"));
  }
};

QTEST_GUILESS_MAIN(TestOptions)
#include "test_options.moc"
