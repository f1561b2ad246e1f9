#include "metering/ConnectionChecks.h"
#include "metering/ConnectionSettings.h"
#include "support/TestServices.h"

#include <QTest>

using namespace minutor;

class TestConnectionSettings : public QObject {
  Q_OBJECT

 private slots:
  void aRecordingNeedsATariffAndAUser() {
    test::TestServices t;
    t.state.AktuellerTarif = QStringLiteral("A - B.tel");
    QVERIFY(TarifCheck(t.services));
    QVERIFY(t.prompter.messages.isEmpty());
    QVERIFY(!t.data.dir().FileExists(QStringLiteral("Config/Monitoring.cfg")));

    t.state.ActiveUser.clear();
    QVERIFY(!TarifCheck(t.services));
    QCOMPARE(t.prompter.messages.last(),
             QStringLiteral("Kein Benutzer ausgewählt! Wählen Sie zuerst einen Benutzer "
                            "aus, bevor Sie die Verbindung starten."));
    QVERIFY(!t.state.MonitoringOn);
    QCOMPARE(t.data.read(QStringLiteral("Config/Monitoring.cfg")), QByteArray(" 0 \r\n"));

    // A handle shorter than four characters is no tariff; it is told first.
    t.state.AktuellerTarif = QStringLiteral(".te");
    QVERIFY(!TarifCheck(t.services));
    QCOMPARE(t.prompter.messages.last(),
             QStringLiteral("Kein Tarif ausgewählt! Wählen Sie zuerst einen Tarif aus, "
                            "bevor Sie die Verbindung starten."));
    QCOMPARE(t.prompter.messages.size(), 2);
  }

  void stoppingByHandSwitchesMonitoringOff() {
    test::TestServices t;
    // Started by hand, or with monitoring off: no question.
    QVERIFY(ConfirmManualStop(t.services));
    t.state.DetectionSource = 1;
    t.state.MonitoringOn = false;
    QVERIFY(ConfirmManualStop(t.services));
    QVERIFY(t.prompter.messages.isEmpty());

    t.state.MonitoringOn = true;
    t.prompter.answers = {Prompter::Answer::No, Prompter::Answer::Yes};
    QVERIFY(!ConfirmManualStop(t.services));
    QVERIFY(t.state.MonitoringOn);
    QVERIFY(
        t.prompter.messages.last().startsWith(QStringLiteral("Die automatiche Erkennung von Verbindungen")));
    QVERIFY(ConfirmManualStop(t.services));
    QVERIFY(!t.state.MonitoringOn);
    QCOMPARE(t.data.read(QStringLiteral("Config/Monitoring.cfg")), QByteArray(" 0 \r\n"));
  }

  void serviceAndWindowSwitches() {
    test::TempDataDir data;
    const DataDir& dir = data.dir();
    const QDate today(2024, 3, 10);
    QVERIFY(!LoadAutoupdateState(dir, today));
    data.write(QStringLiteral("Config/AUTOUPDATE.cfg"), " 1 \r\n 3 \r\n");
    QVERIFY(LoadAutoupdateState(dir, today));  // never updated
    // Three days count as seven.
    const QList<std::pair<const char*, bool>> lastUpdates = {{"04.03.2024", false}, {"03.03.2024", true},
                                                             {"10.03.2024", false}, {"11.03.2024", true},
                                                             {"", false},           {"kaputt!!", true}};
    for (const auto& [last, due] : lastUpdates) {
      data.write(QStringLiteral("Config/Update.cfg"), QByteArray(" 4 \r\n") + last + "\r\n");
      QVERIFY2(LoadAutoupdateState(dir, today) == due, last);
    }
    data.write(QStringLiteral("Config/Autoupdate.cfg"), " 1 \r\n 14 \r\n");
    data.write(QStringLiteral("Config/Update.cfg"), " 4 \r\n27.02.2024\r\n");
    QVERIFY(!LoadAutoupdateState(dir, today));

    QVERIFY(!LoadTimesyncState(dir));
    SaveTimesyncState(dir, true);
    QCOMPARE(data.read(QStringLiteral("Config/Timesync.cfg")), QByteArray(" 1 \r\n"));
    QVERIFY(LoadTimesyncState(dir));
    SaveSmallWindowState(dir, true);
    QVERIFY(LoadSmallWindowState(dir));
    data.write(QStringLiteral("Config/Smallwindow.cfg"), "ja\r\n");
    QVERIFY(!LoadSmallWindowState(dir));
  }
};

QTEST_APPLESS_MAIN(TestConnectionSettings)
#include "test_connection_settings.moc"
