#include "metering/TrafficSource.h"
#include "metering/ui/ConnectionPanel.h"
#include "support/FindControl.h"
#include "support/TestServices.h"
#include "tariffs/TariffText.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace minutor;
using test::Find;

namespace {

// A data directory with a tariff of 6 cents a minute, chosen.
struct Setup : test::TestServices {
  NoTrafficSource traffic;

  Setup() : TestServices(QDateTime(QDate(2024, 1, 2), QTime(20, 15, 0))) {
    data.write(QStringLiteral("Tarife/Test - Minute.tel"),
               test::Crlf(test::TimeHead() + test::Zone(0, 24, "6", false)));
    state.AktuellerTarif = QStringLiteral("Test - Minute.tel");
  }
};

}  // namespace

class TestConnectionPanel : public QObject {
  Q_OBJECT

 private slots:
  void metersARecordingFromLoadToStop() {
    Setup s;
    s.data.write(QStringLiteral("Config/Smallwindow.cfg"), " 1 \r\n");
    s.data.write(QStringLiteral("Config/Timesync.cfg"), " 1 \r\n");
    ConnectionPanel panel(s.services, s.traffic);
    QSignalSpy started(&panel, &ConnectionPanel::recordingStarted);
    QSignalSpy ticked(&panel, &ConnectionPanel::ticked);
    QSignalSpy captions(&panel, &ConnectionPanel::captionChanged);
    QSignalSpy stopped(&panel, &ConnectionPanel::recordingStopped);
    QSignalSpy smallWindow(&panel, &ConnectionPanel::smallWindowWanted);
    QVERIFY(panel.Load());
    QCOMPARE(started.size(), 1);
    QCOMPARE(smallWindow.size(), 1);
    QVERIFY(smallWindow.first().first().toBool());
    QVERIFY(s.state.RecordingActive);
    QCOMPARE(panel.LabelText(QStringLiteral("lblTarifname")), QStringLiteral("Test - Minute"));
    QCOMPARE(panel.LabelText(QStringLiteral("lblTimeSync")), QStringLiteral("Uhrzeit wird korrigiert..."));
    QVERIFY(Find<QCheckBox>(panel, QStringLiteral("Check2"))->isChecked());
    QVERIFY(Find<QCheckBox>(panel, QStringLiteral("Check3"))->isChecked());

    // The first tick comes once the load has ended, the next a second later.
    QCOMPARE(panel.TickCount(), 0);
    QTRY_COMPARE(panel.TickCount(), 1);
    QCOMPARE(ticked.size(), 1);
    QCOMPARE(panel.LabelText(QStringLiteral("lblKosten")), QStringLiteral("0,060 €"));
    QCOMPARE(captions.last().first().toString(), QStringLiteral("0,060 € | 00:00:01 | 0.0 | unbekannt"));
    auto* timer = Find<QTimer>(panel, QStringLiteral("RSTimer"));
    QCOMPARE(timer->interval(), 1000);
    QCOMPARE(timer->timerType(), Qt::PreciseTimer);
    QTRY_COMPARE_WITH_TIMEOUT(panel.TickCount(), 2, 2000);

    // The timer's next 59 ticks, at once.
    for (int tick = 3; tick <= 61; ++tick) {
      s.clock.Advance(1);
      QVERIFY(QMetaObject::invokeMethod(timer, "timeout"));
    }
    QCOMPARE(panel.LabelText(QStringLiteral("lblKosten")), QStringLiteral("0,120 €"));

    // The boxes save at a click.
    Find<QCheckBox>(panel, QStringLiteral("Check1"))->click();
    QCOMPARE(s.data.read(QStringLiteral("Config/Timesync.cfg")), QByteArray(" 0 \r\n"));
    Find<QCheckBox>(panel, QStringLiteral("Check3"))->click();
    QCOMPARE(s.data.read(QStringLiteral("Config/Smallwindow.cfg")), QByteArray(" 0 \r\n"));
    QCOMPARE(smallWindow.size(), 2);
    QVERIFY(!smallWindow.last().first().toBool());
    Find<QCheckBox>(panel, QStringLiteral("chkKanalbündelung"))->click();
    QVERIFY(s.state.KanalbuendelungAktiv);

    Find<QPushButton>(panel, QStringLiteral("cmdStop"))->click();
    QVERIFY(!s.state.RecordingActive);
    QVERIFY(!timer->isActive());
    QVERIFY(s.data.dir().FileExists(QStringLiteral("Verbindungen/02012024-201500.con")));
    // A second stop neither stops again nor writes again.
    panel.CounterStop();
    QCOMPARE(stopped.size(), 1);
  }

  void monitoringAsksBeforeAStopByHand() {
    Setup s;
    s.state.DetectionSource = 1;
    ConnectionPanel panel(s.services, s.traffic);
    QVERIFY(panel.Load());
    QTRY_COMPARE(panel.TickCount(), 1);
    auto* check2 = Find<QCheckBox>(panel, QStringLiteral("Check2"));
    auto* stop = Find<QPushButton>(panel, QStringLiteral("cmdStop"));

    s.prompter.answers = {Prompter::Answer::Yes};
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
    QCOMPARE(s.prompter.messages.size(), 1);
    QTest::qWait(20);
    QCOMPARE(panel.TickCount(), 0);
    QVERIFY(!s.data.dir().DirExists(QStringLiteral("Verbindungen")));
  }
};

QTEST_MAIN(TestConnectionPanel)
#include "test_connection_panel.moc"
