#include "detection/ConCheck.h"
#include "detection/Probes.h"
#include "detection/platform/ProbesBusServices.h"
#include "detection/platform/ProbesModemManager.h"
#include "detection/platform/ProbesNetworkManager.h"
#include "frame/AppState.h"

#include "support/PrivateBus.h"

#include <QProcess>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {
const QString kModemManager = u"org.freedesktop.ModemManager1"_s;
const QString kModemRoot = u"/org/freedesktop/ModemManager1"_s;
const QString kModem = u"org.freedesktop.ModemManager1.Modem"_s;
const QString kModem0 = u"/org/freedesktop/ModemManager1/Modem/0"_s;
const QString kModem1 = u"/org/freedesktop/ModemManager1/Modem/1"_s;
const QString kMock = u"org.freedesktop.DBus.Mock."_s;
}  // namespace

// NetworkManager and ModemManager as python-dbusmock plays them, on a bus of
// the test's own.
class TestProbesDBus : public QObject {
  Q_OBJECT

  test::PrivateBus bus_;
  QProcess* networkManager_ = nullptr;
  QProcess* modemManager_ = nullptr;

  // gdbus speaks the mock's signatures (a(ssss), av) in plain text.
  bool Gdbus(const QString& service, const QString& path, const QString& method,
             const QStringList& arguments) {
    QProcess gdbus;
    gdbus.start("gdbus", QStringList{"call", "--address", bus_.address(), "--dest", service, "--object-path",
                                     path, "--method", kMock + method} +
                             arguments);
    return gdbus.waitForFinished(5000) && gdbus.exitCode() == 0;
  }

  // A modem comes or goes; the mock's object manager doesn't announce its
  // objects by itself.
  bool Plug(const QString& path) {
    return Gdbus(kModemManager, kModemRoot, "AddObject", {path, kModem, "{'State': <8>}", "@a(ssss) []"}) &&
           Gdbus(kModemManager, kModemRoot, "EmitSignal",
                 {"org.freedesktop.DBus.ObjectManager", "InterfacesAdded", "oa{sa{sv}}",
                  u"[<objectpath '%1'>, <@a{sa{sv}} {'%2': {'State': <8>}}>]"_s.arg(path, kModem)});
  }
  bool Unplug(const QString& path) {
    return Gdbus(kModemManager, kModemRoot, "RemoveObject", {path}) &&
           Gdbus(kModemManager, kModemRoot, "EmitSignal",
                 {"org.freedesktop.DBus.ObjectManager", "InterfacesRemoved", "oas",
                  u"[<objectpath '%1'>, <['%2']>]"_s.arg(path, kModem)});
  }

  bool ModemState(const QString& path, int oldState, int newState) {
    return Gdbus(kModemManager, path, "EmitSignal",
                 {kModem, "StateChanged", "iiu", u"[<%1>, <%2>, <uint32 0>]"_s.arg(oldState).arg(newState)});
  }

  // Lets the signals that are on their way arrive.
  static void Settle() { QTest::qWait(200); }

 private slots:
  void initTestCase() {
    if (!bus_.Start("probes")) {
      QSKIP("dbus-daemon can't start a private bus here");
    }
    networkManager_ = bus_.StartMock({"-t", "networkmanager"}, "org.freedesktop.NetworkManager");
    if (networkManager_ == nullptr) {
      QSKIP("python3-dbusmock's NetworkManager template doesn't start");
    }
    modemManager_ = bus_.StartMock({"-m", kModemManager, kModemRoot, kModemManager}, kModemManager);
    if (modemManager_ == nullptr) {
      QSKIP("python3-dbusmock can't play ModemManager");
    }
    const ProbesBusServices services(bus_.connection());
    QVERIFY(services.HasService(QString::fromLatin1(kNetworkManagerService)));
    QVERIFY(services.HasService(QString::fromLatin1(kModemManagerService)));
    QVERIFY(!services.HasService("org.example.Nothing"));
  }

