#include "metering/ConnectionChecks.h"
#include "metering/ConnectionSettings.h"
#include "support/TestServices.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

class TestConnectionSettings : public QObject {
  Q_OBJECT

 private slots:
  void aRecordingNeedsATariffAndAUser() {
    test::TestServices t;
    t.state.AktuellerTarif = u"A - B.tel"_s;
    QVERIFY(TarifCheck(t.services));
    QVERIFY(t.prompter.messages.isEmpty());
    QVERIFY(!t.data.dir().FileExists(u"Config/Monitoring.cfg"_s));

    t.state.ActiveUser.clear();
    QVERIFY(!TarifCheck(t.services));
    QVERIFY(t.prompter.messages.last().startsWith(u"Kein Benutzer ausgewählt!"_s));
    QVERIFY(!t.state.MonitoringOn);
    QCOMPARE(t.data.read(u"Config/Monitoring.cfg"_s), QByteArray(" 0 \r\n"));

    // A handle shorter than four characters is no tariff; it is told first.
    t.state.AktuellerTarif = u".te"_s;
    QVERIFY(!TarifCheck(t.services));
    QVERIFY(t.prompter.messages.last().startsWith(u"Kein Tarif ausgewählt!"_s));
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
    QVERIFY(t.prompter.messages.last().startsWith(u"Die automatiche Erkennung von Verbindungen"_s));
    QVERIFY(ConfirmManualStop(t.services));
    QVERIFY(!t.state.MonitoringOn);
    QCOMPARE(t.data.read(u"Config/Monitoring.cfg"_s), QByteArray(" 0 \r\n"));
  }

  void serviceAndWindowSwitches() {
    test::TempDataDir data;
    const DataDir& dir = data.dir();
    const QDate today(2024, 3, 10);
    QVERIFY(!LoadAutoupdateState(dir, today));
    data.write(u"Config/AUTOUPDATE.cfg"_s, " 1 \r\n 3 \r\n");
    QVERIFY(LoadAutoupdateState(dir, today));  // never updated
    // Three days count as seven.
    const QList<std::pair<const char*, bool>> lastUpdates = {{"04.03.2024", false}, {"03.03.2024", true},
                                                             {"10.03.2024", false}, {"11.03.2024", true},
                                                             {"", false},           {"kaputt!!", true}};
    for (const auto& [last, due] : lastUpdates) {
      data.write(u"Config/Update.cfg"_s, QByteArray(" 4 \r\n") + last + "\r\n");
      QVERIFY2(LoadAutoupdateState(dir, today) == due, last);
    }
    data.write(u"Config/Autoupdate.cfg"_s, " 1 \r\n 14 \r\n");
    data.write(u"Config/Update.cfg"_s, " 4 \r\n27.02.2024\r\n");
    QVERIFY(!LoadAutoupdateState(dir, today));

    QVERIFY(!LoadTimesyncState(dir));
    SaveTimesyncState(dir, true);
    QCOMPARE(data.read(u"Config/Timesync.cfg"_s), QByteArray(" 1 \r\n"));
    QVERIFY(LoadTimesyncState(dir));
    SaveSmallWindowState(dir, true);
    QVERIFY(LoadSmallWindowState(dir));
    data.write(u"Config/Smallwindow.cfg"_s, "ja\r\n");
    QVERIFY(!LoadSmallWindowState(dir));
  }
};

QTEST_APPLESS_MAIN(TestConnectionSettings)
#include "test_connection_settings.moc"
