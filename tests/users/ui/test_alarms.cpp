#include "detection/platform/NetworkManagerRemoteAccess.h"
#include "frame/datadir/DataDir.h"
#include "support/PrivateBus.h"
#include "support/TestServices.h"
#include "users/ConnectionAlarms.h"
#include "users/UserAccounts.h"
#include "users/platform/DBusNotifier.h"
#include "users/platform/PulseSoundPlayer.h"
#include "users/ui/AlarmBoxes.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QElapsedTimer>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

using namespace minutor;

namespace {

const QString kNM = QStringLiteral("org.freedesktop.NetworkManager");
const QString kNMRoot = QStringLiteral("/org/freedesktop/NetworkManager");
const QString kNotifications = QStringLiteral("org.freedesktop.Notifications");
const QString kMock = QStringLiteral("org.freedesktop.DBus.Mock");

// A PulseAudio server of the test's own with one null sink.
class SoundServer {
 public:
  bool Start() {
    env_ = QProcessEnvironment::systemEnvironment();
    env_.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime_.path());
    env_.insert(QStringLiteral("HOME"), runtime_.path());
    server_.setProcessEnvironment(env_);
    server_.start(QStringLiteral("pulseaudio"), {QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
                                                 QStringLiteral("--exit-idle-time=-1"),
                                                 QStringLiteral("--load=module-null-sink sink_name=nullsink"),
                                                 QStringLiteral("--load=module-native-protocol-unix")});
    const QString socket = runtime_.path() + QStringLiteral("/pulse/native");
    QElapsedTimer clock;
    clock.start();
    while (!QFile::exists(socket) && clock.elapsed() < 10000 && server_.state() != QProcess::NotRunning) {
      QTest::qWait(50);
    }
    address_ = QStringLiteral("unix:") + socket;
    return QFile::exists(socket);
  }
  ~SoundServer() {
    watcher_.kill();
    watcher_.waitForFinished(2000);
    server_.terminate();
    server_.waitForFinished(3000);
  }
  const QString& Address() const { return address_; }

  // Watches the server's events while something plays.
  void StartWatching() {
    QProcessEnvironment env = env_;
    env.insert(QStringLiteral("PULSE_SERVER"), address_);
    watcher_.setProcessEnvironment(env);
    watcher_.start(QStringLiteral("pactl"), {QStringLiteral("subscribe")});
    watcher_.waitForStarted(5000);
    QTest::qWait(300);
  }
  // Whether a playback stream came up meanwhile.
  bool StreamAppeared() {
    QTest::qWait(300);
    const QByteArray events = watcher_.readAllStandardOutput();
    watcher_.kill();
    watcher_.waitForFinished(2000);
    return events.contains("'new' on sink-input");
  }

 private:
  QTemporaryDir runtime_;
  QProcessEnvironment env_;
  QProcess server_;
  QProcess watcher_;
  QString address_;
};

}  // namespace

class TestAlarms : public QObject {
  Q_OBJECT

 private slots:
  // The sound reaches a real server; without one, or without the file,
  // nothing is heard and nothing waits.
  void theWarningSoundIsPlayedOrSkipped() {
    const QString wave = minutor::test::TempDataDir::shippedDir() + QStringLiteral("/Sounds/Standard.wav");
    PulseSoundPlayer player;
    qputenv("PULSE_SERVER", "unix:/nonexistent/native");
    QElapsedTimer clock;
    clock.start();
    player.Play(wave);
    player.Play(QStringLiteral("/nonexistent/Sounds/Fehlt.wav"));
    QVERIFY(clock.elapsed() < 2000);

    SoundServer server;
    if (!server.Start()) {
      QSKIP("no PulseAudio server can be started here");
    }
    qputenv("PULSE_SERVER", server.Address().toUtf8());
    server.StartWatching();
    player.Play(wave);
    QVERIFY(server.StreamAppeared());
  }

