#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/datadir/ClockText.h"
#include "metering/ConnectionRecord.h"
#include "metering/TrafficSource.h"
#include "metering/ui/ConnectionPanel.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace minutor;

namespace {

const QByteArray kTariff =
    "[Providerdaten]\r\nName:Test - Minute\r\nVolumenabrechnung:Nein\r\nTakt:60/60\r\n"
    "Gespr\344chsgrundgeb\374hr:0\r\n[Tarifzonen]\r\n"
    "Zone:Tag\r\nVon:0\r\nBis:24\r\nPfennig:6\r\nEinheit:60\r\nWochenende:Nein\r\n";

// A data directory with one tariff, and what a panel is built with.
struct Setup {
  test::TempDataDir data;
  AppState state;
  FixedClock clock{QDateTime(QDate(2024, 1, 2), QTime(20, 15, 0))};
  test::RecordingPrompter prompter;
  NoTrafficSource traffic;
  Services services{state, data.dir(), clock, prompter};

  Setup() {
    data.write(QStringLiteral("Tarife/Test - Minute.tel"), kTariff);
    state.AktuellerTarif = QStringLiteral("Test - Minute.tel");
  }
};

// The next one-second tick, as the panel's timer gives it.
void Tick(ConnectionPanel& panel, FixedClock& clock) {
  auto* timer = panel.findChild<QTimer*>(QStringLiteral("RSTimer"));
  QVERIFY(timer && timer->isActive());
  clock.Advance(1);
  QVERIFY(QMetaObject::invokeMethod(timer, "timeout"));
}

}  // namespace

class TestConnectionPanel : public QObject {
  Q_OBJECT

 private slots:
  void metersARecordingFromLoadToStop() {
    Setup s;
    s.data.write(QStringLiteral("Config/Smallwindow.cfg"), " 1 \r\n");
    s.data.write(QStringLiteral("Config/Timesync.cfg"), " 1 \r\n");
    ConnectionPanel panel(s.services, s.traffic);
    QCOMPARE(panel.objectName(), QStringLiteral("Connection"));
    QCOMPARE(panel.windowTitle(), QStringLiteral("Verbindungsübersicht"));
    QCOMPARE(panel.LabelText(QStringLiteral("lblConnectionName")), QStringLiteral("unbekannt"));
    QCOMPARE(panel.LabelText(QStringLiteral("lblBytesIn")), QStringLiteral("0 Bytes"));
    QCOMPARE(panel.LabelText(QStringLiteral("lblRestTag")), QStringLiteral("nicht festgelegt"));
    QCOMPARE(panel.LabelText(QStringLiteral("lblTarifupdates")), QStringLiteral("Keine Tarife gefunden."));

    QSignalSpy started(&panel, &ConnectionPanel::recordingStarted);
    QSignalSpy ticked(&panel, &ConnectionPanel::ticked);
    QSignalSpy captions(&panel, &ConnectionPanel::captionChanged);
    QSignalSpy stopped(&panel, &ConnectionPanel::recordingStopped);
    QSignalSpy smallWindow(&panel, &ConnectionPanel::smallWindowWanted);
    QVERIFY(panel.Load());
    QCOMPARE(started.size(), 1);
    QCOMPARE(smallWindow.size(), 1);
    QVERIFY(smallWindow.first().first().toBool());
    QVERIFY(panel.IsRecording());
    QVERIFY(s.state.RecordingActive);
    QCOMPARE(panel.LabelText(QStringLiteral("lblTarifname")), QStringLiteral("Test - Minute"));
    QCOMPARE(panel.LabelText(QStringLiteral("lblTarifname.Tag")), QStringLiteral("Test - Minute.tel"));
    QCOMPARE(panel.LabelText(QStringLiteral("lblStartzeit.Tag")), QStringLiteral("02012024"));
    QCOMPARE(panel.LabelText(QStringLiteral("lblTimeSync")), QStringLiteral("Uhrzeit wird korrigiert..."));
    QVERIFY(panel.findChild<QCheckBox*>(QStringLiteral("Check2"))->isChecked());
    QVERIFY(panel.findChild<QCheckBox*>(QStringLiteral("Check3"))->isChecked());

    // The first tick comes once the load has ended, the next a second later.
    QCOMPARE(panel.TickCount(), 0);
    QTRY_COMPARE(panel.TickCount(), 1);
    QCOMPARE(ticked.size(), 1);
    QCOMPARE(panel.LabelText(QStringLiteral("lblDauer")), QStringLiteral("00:00:01"));
    QCOMPARE(panel.LabelText(QStringLiteral("lblKosten")), QStringLiteral("0,060 €"));
    QCOMPARE(panel.LabelText(QStringLiteral("lblBytesIn")), QStringLiteral("unbekannt"));
    QCOMPARE(captions.last().first().toString(), QStringLiteral("0,060 € | 00:00:01 | 0.0 | unbekannt"));
    auto* timer = panel.findChild<QTimer*>(QStringLiteral("RSTimer"));
    QCOMPARE(timer->interval(), 1000);
    QCOMPARE(timer->timerType(), Qt::PreciseTimer);
    QTRY_COMPARE_WITH_TIMEOUT(panel.TickCount(), 2, 2000);

    for (int tick = 3; tick <= 61; ++tick) {
      Tick(panel, s.clock);
    }
    QCOMPARE(panel.TickCount(), 61);
    QCOMPARE(panel.LabelText(QStringLiteral("lblKosten")), QStringLiteral("0,120 €"));
    QCOMPARE(panel.LabelText(QStringLiteral("lblEinheiten")), QStringLiteral("2 (59s)"));

    // The boxes save at a click.
    panel.findChild<QCheckBox*>(QStringLiteral("Check1"))->click();
    QCOMPARE(s.data.read(QStringLiteral("Config/Timesync.cfg")), QByteArray(" 0 \r\n"));
    panel.findChild<QCheckBox*>(QStringLiteral("Check3"))->click();
    QCOMPARE(s.data.read(QStringLiteral("Config/Smallwindow.cfg")), QByteArray(" 0 \r\n"));
    QCOMPARE(smallWindow.size(), 2);
    QVERIFY(!smallWindow.last().first().toBool());
    panel.findChild<QCheckBox*>(QStringLiteral("chkKanalbündelung"))->click();
    QVERIFY(s.state.KanalbuendelungAktiv);

    panel.findChild<QPushButton*>(QStringLiteral("cmdStop"))->click();
    QVERIFY(!panel.IsRecording());
    QVERIFY(!s.state.RecordingActive);
    QCOMPARE(stopped.size(), 1);
    QVERIFY(!timer->isActive());
    const auto fields = ReadRecordFields(s.data.path(QStringLiteral("Verbindungen/02012024-201500.con")));
    QVERIFY(fields);
    QCOMPARE(fields->mid(0, 5), (QList<QByteArray>{"S02.01.2024", LongTimeText(QTime(20, 15)).toLatin1(),
                                                   "00:01:01", "S0,12", "2"}));
    panel.CounterStop();
    QCOMPARE(stopped.size(), 1);
  }

