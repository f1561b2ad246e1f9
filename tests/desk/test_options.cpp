#include "desk/LaunchedPrograms.h"
#include "desk/OptionsFile.h"
#include "detection/SimulatedRemoteAccess.h"
#include "frame/Options.h"
#include "support/TestServices.h"

#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

class TestOptions : public QObject {
  Q_OBJECT

 private slots:
  void optionsFileRoundTripsAndFeedsTheStartUpReader() {
    test::TestServices s;
    QCOMPARE(ReadOptionsSettings(s.data.dir()).currency, 0);  // missing file
    QVERIFY(WriteOptionsSettings(s.data.dir(), {11, true, false, true, true, true}));
    QCOMPARE(s.data.read(u"Config/Options.cfg"_s), QByteArray(" 11 \r\n 1 \r\n 0 \r\n 1 \r\n 1 \r\n 1 \r\n"));
    const OptionsSettings back = ReadOptionsSettings(s.data.dir());
    QVERIFY(back.samePrograms && !back.hideToTray && back.startMinimized && back.autostart &&
            back.onlyMarkedEntries);

    // The start-up reader and the panel agree on what the file means.
    AppState fromStartUp;
    LoadOptions(s.data.dir(), fromStartUp);
    ApplyOptionsSettings(s.state, back);
    QCOMPARE(s.state.Waehrung, u"chK"_s);
    QCOMPARE(fromStartUp.Waehrung, s.state.Waehrung);
    QVERIFY(fromStartUp.SamePrograms && !fromStartUp.HideToTray && fromStartUp.StartMinimized &&
            fromStartUp.OnlyMarkedEntries);

    for (const QByteArray& currency : {QByteArray("12"), QByteArray("-1"), QByteArray("Dollar")}) {
      s.data.write(u"Config/Options.cfg"_s, currency + "\r\n1\r\n");
      QCOMPARE(ReadOptionsSettings(s.data.dir()).currency, 0);
    }
  }

  void theGuardCutsWhatIsNotMarked() {
    test::TestServices s;
    SimulatedRemoteAccess remote;
    remote.AddEntry(u"Mobilfunk"_s);
    remote.AddEntry(u"Dialer 0190"_s);
    const QString dialer = remote.BringUp(u"Dialer 0190"_s);
    QVERIFY(!IsUnwantedConnection(s.services, remote));  // guard off
    s.state.OnlyMarkedEntries = true;
    QVERIFY(IsUnwantedConnection(s.services, remote));  // no Deny.sec: everything named is cut
    QCOMPARE(remote.hangUps, QStringList{dialer});
    QVERIFY(!IsUnwantedConnection(s.services, remote));  // nothing reported, nothing cut

    // Odd file: the last name has no value and isn't allowed; names are case-blind.
    s.data.write(u"DialUp/Deny.sec"_s, "MOBILFUNK\r\n1\r\nDialer 0190\r\n");
    remote.BringUp(u"Mobilfunk"_s);
    QVERIFY(!IsUnwantedConnection(s.services, remote));
    remote.BringUp(u"Dialer 0190"_s);  // the last connection is the one judged
    QVERIFY(IsUnwantedConnection(s.services, remote));
    QCOMPARE(remote.GetRasConnections().size(), 1);
    QVERIFY(s.prompter.messages.isEmpty());

    // An entry added to the system later is cut until it is marked.
    remote.AddEntry(u"Neu"_s);
    remote.BringUp(u"Neu"_s);
    QVERIFY(IsUnwantedConnection(s.services, remote));

    // Only dialled lines and metered ones are cut, marked or not.
    const QList<std::pair<RasConnection, bool>> kinds = {
        {{{}, "Kabel", "802-3-ethernet", "eth0", "eth0"}, false},
        {{{}, "Funk", "802-11-wireless", "wlan0", "wlan0"}, false},
        {{{}, "Firma", "vpn", "", "tun0"}, false},
        {{{}, "Hotspot", "802-11-wireless", "wlan0", "wlan0", true}, true},
        {{{}, "Stick", "gsm", "ttyUSB0", "wwan0"}, true},
        {{{}, "DSL", "pppoe", "eth0", "ppp0"}, true},
        {{{}, "Handy", "bluetooth", "", "bnep0"}, true}};
    for (const auto& [connection, cut] : kinds) {
      remote.BringUp(connection);
      QVERIFY2(IsUnwantedConnection(s.services, remote) == cut, qPrintable(connection.entryName));
    }

    QVERIFY(WriteDenyList(s.data.dir(), {{u"Mobilfunk"_s, true}, {u"Büro"_s, false}}));
    QCOMPARE(s.data.read(u"DialUp/Deny.sec"_s), QByteArray("Mobilfunk\r\n 1 \r\nB\xfcro\r\n 0 \r\n"));
  }

  void autostartFileIsWrittenRemovedOrReported() {
    const QByteArray oldHome = qgetenv("XDG_CONFIG_HOME");
    const auto restore = qScopeGuard([&] { qputenv("XDG_CONFIG_HOME", oldHome); });
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", (home.path() + u"/conf"_s).toUtf8());
    test::RecordingPrompter prompter;
    const QString file = home.path() + u"/conf/autostart/minutor.desktop"_s;
    auto text = [&] {
      QFile desktop(file);
      return desktop.open(QIODevice::ReadOnly) ? desktop.readAll() : QByteArray();
    };

    SetAutostart(true, u"/opt/Min utor/bin/minutor"_s, prompter);
    QVERIFY(text().startsWith("[Desktop Entry]\n") && text().contains("\nType=Application\n") &&
            text().contains("\nIcon=minutor\n"));
    QVERIFY(text().contains("\nName=Minutor\n") && text().contains("\nExec=\"/opt/Min utor/bin/minutor\"\n"));
    QVERIFY(WriteAutostartFile(u"/usr/bin/minutor"_s));
    QVERIFY(text().contains("\nExec=/usr/bin/minutor\n"));
    // Whatever the program's path holds, the file keeps its lines and a
    // desktop reads the path back whole.
    for (const char* path : {"/opt/a\nName=x\nb/minutor", "/tab\there/x\r", "/q\"$`\\u/m", "/\\n/m"}) {
      QVERIFY(WriteAutostartFile(QString::fromUtf8(path)));
      QCOMPARE(text().count('\n'), 6);
      QCOMPARE(DesktopEntryCommand(file), QStringList{QString::fromUtf8(path)});
    }
    SetAutostart(false, {}, prompter);
    QVERIFY(!QFile::exists(file) && RemoveAutostartFile());  // removing it again is no failure
    QVERIFY(prompter.messages.isEmpty());

    // A configuration folder that is a plain file.
    const QString notAFolder = home.path() + u"/file"_s;
    QVERIFY(QFile(notAFolder).open(QIODevice::WriteOnly));
    qputenv("XDG_CONFIG_HOME", notAFolder.toUtf8());
    SetAutostart(true, u"/usr/bin/minutor"_s, prompter);
    QVERIFY(prompter.messages.size() == 1 && prompter.messages[0].startsWith("Konnte den Autostart nicht"));

    qputenv("XDG_CONFIG_HOME", "relativ");  // not absolute: ignored
    QCOMPARE(AutostartFile(), QDir::homePath() + u"/.config/autostart/minutor.desktop"_s);
  }
};

QTEST_GUILESS_MAIN(TestOptions)
#include "test_options.moc"
