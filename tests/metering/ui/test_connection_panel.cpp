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
using namespace Qt::StringLiterals;
using test::Find;

namespace {

// A data directory with a tariff of 6 cents a minute, chosen.
struct Setup : test::TestServices {
  NoTrafficSource traffic;

  Setup() : TestServices(QDateTime(QDate(2024, 1, 2), QTime(20, 15, 0))) {
    data.write(u"Tarife/Test - Minute.tel"_s, test::Crlf(test::TimeHead() + test::Zone(0, 24, "6", false)));
    state.AktuellerTarif = u"Test - Minute.tel"_s;
  }
};

}  // namespace

class TestConnectionPanel : public QObject {
  Q_OBJECT

 private slots:
  void metersARecordingFromLoadToStop() {
    Setup s;
    s.data.write(u"Config/Smallwindow.cfg"_s, " 1 \r\n");
    s.data.write(u"Config/Timesync.cfg"_s, " 1 \r\n");
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
    QCOMPARE(panel.LabelText(u"lblTarifname"_s), u"Test - Minute"_s);
    QCOMPARE(panel.LabelText(u"lblTimeSync"_s), u"Uhrzeit wird korrigiert..."_s);
    QVERIFY(Find<QCheckBox>(panel, u"Check2"_s)->isChecked());
    QVERIFY(Find<QCheckBox>(panel, u"Check3"_s)->isChecked());

    // The first tick comes once the load has ended, the next a second later.
    QCOMPARE(panel.TickCount(), 0);
    QTRY_COMPARE(panel.TickCount(), 1);
    QCOMPARE(ticked.size(), 1);
    QCOMPARE(panel.LabelText(u"lblKosten"_s), u"0,060 €"_s);
    QCOMPARE(captions.last().first().toString(), u"0,060 € | 00:00:01 | 0.0 | unbekannt"_s);
    auto* timer = Find<QTimer>(panel, u"RSTimer"_s);
    QTRY_COMPARE_WITH_TIMEOUT(panel.TickCount(), 2, 2000);

    // The timer's next 59 ticks, at once.
    for (int tick = 3; tick <= 61; ++tick) {
      s.clock.Advance(1);
      QVERIFY(QMetaObject::invokeMethod(timer, "timeout"));
    }
    QCOMPARE(panel.LabelText(u"lblKosten"_s), u"0,120 €"_s);

    // The boxes save at a click.
    Find<QCheckBox>(panel, u"Check1"_s)->click();
    QCOMPARE(s.data.read(u"Config/Timesync.cfg"_s), QByteArray(" 0 \r\n"));
    Find<QCheckBox>(panel, u"Check3"_s)->click();
    QCOMPARE(s.data.read(u"Config/Smallwindow.cfg"_s), QByteArray(" 0 \r\n"));
    QCOMPARE(smallWindow.size(), 2);
    QVERIFY(!smallWindow.last().first().toBool());
    Find<QCheckBox>(panel, u"chkKanalbündelung"_s)->click();
    QVERIFY(s.state.KanalbuendelungAktiv);

    Find<QPushButton>(panel, u"cmdStop"_s)->click();
    QVERIFY(!s.state.RecordingActive);
    QVERIFY(!timer->isActive());
    QVERIFY(s.data.dir().FileExists(u"Verbindungen/02012024-201500.con"_s));
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
    auto* check2 = Find<QCheckBox>(panel, u"Check2"_s);
    auto* stop = Find<QPushButton>(panel, u"cmdStop"_s);

    s.prompter.answers = {Prompter::Answer::Yes};
    stop->click();
    QVERIFY(!panel.IsRecording());
    QVERIFY(!check2->isChecked());
    QCOMPARE(s.data.read(u"Config/Monitoring.cfg"_s), QByteArray(" 0 \r\n"));

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
    QVERIFY(!s.data.dir().DirExists(u"Verbindungen"_s));
  }
};

QTEST_MAIN(TestConnectionPanel)
#include "test_connection_panel.moc"
