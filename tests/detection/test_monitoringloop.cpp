#include "detection/MonitoringLoop.h"
#include "detection/SimulatedRemoteAccess.h"
#include "support/FakeProbes.h"
#include "support/TestServices.h"

#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

struct Loop : test::TestServices {
  SimulatedRemoteAccess remote;
  test::FakeNetwork network;
  test::FakeHost host;
  MonitoringLoop loop{services, remote, network, host};

  Loop() {
    state.AktuellerTarif = u"Funkwelle - Tag und Nacht.tel"_s;
    state.MethodIE = false;
    state.IgnoredIPTable = {u"127.*.*.*"_s};
  }

  // Runs one check; gives the detection sources that asked for a start.
  QList<int> check() {
    QList<int> starts;
    loop.Check([&] {
      starts.append(state.DetectionSource);
      state.RecordingActive = true;  // the start is synchronous in the program
    });
    state.RecordingActive = false;
    return starts;
  }
};

}  // namespace

class TestMonitoringLoop : public QObject {
  Q_OBJECT

 private slots:
  void probesStartARecordingInTheirOrder() {
    Loop l;
    QVERIFY(l.check().isEmpty());
    l.state.MethodIP = true;
    QVERIFY(l.check().isEmpty());  // only the loopback, which is ignored
    l.host.addresses->append(u"10.64.3.7"_s);
    QCOMPARE(l.check(), QList<int>{3});
    l.state.MethodTAPI = true;
    l.state.TapiOnline = true;
    QCOMPARE(l.check(), QList<int>{2});  // the first probe blocks the later ones
    l.state.MethodIE = true;
    QCOMPARE(l.check(), QList<int>{1});  // the Internet state answers yes at every poll
    // Without a tariff there is nothing to meter with: the loop waits.
    l.state.AktuellerTarif.clear();
    QVERIFY(l.check().isEmpty());
    l.state.AktuellerTarif = u"Funkwelle - Tag und Nacht.tel"_s;
    l.state.MonitoringOn = false;
    QVERIFY(l.check().isEmpty());
  }

  void onlyTheStartingProbeEndsTheRecording() {
    Loop l;
    l.host.addresses->append(u"10.64.3.7"_s);
    l.state.DetectionSource = 3;
    QVERIFY(!l.loop.ConnectionEnded());
    l.host.addresses = QStringList{"127.0.0.1"};
    QVERIFY(l.loop.ConnectionEnded());
    l.state.DetectionSource = 0;  // by hand: never ended by monitoring
    QVERIFY(!l.loop.ConnectionEnded());
    l.state.DetectionSource = 2;
    QVERIFY(l.loop.ConnectionEnded());
    l.state.TapiOnline = true;
    QVERIFY(!l.loop.ConnectionEnded());
    l.state.TapiOnline = l.state.MonitoringOn = false;
    QVERIFY(!l.loop.ConnectionEnded());
  }

  // Which entries are cut is the guard's own test; the loop asks it only when
  // it is on, and records nothing while no line is reported.
  void theGuardCutsUnmarkedEntries() {
    Loop l;
    l.remote.AddEntry(u"Dialer 0190"_s);
    l.remote.BringUp(u"Dialer 0190"_s);
    QVERIFY(!l.loop.CheckAllowedEntry());  // guard off
    l.state.OnlyMarkedEntries = true;
    QVERIFY(l.loop.CheckAllowedEntry());
    QVERIFY(l.remote.GetRasConnections().isEmpty());
    QVERIFY(l.loop.CheckAllowedEntry());
  }

  void detectedConnectionsTakeTheirEntrysTariff() {
    Loop l;
    l.state.AktuellerTarif = u"Gewählt - Vorher.tel"_s;
    l.remote.AddEntry(u"Mobilfunk"_s);
    l.remote.BringUp(u"Mobilfunk"_s, u"ttyUSB0"_s, u"wwan0"_s);
    l.data.write(u"DialUp/mobilfunk.TRF"_s, "Funkwelle\r\nA - Tag und Nacht\r\n");

    DetectedConnection connection;
    QString interfaceName;
    l.state.DetectionSource = 0;  // by hand: the Overview's choice stands
    l.loop.DetectConnection(connection, &interfaceName);
    QVERIFY(connection.name == u"Mobilfunk"_s && connection.device == u"ttyUSB0"_s);
    QCOMPARE(interfaceName, u"wwan0"_s);
    QCOMPARE(l.state.AktuellerTarif, u"Gewählt - Vorher.tel"_s);

    l.state.DetectionSource = 1;
    l.loop.DetectConnection(connection, &interfaceName);
    QCOMPARE(l.state.AktuellerTarif, u"Funkwelle - Tag und Nacht.atl"_s);
    // No tariff of the entry's own: the one chosen stays.
    l.data.write(u"DialUp/mobilfunk.TRF"_s, "Funkwelle\r\nX\r\n");
    l.state.AktuellerTarif = u"Bleibt - So.tel"_s;
    l.loop.DetectConnection(connection, &interfaceName);
    QCOMPARE(l.state.AktuellerTarif, u"Bleibt - So.tel"_s);

    // An entry whose name can't be a file name has no tariff of its own.
    QCOMPARE(EntryTariff(l.data.dir(), u"../Tarife/x"_s), QString());
  }
};

QTEST_APPLESS_MAIN(TestMonitoringLoop)
#include "test_monitoringloop.moc"
