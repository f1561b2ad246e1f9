#include "detection/platform/SysfsTraffic.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "metering/Meter.h"
#include "metering/MeterHooks.h"
#include "support/RecordingPrompter.h"
#include "support/TempDataDir.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <linux/if_packet.h>
#include <net/ethernet.h>
#include <net/if.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <thread>

using namespace minutor;

namespace {

// A statistics folder of a made-up interface.
class FakeSysfs {
 public:
  QString root() const { return dir_.path(); }
  void set(const QString& name, const QByteArray& rx, const QByteArray& tx) const {
    QDir(dir_.path()).mkpath(name + QStringLiteral("/statistics"));
    write(name + QStringLiteral("/statistics/rx_bytes"), rx);
    write(name + QStringLiteral("/statistics/tx_bytes"), tx);
  }
  void remove(const QString& name) const { QDir(dir_.path() + QLatin1Char('/') + name).removeRecursively(); }

 private:
  void write(const QString& relative, const QByteArray& bytes) const {
    QFile file(dir_.path() + QLatin1Char('/') + relative);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
  }
  QTemporaryDir dir_;
};

// "received/sent", or "none": readable when a comparison fails.
QString Text(const std::optional<TrafficCount>& count) {
  return count ? QString::number(count->received, 'f', 0) + QLatin1Char('/') +
                     QString::number(count->sent, 'f', 0)
               : QStringLiteral("none");
}

QString Ip(const QStringList& args, bool* ok) {
  QProcess ip;
  ip.start(QStringLiteral("ip"), args);
  *ok = ip.waitForFinished(10000) && ip.exitStatus() == QProcess::NormalExit && ip.exitCode() == 0;
  return QString::fromLocal8Bit(ip.readAllStandardError()).trimmed();
}

void Ip(const QStringList& args) {
  bool ok = false;
  Ip(args, &ok);
}

// A veth pair whose outer end stays here and whose inner end lives in a
// network namespace of its own. Both go with the object, whatever the test
// did.
class VethPair {
 public:
  const QString outer = QStringLiteral("mto%1").arg(getpid());
  const QString inner = QStringLiteral("mti%1").arg(getpid());
  const QString netns = QStringLiteral("minutor-traffic-%1").arg(getpid());

  ~VethPair() {
    Ip({QStringLiteral("link"), QStringLiteral("del"), outer});
    Ip({QStringLiteral("netns"), QStringLiteral("del"), netns});
  }

  // Empty when the pair is up and quiet; otherwise why it can't be.
  QString Create() {
    if (geteuid() != 0) {
      return QStringLiteral("a network namespace and a veth pair need root");
    }
    if (QStandardPaths::findExecutable(QStringLiteral("ip")).isEmpty()) {
      return QStringLiteral("no ip command (iproute2)");
    }
    bool ok = false;
    QString error = Ip({QStringLiteral("netns"), QStringLiteral("add"), netns}, &ok);
    if (!ok) {
      return QStringLiteral("no network namespace here: ") + error;
    }
    error = Ip(
        {QStringLiteral("link"), QStringLiteral("add"), outer, QStringLiteral("type"), QStringLiteral("veth"),
         QStringLiteral("peer"), QStringLiteral("name"), inner, QStringLiteral("netns"), netns},
        &ok);
    if (!ok) {
      return QStringLiteral("no veth pair here: ") + error;
    }
    // No IPv6 and no address: nothing but the test's own frames crosses.
    DisableIpv6(outer);
    InNamespace([this] { DisableIpv6(inner); });
    Ip({QStringLiteral("link"), QStringLiteral("set"), outer, QStringLiteral("up")}, &ok);
    bool innerUp = false;
    Ip({QStringLiteral("-n"), netns, QStringLiteral("link"), QStringLiteral("set"), inner,
        QStringLiteral("up")},
       &innerUp);
    return ok && innerUp ? QString() : QStringLiteral("the veth pair doesn't come up");
  }

