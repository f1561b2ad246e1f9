#include "detection/MonitoringLoop.h"
#include "detection/SimulatedRemoteAccess.h"
#include "support/FakeProbes.h"
#include "support/TestServices.h"

#include <QTest>

using namespace minutor;

namespace {

struct Loop : test::TestServices {
  SimulatedRemoteAccess remote;
  test::FakeNetwork network;
  test::FakeHost host;
  MonitoringLoop loop{services, remote, network, host};

  Loop() {
    state.AktuellerTarif = QStringLiteral("Funkwelle - Tag und Nacht.tel");
    state.MethodIE = false;
    state.IgnoredIPTable = {QStringLiteral("127.*.*.*")};
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
    l.host.addresses->append(QStringLiteral("10.64.3.7"));
    QCOMPARE(l.check(), QList<int>{3});
    l.state.MethodTAPI = true;
    l.state.TapiOnline = true;
    QCOMPARE(l.check(), QList<int>{2});  // the first probe blocks the later ones
    l.state.MethodIE = true;
    QCOMPARE(l.check(), QList<int>{1});  // the Internet state answers yes at every poll
    // Without a tariff there is nothing to meter with: the loop waits.
    l.state.AktuellerTarif.clear();
    QVERIFY(l.check().isEmpty());
    l.state.AktuellerTarif = QStringLiteral("Funkwelle - Tag und Nacht.tel");
    l.state.MonitoringOn = false;
    QVERIFY(l.check().isEmpty());
  }

  void onlyTheStartingProbeEndsTheRecording() {
    Loop l;
    l.host.addresses->append(QStringLiteral("10.64.3.7"));
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

  void theGuardCutsUnmarkedEntries() {
    Loop l;
    l.remote.AddEntry(QStringLiteral("Mobilfunk"));
    l.remote.AddEntry(QStringLiteral("Dialer 0190"));
    l.remote.BringUp(QStringLiteral("Dialer 0190"));
    QVERIFY(!l.loop.CheckAllowedEntry());  // guard off
    l.state.OnlyMarkedEntries = true;
    QVERIFY(l.loop.CheckAllowedEntry());  // no Deny.sec: every named connection is cut
    QVERIFY(l.remote.GetRasConnections().isEmpty());

    l.data.write(QStringLiteral("DialUp/Deny.sec"),
                 "MOBILFUNK\r\n1\r\nDialer 0190\r\n0\r\nRest ohne Wert\r\n");
    l.remote.BringUp(QStringLiteral("Mobilfunk"));
    QVERIFY(!l.loop.CheckAllowedEntry());
    QCOMPARE(l.remote.GetRasConnections().size(), 1);
    l.remote.TakeDown(l.remote.GetRasConnections().first().handle);
    l.remote.BringUp(QStringLiteral("Dialer 0190"));
    QVERIFY(l.loop.CheckAllowedEntry());
    QVERIFY(l.remote.GetRasConnections().isEmpty());
    QVERIFY(l.loop.CheckAllowedEntry());  // nothing up, nothing named: still no recording
  }

  void detectedConnectionsTakeTheirEntrysTariff() {
    Loop l;
    l.state.AktuellerTarif = QStringLiteral("Gewählt - Vorher.tel");
    l.remote.AddEntry(QStringLiteral("Mobilfunk"));
    l.remote.BringUp(QStringLiteral("Mobilfunk"), QStringLiteral("ttyUSB0"), QStringLiteral("wwan0"));
    l.data.write(QStringLiteral("DialUp/mobilfunk.TRF"), "Funkwelle\r\nA - Tag und Nacht\r\n");

    DetectedConnection connection;
    QString interfaceName;
    l.state.DetectionSource = 0;  // by hand: the Overview's choice stands
    l.loop.DetectConnection(connection, &interfaceName);
    QVERIFY(connection.name == QStringLiteral("Mobilfunk") && connection.device == QStringLiteral("ttyUSB0"));
    QCOMPARE(interfaceName, QStringLiteral("wwan0"));
    QCOMPARE(l.state.AktuellerTarif, QStringLiteral("Gewählt - Vorher.tel"));

    l.state.DetectionSource = 1;
    l.loop.DetectConnection(connection, &interfaceName);
    QCOMPARE(l.state.AktuellerTarif, QStringLiteral("Funkwelle - Tag und Nacht.atl"));
    // No tariff of the entry's own: the one chosen stays.
    l.data.write(QStringLiteral("DialUp/mobilfunk.TRF"), "Funkwelle\r\nX\r\n");
    l.state.AktuellerTarif = QStringLiteral("Bleibt - So.tel");
    l.loop.DetectConnection(connection, &interfaceName);
    QCOMPARE(l.state.AktuellerTarif, QStringLiteral("Bleibt - So.tel"));

    // An entry whose name can't be a file name has no tariff of its own.
    QCOMPARE(EntryTariff(l.data.dir(), QStringLiteral("../Tarife/x")), QString());
  }
};

QTEST_APPLESS_MAIN(TestMonitoringLoop)
#include "test_monitoringloop.moc"
