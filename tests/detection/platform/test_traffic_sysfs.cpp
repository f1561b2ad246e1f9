#include "detection/platform/SysfsTraffic.h"
#include "metering/Meter.h"
#include "metering/MeterHooks.h"
#include "support/TestServices.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QProcess>
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
using namespace Qt::StringLiterals;

namespace {

// The statistics of a made-up interface below `sys`.
void Set(const test::TempDataDir& sys, const QString& name, const QByteArray& rx, const QByteArray& tx) {
  sys.write(name + "/statistics/rx_bytes", rx);
  sys.write(name + "/statistics/tx_bytes", tx);
}

// "received/sent", or "none": readable when a comparison fails.
QString Text(const std::optional<TrafficCount>& count) {
  return count ? QString::number(count->received, 'f', 0) + QLatin1Char('/') +
                     QString::number(count->sent, 'f', 0)
               : "none";
}

// Runs ip (iproute2); empty when it succeeded, otherwise its complaint.
QString Ip(const QStringList& args) {
  QProcess ip;
  ip.start("ip", args);
  if (ip.waitForFinished(10000) && ip.exitStatus() == QProcess::NormalExit && ip.exitCode() == 0) {
    return {};
  }
  return "ip " + args.join(' ') + ": " + QString::fromLocal8Bit(ip.readAllStandardError()).trimmed();
}

// A veth pair whose outer end stays here and whose inner end lives in a
// network namespace of its own. Both go with the object, whatever the test
// did.
class VethPair {
 public:
  const QString outer = u"mto%1"_s.arg(getpid());
  const QString inner = u"mti%1"_s.arg(getpid());
  const QString netns = u"minutor-traffic-%1"_s.arg(getpid());

  ~VethPair() {
    Ip({"link", "del", outer});
    Ip({"netns", "del", netns});
  }

  // Empty when the pair is up and quiet; otherwise why it can't be.
  QString Create() {
    if (geteuid() != 0) {
      return "a network namespace and a veth pair need root";
    }
    if (const QString error = Ip({"netns", "add", netns}); !error.isEmpty()) {
      return error;
    }
    if (const QString error =
            Ip({"link", "add", outer, "type", "veth", "peer", "name", inner, "netns", netns});
        !error.isEmpty()) {
      return error;
    }
    // No IPv6 and no address: nothing but the test's own frames crosses.
    DisableIpv6(outer);
    InNamespace([this] { DisableIpv6(inner); });
    return Ip({"link", "set", outer, "up"}) + Ip({"-n", netns, "link", "set", inner, "up"});
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
    QFile file(u"/proc/sys/net/ipv6/conf/%1/disable_ipv6"_s.arg(name));
    file.open(QIODevice::WriteOnly) && file.write("1");
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
  void countsFromEachFirstSight() {
    test::TempDataDir sys;
    SysfsTraffic traffic("ppp0", sys.path());
    QVERIFY(!traffic.Read(0));  // not dialled yet
    Set(sys, "ppp0", "1000\n", "500\n");
    QCOMPARE(Text(traffic.Read(0)), u"0/0"_s);
    Set(sys, "ppp0", "1600\n", "1500\n");
    QCOMPARE(Text(traffic.Read(0)), u"600/1000"_s);

    // The next session's interface, though its counters are already above
    // the last ones, counts from 0.
    QVERIFY(QDir(sys.path("ppp0")).removeRecursively());
    QVERIFY(!traffic.Read(0));
    Set(sys, "ppp0", "2000\n", "1600\n");
    QCOMPARE(Text(traffic.Read(0)), u"2000/1600"_s);
    // All 64 bits, as near as a double gets.
    Set(sys, "ppp0", "8000002000\n", "18446744073709551615\n");
    QCOMPARE(Text(traffic.Read(0)), u"8000002000/18446744073709551616"_s);
    // A reset: that counter counts from 0, the other goes on.
    Set(sys, "ppp0", "100\n", "18446744073709551615\n");
    QCOMPARE(Text(traffic.Read(0)), u"100/18446744073709551616"_s);

    // Another interface begins at its own first sight.
    Set(sys, "eth0", "7000\n", "9000\n");
    traffic.SetInterface("eth0");
    QCOMPARE(Text(traffic.Read(0)), u"0/0"_s);
  }

  void badInputCountsNothing() {
    test::TempDataDir sys;
    Set(sys, "ppp0", "1000\n", "500\n");
    SysfsTraffic traffic("ppp0", sys.path());
    QCOMPARE(Text(traffic.Read(0)), u"0/0"_s);
    for (const QByteArray& garbage :
         {QByteArray(), QByteArray("x\n"), QByteArray("-5\n"), QByteArray("+5\n"), QByteArray("12 34\n"),
          QByteArray("18446744073709551616\n"), QByteArray(4000, '7'), QByteArray("2000\0", 5)}) {
      Set(sys, "ppp0", "2000\n", garbage);
      QVERIFY2(!traffic.Read(0), garbage.left(40).constData());
    }
    // A bad read changes nothing: the origin stands.
    Set(sys, "ppp0", "2000\n", "600\n");
    QCOMPARE(Text(traffic.Read(0)), u"1000/100"_s);

    for (const QString& name : QStringList{QString(), ".", "..", "../ppp0", "wlan0"}) {
      QVERIFY2(!SysfsTraffic(name, sys.path()).Read(0), qPrintable(name));
    }
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

    test::TestServices desk(QDateTime(QDate(2024, 3, 1), QTime(10, 0)));
    MeterHooks hooks;
    SysfsTraffic traffic(pair.outer);
    Meter meter(desk.services, traffic, hooks);
    meter.SetWritesFiles(false);
    desk.state.AktuellerTarif = "Test - Zeit.tel";
    meter.Counter_Start();
    meter.TimerStarterTick();
    QCOMPARE(meter.Labels().lblBytesInOut, u"unbekannt"_s);

    QVERIFY(pair.SendFromOuter(1000));
    QVERIFY(pair.SendFromInner(600));
    desk.clock.Advance(1);
    meter.Tick();
    QCOMPARE(desk.state.BytesIn, 600.0);
    QCOMPARE(desk.state.BytesOut, 1000.0);
    const QString shown = meter.Labels().lblBytesInOut;
    QCOMPARE(shown, QLocale().toString(1600) + " Bytes");

    // The connection's interface goes: the labels stand still.
    QCOMPARE(Ip({"link", "del", pair.outer}), QString());
    desk.clock.Advance(1);
    meter.Tick();
    QCOMPARE(desk.state.BytesTotal, 0.0);
    QCOMPARE(meter.Labels().lblBytesInOut, shown);
  }
};

QTEST_APPLESS_MAIN(TestTrafficSysfs)
#include "test_traffic_sysfs.moc"