  // A broadcast frame of `size` bytes of an experimental type, which no one
  // answers. True when it was sent.
  bool SendFromOuter(int size) const { return Send(outer, size); }
  bool SendFromInner(int size) {
    bool sent = false;
    InNamespace([this, size, &sent] { sent = Send(inner, size); });
    return sent;
  }

 private:
  // Runs `work` on a thread that has entered the namespace; the process
  // itself stays where it is.
  void InNamespace(const std::function<void()>& work) const {
    const int fd = open(("/run/netns/" + netns.toStdString()).c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
      return;
    }
    std::thread thread([fd, &work] {
      if (setns(fd, CLONE_NEWNET) == 0) {
        work();
      }
    });
    thread.join();
    close(fd);
  }

  static void DisableIpv6(const QString& name) {
    QFile file(QStringLiteral("/proc/sys/net/ipv6/conf/%1/disable_ipv6").arg(name));
    if (file.open(QIODevice::WriteOnly)) {
      file.write("1");
    }
  }

  static bool Send(const QString& name, int size) {
    const int sock = socket(AF_PACKET, SOCK_RAW, 0);
    if (sock < 0) {
      return false;
    }
    sockaddr_ll address{};
    address.sll_family = AF_PACKET;
    address.sll_ifindex = static_cast<int>(if_nametoindex(name.toLocal8Bit().constData()));
    QByteArray frame(size, '\0');
    frame.replace(0, 6, QByteArray(6, '\xff'));
    frame[12] = '\x88';
    frame[13] = '\xb5';
    const bool sent = bind(sock, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                      send(sock, frame.constData(), frame.size(), 0) == size;
    close(sock);
    return sent;
  }
};

}  // namespace

class TestTrafficSysfs : public QObject {
  Q_OBJECT

 private slots:
  void countsFromTheFirstSight() {
    FakeSysfs sys;
    sys.set(QStringLiteral("ppp0"), "1000\n", "500\n");
    SysfsTraffic traffic(QStringLiteral("ppp0"), sys.root());
    QCOMPARE(Text(traffic.Read(0)), QStringLiteral("0/0"));
    sys.set(QStringLiteral("ppp0"), "1600\n", "1500\n");
    QCOMPARE(Text(traffic.Read(0)), QStringLiteral("600/1000"));
    // All 64 bits; the top, less the origin, as near as a double gets.
    sys.set(QStringLiteral("ppp0"), "8000001000\n", "18446744073709551615\n");
    QCOMPARE(Text(traffic.Read(0)), QStringLiteral("8000000000/18446744073709551616"));
    // A reset: that counter counts from 0, the other goes on.
    sys.set(QStringLiteral("ppp0"), "100\n", "18446744073709551615\n");
    QCOMPARE(Text(traffic.Read(0)), QStringLiteral("100/18446744073709551616"));

    // Another interface begins at its own first sight.
    sys.set(QStringLiteral("eth0"), "7000\n", "9000\n");
    traffic.SetInterface(QStringLiteral("eth0"));
    QCOMPARE(Text(traffic.Read(0)), QStringLiteral("0/0"));
  }

  void badInputCountsNothing() {
    FakeSysfs sys;
    sys.set(QStringLiteral("ppp0"), "1000\n", "500\n");
    SysfsTraffic traffic(QStringLiteral("ppp0"), sys.root());
    QCOMPARE(Text(traffic.Read(0)), QStringLiteral("0/0"));
    for (const QByteArray& garbage :
         {QByteArray(), QByteArray("x\n"), QByteArray("-5\n"), QByteArray("+5\n"), QByteArray("12 34\n"),
          QByteArray("18446744073709551616\n"), QByteArray(4000, '7'), QByteArray("2000\0", 5)}) {
      sys.set(QStringLiteral("ppp0"), "2000\n", garbage);
      QVERIFY2(!traffic.Read(0), garbage.left(40).constData());
    }
    // A bad read changes nothing: the origin stands.
    sys.set(QStringLiteral("ppp0"), "2000\n", "600\n");
    QCOMPARE(Text(traffic.Read(0)), QStringLiteral("1000/100"));

    for (const QString& name : {QString(), QStringLiteral("."), QStringLiteral(".."),
                                QStringLiteral("../ppp0"), QStringLiteral("wlan0")}) {
      SysfsTraffic other(name, sys.root());
      QVERIFY2(!other.Read(0), qPrintable(name));
    }
  }