  void monitoringAsksBeforeAStopByHand() {
    Setup s;
    s.state.DetectionSource = 1;
    ConnectionPanel panel(s.services, s.traffic);
    QVERIFY(panel.Load());
    QTRY_COMPARE(panel.TickCount(), 1);
    auto* check2 = panel.findChild<QCheckBox*>(QStringLiteral("Check2"));
    auto* stop = panel.findChild<QPushButton*>(QStringLiteral("cmdStop"));

    s.prompter.answers = {Prompter::Answer::No, Prompter::Answer::Yes};
    stop->click();
    QVERIFY(panel.IsRecording());
    stop->click();
    QVERIFY(!panel.IsRecording());
    QVERIFY(!check2->isChecked());
    QCOMPARE(s.data.read(QStringLiteral("Config/Monitoring.cfg")), QByteArray(" 0 \r\n"));

    // A user without the right to change monitoring can't stop it by hand.
    s.state.NoMonitoringSettings = true;
    panel.show();
    QVERIFY(!check2->isEnabled());
    QVERIFY(!stop->isEnabled());
  }

  void noTariffNoRecording() {
    Setup s;
    s.state.AktuellerTarif.clear();
    ConnectionPanel panel(s.services, s.traffic);
    QSignalSpy started(&panel, &ConnectionPanel::recordingStarted);
    QVERIFY(!panel.Load());
    QCOMPARE(started.size(), 0);
    QVERIFY(!s.state.MonitoringOn);
    QVERIFY(s.prompter.messages.first().startsWith(QStringLiteral("Kein Tarif ausgewählt!")));
    QTest::qWait(20);
    QCOMPARE(panel.TickCount(), 0);
    QVERIFY(!s.data.dir().DirExists(QStringLiteral("Verbindungen")));
  }
};

QTEST_MAIN(TestConnectionPanel)
#include "test_connection_panel.moc"