  // A budget crossed for a user whose line is cut: the box and its
  // notification, the countdown, and the last active connection hung up.
  void theCutHangsUpTheLastConnection() {
    qDBusRegisterMetaType<NMSettings>();
    ::test::PrivateBus bus;
    if (!bus.Start(QStringLiteral("alarms"))) {
      QSKIP("dbus-daemon can't start a private bus here");
    }
    QProcess* nm = bus.StartMock({"-t", "networkmanager"}, kNM);
    QProcess* notifications = bus.StartMock({"-t", "notification_daemon"}, kNotifications);
    if (nm == nullptr || notifications == nullptr) {
      QSKIP("python3-dbusmock's templates don't start");
    }
    auto call = [&](const QString& service, const QString& path, const QString& interfaceName,
                    const QString& method, const QVariantList& args = {}) {
      QDBusMessage ask = QDBusMessage::createMethodCall(service, path, interfaceName, method);
      ask.setArguments(args);
      return bus.connection().call(ask, QDBus::Block, 5000).arguments().value(0);
    };
    const QString device =
        call(kNM, kNMRoot, kMock, "AddEthernetDevice", {"mock_Modem", "ttyUSB0", 30}).toString();
    const QString profile =
        qvariant_cast<QDBusObjectPath>(
            call(kNM, kNMRoot + QStringLiteral("/Settings"),
                 QStringLiteral("org.freedesktop.NetworkManager.Settings"), "AddConnection",
                 {QVariant::fromValue(NMSettings{{"connection", {{"id", "Mobil"}, {"type", "gsm"}}}})}))
            .path();
    call(kNM, kNMRoot, kMock, "AddActiveConnection", {QStringList{device}, profile, "/", "first", 2u});
    call(kNM, kNMRoot, kMock, "AddActiveConnection", {QStringList{device}, profile, "/", "last", 2u});
    NetworkManagerRemoteAccess remote(bus.connection());
    QTRY_COMPARE(remote.GetRasConnections().size(), 2);
    const QString first = remote.GetRasConnections().first().handle;

    minutor::test::TestServices t;
    t.state.ActiveUser = QStringLiteral("Kind");
    t.state.NoDialOnBudget = true;
    t.data.write(QStringLiteral("Benutzer/Kind.bdg"), "1\r\n0\r\n0\r\n1.1.2001\r\n31.1.2001\r\n");
    t.data.write(QStringLiteral("Benutzer/Benutzer.dat"), "0\r\n0\r\n1\r\nStandard\r\n");
    DBusNotifier notifier(bus.connection());
    QWidget frame;
    AlarmBoxes boxes(&frame);
    boxes.SetNotifier(&notifier);
    boxes.SetRemoteAccess(&remote);
    boxes.ConStop()->SetInterval(5);
    ConnectionAlarms alarms(t.services, boxes);
    alarms.GetBudget();
    alarms.CheckBudget(0.5);
    QVERIFY(!boxes.Alert()->isVisible());
    alarms.CheckBudget(1.2);
    QVERIFY(boxes.Alert()->isVisible());
    QCOMPARE(boxes.Alert()->findChild<QLabel*>(QStringLiteral("Label2"))->text(),
             QStringLiteral("Sie überschreiten nun Ihr Tagesbudget. Diese Warnung können Sie in den "
                            "Budgeteinstellungen deaktivieren."));
    QVERIFY(boxes.ConStop()->isVisible());
    // Nobody closes the countdown.
    QVERIFY(!boxes.ConStop()->close());

    QTRY_VERIFY_WITH_TIMEOUT(!boxes.ConStop()->isVisible(), 10000);
    QTRY_COMPARE(remote.GetRasConnections().size(), 1);
    QCOMPARE(remote.GetRasConnections().first().handle, first);

    // Each box told the desktop as well.
    const QDBusArgument calls =
        qvariant_cast<QDBusArgument>(call(kNotifications, QStringLiteral("/org/freedesktop/Notifications"),
                                          kMock, "GetMethodCalls", {"Notify"}));
    QStringList titles;
    calls.beginArray();
    while (!calls.atEnd()) {
      quint64 when = 0;
      QVariantList args;
      calls.beginStructure();
      calls >> when >> args;
      calls.endStructure();
      titles << args.value(3).toString();
    }
    calls.endArray();
    QCOMPARE(titles, (QStringList{"Budgetüberschreitung!", "Verbindungstrennung!"}));
  }
};

QTEST_MAIN(TestAlarms)
#include "test_alarms.moc"