  void networkStateFollowsTheService() {
    ProbesNetworkManager network(bus_.connection());
    QTRY_COMPARE(network.NetworkState(), std::optional<quint32>(70));
    QVERIFY(Gdbus("org.freedesktop.NetworkManager", "/org/freedesktop/NetworkManager",
                  "SetGlobalConnectionState", {"20"}));
    QTRY_COMPARE(network.NetworkState(), std::optional<quint32>(20));
    AppState state;
    QVERIFY(IsOnlineIE(state, network));
  }

  void firstModemSetsTheLine() {
    AppState state;
    ProbesModemManager line(bus_.connection(), state);
    // The service runs without a modem: the line opens and waits for one.
    QVERIFY(line.Open());
    QVERIFY(line.ModemPath().isEmpty());
    QVERIFY(Plug(kModem1));
    QTRY_COMPARE(line.ModemPath(), kModem1);
    QVERIFY(Plug(kModem0));
    QTRY_COMPARE(line.ModemPath(), kModem0);  // the first modem is the line

    // The state at opening counts for nothing; changes do, and another
    // modem's call goes unseen.
    for (const auto& [modem, from, to, online] : {std::tuple{kModem0, 8, 10, false},
                                                  {kModem0, 10, 11, true},
                                                  {kModem1, 11, 8, true},
                                                  {kModem0, 11, 9, false},
                                                  {kModem0, 9, 11, true}}) {
      QVERIFY(ModemState(modem, from, to));
      Settle();
      QTRY_COMPARE(state.TapiOnline, online);
    }
    // Pulled out during a call: the call ends, the next modem is the line.
    QVERIFY(Unplug(kModem0));
    QTRY_VERIFY(!state.TapiOnline);
    QTRY_COMPARE(line.ModemPath(), kModem1);
    QVERIFY(Plug(kModem0));  // back again for the tests that follow
    QTRY_COMPARE(line.ModemPath(), kModem0);

    line.Close();
    QVERIFY(ModemState(kModem0, 8, 11));
    Settle();
    QVERIFY(!state.TapiOnline);
  }

  // Runs last: it takes the services away.
  void slowAndVanishingServicesHoldNothingUp() {
    AppState state;
    ProbesModemManager line(bus_.connection(), state);
    ProbesNetworkManager network(bus_.connection());
    QTRY_VERIFY(network.NetworkState().has_value());
    QVERIFY(line.Open());
    QVERIFY(ModemState(kModem0, 10, 11));
    QTRY_VERIFY(state.TapiOnline);

    // A service that hangs: the poll answers with what it last heard until
    // the question times out, and opening the line gives up.
    test::PrivateBus::Freeze(*networkManager_);
    test::PrivateBus::Freeze(*modemManager_);
    const std::optional<quint32> heard = network.NetworkState();
    for (int i = 0; i < 20; ++i) {
      QCOMPARE(network.NetworkState(), heard);
    }
    QVERIFY(heard.has_value());
    AppState other;
    ProbesModemManager stuck(bus_.connection(), other);
    QVERIFY(!stuck.Open());
    QTRY_VERIFY_WITH_TIMEOUT(!network.NetworkState().has_value(), 3000);

    // A service that goes away ends the call on its modem.
    test::PrivateBus::Stop(*modemManager_);
    test::PrivateBus::Stop(*networkManager_);
    QTRY_VERIFY(!state.TapiOnline);
    QVERIFY(line.ModemPath().isEmpty());
    QVERIFY(!line.Open());
    QVERIFY(!ProbesBusServices(bus_.connection()).HasService(QString::fromLatin1(kModemManagerService)));
    QTRY_VERIFY(!network.NetworkState().has_value());
  }
};

QTEST_GUILESS_MAIN(TestProbesDBus)
#include "test_probes_dbus.moc"
