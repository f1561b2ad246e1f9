#include "detection/SimulatedRemoteAccess.h"
#include "frame/datadir/DataDir.h"
#include "support/PrivateBus.h"
#include "support/TestServices.h"
#include "users/ConnectionAlarms.h"
#include "users/UserAccounts.h"
#include "users/platform/DBusNotifier.h"
#include "users/platform/PulseSoundPlayer.h"
#include "users/ui/AlarmBoxes.h"

#include <QDBusArgument>
#include <QElapsedTimer>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

namespace {

const QString kNotifications = u"org.freedesktop.Notifications"_s;

// A PulseAudio server of the test's own with one null sink.
class SoundServer {
 public:
  bool Start() {
    env_ = QProcessEnvironment::systemEnvironment();
    env_.insert(u"XDG_RUNTIME_DIR"_s, runtime_.path());
    env_.insert(u"HOME"_s, runtime_.path());
    server_.setProcessEnvironment(env_);
    server_.start(u"pulseaudio"_s,
                  {u"-n"_s, u"--daemonize=no"_s, u"--exit-idle-time=-1"_s,
                   u"--load=module-null-sink sink_name=nullsink"_s, u"--load=module-native-protocol-unix"_s});
    const QString socket = runtime_.path() + u"/pulse/native"_s;
    QElapsedTimer clock;
    clock.start();
    while (!QFile::exists(socket) && clock.elapsed() < 10000 && server_.state() != QProcess::NotRunning) {
      QTest::qWait(50);
    }
    address_ = u"unix:"_s + socket;
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
    env.insert(u"PULSE_SERVER"_s, address_);
    watcher_.setProcessEnvironment(env);
    watcher_.start(u"pactl"_s, {u"subscribe"_s});
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
  // it is skipped.
  void theWarningSoundIsPlayedOrSkipped() {
    const QString wave = minutor::test::TempDataDir::shippedDir() + u"/Sounds/Standard.wav"_s;
    PulseSoundPlayer player;
    qputenv("PULSE_SERVER", "unix:/nonexistent/native");
    player.Play(wave);
    player.Play(u"/nonexistent/Sounds/Fehlt.wav"_s);

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
    ::test::PrivateBus bus;
    if (!bus.Start(u"alarms"_s)) {
      QSKIP("dbus-daemon can't start a private bus here");
    }
    if (bus.StartMock({"-t", "notification_daemon"}, kNotifications) == nullptr) {
      QSKIP("python3-dbusmock's notification template doesn't start");
    }
    SimulatedRemoteAccess remote;
    const QString first = remote.BringUp(u"Mobil"_s);
    const QString last = remote.BringUp(u"Mobil"_s);

    minutor::test::TestServices t;
    t.state.ActiveUser = u"Kind"_s;
    t.state.NoDialOnBudget = true;
    t.data.write(u"Benutzer/Kind.bdg"_s, "1\r\n0\r\n0\r\n1.1.2001\r\n31.1.2001\r\n");
    t.data.write(u"Benutzer/Benutzer.dat"_s, "0\r\n0\r\n1\r\nStandard\r\n");
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
    QVERIFY(boxes.Alert()->findChild<QLabel*>(u"Label2"_s)->text().contains(u"Tagesbudget"_s));
    QVERIFY(boxes.ConStop()->isVisible());
    // Nobody closes the countdown.
    QVERIFY(!boxes.ConStop()->close());

    QTRY_VERIFY_WITH_TIMEOUT(!boxes.ConStop()->isVisible(), 10000);
    QCOMPARE(remote.hangUps, QStringList{last});
    QCOMPARE(remote.GetRasConnections().first().handle, first);

    // Each box told the desktop as well.
    QDBusMessage ask = QDBusMessage::createMethodCall(kNotifications, u"/org/freedesktop/Notifications"_s,
                                                      u"org.freedesktop.DBus.Mock"_s, "GetMethodCalls");
    ask << u"Notify"_s;
    const auto calls = qvariant_cast<QDBusArgument>(bus.connection().call(ask).arguments().value(0));
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
