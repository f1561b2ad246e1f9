#include "detection/ConCheck.h"
#include "detection/Probes.h"
#include "detection/platform/ProbesBusServices.h"
#include "detection/platform/ProbesModemManager.h"
#include "detection/platform/ProbesNetworkManager.h"
#include "frame/AppState.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <memory>

using namespace minutor;

namespace {
const QString kModemManager = QStringLiteral("org.freedesktop.ModemManager1");
const QString kModemRoot = QStringLiteral("/org/freedesktop/ModemManager1");
const QString kModem0 = QStringLiteral("/org/freedesktop/ModemManager1/Modem/0");
const QString kModem1 = QStringLiteral("/org/freedesktop/ModemManager1/Modem/1");
}  // namespace

// NetworkManager and ModemManager as python-dbusmock plays them, on a bus of
// the test's own.
class TestProbesDBus : public QObject {
  Q_OBJECT

  QProcess bus_;
  QProcess networkManager_;
  QProcess modemManager_;
  QString address_;
  std::unique_ptr<QDBusConnection> connection_;

  bool HasOwner(const QString& name) {
    QDBusMessage ask = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    ask << name;
    return connection_->call(ask, QDBus::Block, 1000).arguments().value(0).toBool();
  }

  bool StartMock(QProcess& mock, const QStringList& arguments, const QString& name) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), address_);
    mock.setProcessEnvironment(env);
    mock.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    mock.start(QStringLiteral("/usr/bin/python3"),
               QStringList{QStringLiteral("-m"), QStringLiteral("dbusmock"), QStringLiteral("--system")} +
                   arguments);
    const QDeadlineTimer deadline(10000);
    while (!HasOwner(name) && !deadline.hasExpired() && mock.state() != QProcess::NotRunning) {
      QTest::qWait(50);
    }
    return HasOwner(name);
  }

  // gdbus speaks the mock's signatures (a(ssss), av) in plain text.
  bool Gdbus(const QString& service, const QString& path, const QString& method,
             const QStringList& arguments) {
    QProcess gdbus;
    gdbus.start(
        QStringLiteral("gdbus"),
        QStringList{QStringLiteral("call"), QStringLiteral("--address"), address_, QStringLiteral("--dest"),
                    service, QStringLiteral("--object-path"), path, QStringLiteral("--method"), method} +
            arguments);
    return gdbus.waitForFinished(5000) && gdbus.exitCode() == 0;
  }

  bool AddModem(const QString& path) {
    return Gdbus(kModemManager, kModemRoot, QStringLiteral("org.freedesktop.DBus.Mock.AddObject"),
                 {path, QStringLiteral("org.freedesktop.ModemManager1.Modem"),
                  QStringLiteral("{'State': <8>}"), QStringLiteral("@a(ssss) []")});
  }

  bool ModemState(const QString& path, int oldState, int newState) {
    return Gdbus(
        kModemManager, path, QStringLiteral("org.freedesktop.DBus.Mock.EmitSignal"),
        {QStringLiteral("org.freedesktop.ModemManager1.Modem"), QStringLiteral("StateChanged"),
         QStringLiteral("iiu"), QStringLiteral("[<%1>, <%2>, <uint32 0>]").arg(oldState).arg(newState)});
  }

  // Lets the signals that are on their way arrive.
  static void Settle() { QTest::qWait(200); }

  static void Stop(QProcess& process) {
    if (process.state() != QProcess::NotRunning) {
      ::kill(static_cast<pid_t>(process.processId()), SIGCONT);
      process.terminate();
      process.waitForFinished(3000);
    }
  }

 private slots:
  void initTestCase() {
    bus_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                               QStringLiteral("--print-address=1")});
    if (!bus_.waitForStarted(5000) || !bus_.waitForReadyRead(5000)) {
      QSKIP("dbus-daemon can't start a private bus here");
    }
    address_ = QString::fromUtf8(bus_.readLine()).trimmed();
    connection_ =
        std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(address_, QStringLiteral("probes")));
    QVERIFY(connection_->isConnected());
    if (!StartMock(networkManager_, {QStringLiteral("-t"), QStringLiteral("networkmanager")},
                   QStringLiteral("org.freedesktop.NetworkManager"))) {
      QSKIP("python3-dbusmock's NetworkManager template doesn't start");
    }
    if (!StartMock(modemManager_, {QStringLiteral("-m"), kModemManager, kModemRoot, kModemManager},
                   kModemManager)) {
      QSKIP("python3-dbusmock can't play ModemManager");
    }
  }

  void cleanupTestCase() {
    for (QProcess* process : {&networkManager_, &modemManager_, &bus_}) {
      Stop(*process);
    }
  }

  void busServices() {
    const ProbesBusServices services(*connection_);
    QVERIFY(services.HasService(QString::fromLatin1(kNetworkManagerService)));
    QVERIFY(services.HasService(QString::fromLatin1(kModemManagerService)));
    QVERIFY(!services.HasService(QStringLiteral("org.example.Nothing")));
  }

  void networkStateFollowsTheService() {
    ProbesNetworkManager network(*connection_);
    QTRY_COMPARE(network.NetworkState(), std::optional<quint32>(70));
    QVERIFY(Gdbus(
        QStringLiteral("org.freedesktop.NetworkManager"), QStringLiteral("/org/freedesktop/NetworkManager"),
        QStringLiteral("org.freedesktop.DBus.Mock.SetGlobalConnectionState"), {QStringLiteral("20")}));
    QTRY_COMPARE(network.NetworkState(), std::optional<quint32>(20));
    AppState state;
    QVERIFY(IsOnlineIE(state, network));
  }

  void firstModemSetsTheLine() {
    AppState state;
    ProbesModemManager line(*connection_, state);
    QVERIFY(!line.Open());  // no modem yet

    QVERIFY(AddModem(kModem1));
    QVERIFY(AddModem(kModem0));
    QVERIFY(line.Open());
    QCOMPARE(line.ModemPath(), kModem0);

    // The state at opening counts for nothing; changes do.
    QVERIFY(ModemState(kModem0, 8, 10));
    Settle();
    QVERIFY(!state.TapiOnline);
    QVERIFY(ModemState(kModem0, 10, 11));
    QTRY_VERIFY(state.TapiOnline);
    QVERIFY(ModemState(kModem1, 11, 8));  // another modem's call goes unseen
    Settle();
    QVERIFY(state.TapiOnline);
    QVERIFY(ModemState(kModem0, 11, 9));
    QTRY_VERIFY(!state.TapiOnline);

    line.Close();
    QVERIFY(ModemState(kModem0, 8, 11));
    Settle();
    QVERIFY(!state.TapiOnline);
  }

  // Runs last: it takes the services away.
  void slowAndVanishingServicesHoldNothingUp() {
    AppState state;
    ProbesModemManager line(*connection_, state);
    ProbesNetworkManager network(*connection_);
    QTRY_VERIFY(network.NetworkState().has_value());
    QVERIFY(line.Open());
    QVERIFY(ModemState(kModem0, 10, 11));
    QTRY_VERIFY(state.TapiOnline);

    // A service that hangs: the poll goes on at once, opening the line gives
    // up after a moment.
    ::kill(static_cast<pid_t>(networkManager_.processId()), SIGSTOP);
    ::kill(static_cast<pid_t>(modemManager_.processId()), SIGSTOP);
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 20; ++i) {
      network.NetworkState();
    }
    QVERIFY2(clock.elapsed() < 100, qPrintable(QString::number(clock.elapsed())));
    AppState other;
    ProbesModemManager stuck(*connection_, other);
    clock.restart();
    QVERIFY(!stuck.Open());
    QVERIFY2(clock.elapsed() < 1500, qPrintable(QString::number(clock.elapsed())));
    QTRY_VERIFY_WITH_TIMEOUT(!network.NetworkState().has_value(), 3000);

    // A service that goes away ends the call on its modem.
    Stop(modemManager_);
    Stop(networkManager_);
    QTRY_VERIFY(!state.TapiOnline);
    QVERIFY(line.ModemPath().isEmpty());
    QVERIFY(!line.Open());
    QVERIFY(!ProbesBusServices(*connection_).HasService(QString::fromLatin1(kModemManagerService)));
    network.NetworkState();
    QTRY_VERIFY(!network.NetworkState().has_value());
  }
};

QTEST_GUILESS_MAIN(TestProbesDBus)
#include "test_probes_dbus.moc"