  void interfaceThatGoesAndComesBack() {
    FakeSysfs sys;
    SysfsTraffic traffic(QStringLiteral("ppp0"), sys.root());
    QVERIFY(!traffic.Read(0));  // not dialled yet
    sys.set(QStringLiteral("ppp0"), "300\n", "200\n");
    QCOMPARE(Text(traffic.Read(0)), QStringLiteral("0/0"));
    sys.set(QStringLiteral("ppp0"), "400\n", "250\n");
    QCOMPARE(Text(traffic.Read(0)), QStringLiteral("100/50"));
    sys.remove(QStringLiteral("ppp0"));
    QVERIFY(!traffic.Read(0));
    // The next session's interface, though its counters are already above
    // the last ones, counts from 0.
    sys.set(QStringLiteral("ppp0"), "500\n", "900\n");
    QCOMPARE(Text(traffic.Read(0)), QStringLiteral("500/900"));
    sys.set(QStringLiteral("ppp0"), "510\n", "900\n");
    QCOMPARE(Text(traffic.Read(0)), QStringLiteral("510/900"));
  }

  // A meter on the outer end of a veth pair: frames of known size go either
  // way, then the pair is deleted.
  void meterOnARealInterface() {
    VethPair pair;
    if (const QString why = pair.Create(); !why.isEmpty()) {
      QSKIP(qPrintable(why));
    }
    // Traffic before the recording doesn't count.
    QVERIFY(pair.SendFromOuter(300));

    test::TempDataDir data;
    AppState state;
    FixedClock clock(QDateTime(QDate(2024, 3, 1), QTime(10, 0)));
    test::RecordingPrompter prompter;
    Services services{state, data.dir(), clock, prompter};
    MeterHooks hooks;
    SysfsTraffic traffic(pair.outer);
    Meter meter(services, traffic, hooks);
    meter.SetWritesFiles(false);
    state.AktuellerTarif = QStringLiteral("Test - Zeit.tel");
    meter.Counter_Start();
    meter.TimerStarterTick();
    QCOMPARE(meter.Labels().lblBytesInOut, QStringLiteral("unbekannt"));

    QVERIFY(pair.SendFromOuter(1000));
    QVERIFY(pair.SendFromInner(600));
    clock.Advance(1);
    meter.Tick();
    QCOMPARE(state.BytesIn, 600.0);
    QCOMPARE(state.BytesOut, 1000.0);
    const MeterLabels shown = meter.Labels();
    QCOMPARE(shown.lblBytesIn, QStringLiteral("600 Bytes"));
    QCOMPARE(shown.lblBytesOut, QLocale().toString(1000) + QStringLiteral(" Bytes"));
    QCOMPARE(shown.lblBytesInOut, QLocale().toString(1600) + QStringLiteral(" Bytes"));
    QCOMPARE(shown.lblBytesInPerSecond, QLocale().toString(0.6, 'f', 1));
    QCOMPARE(shown.lblBytesInOutPerSecond, QLocale().toString(1.6, 'f', 1));

    // The connection's interface goes: the labels stand still.
    bool deleted = false;
    Ip({QStringLiteral("link"), QStringLiteral("del"), pair.outer}, &deleted);
    QVERIFY(deleted);
    clock.Advance(1);
    meter.Tick();
    QCOMPARE(state.BytesTotal, 0.0);
    QCOMPARE(meter.Labels().lblBytesInOut, shown.lblBytesInOut);
    QCOMPARE(meter.Labels().lblBytesInOutPerSecond, shown.lblBytesInOutPerSecond);
  }
};

QTEST_APPLESS_MAIN(TestTrafficSysfs)
#include "test_traffic_sysfs.moc"
