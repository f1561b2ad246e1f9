#include "detection/RasStates.h"
#include "detection/platform/KernelRemoteAccess.h"
#include "support/TempDataDir.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace minutor;
using namespace Qt::StringLiterals;

// pppd's peers and the kernel's interfaces in a folder of the test's own; pon
// and poff are scripts that make and remove the interface.
class TestKernelRemoteAccess : public QObject {
  Q_OBJECT

  std::unique_ptr<test::TempDataDir> root_;

  QString path(const QString& relative) const { return root_->path(relative); }
  QByteArray bytes(const QString& relative) const { return path(relative).toUtf8(); }
  QByteArray read(const QString& relative) const { return root_->read(relative); }

  void write(const QString& relative, const QByteArray& text, bool executable = false) {
    root_->write(relative, text);
    if (executable) {
      QFile::setPermissions(path(relative), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
  }

  void addInterface(const QString& name, const QByteArray& type, const QByteArray& flags) {
    write(u"net/%1/type"_s.arg(name), type + '\n');
    write(u"net/%1/flags"_s.arg(name), flags + '\n');
  }

  KernelRemoteAccess::Paths paths() const {
    return {path("ppp/peers"), path("net"), path("run"), path("bin/pon"), path("bin/poff"), path("proc")};
  }

 private slots:
  void init() {
    root_ = std::make_unique<test::TempDataDir>();
    QDir().mkpath(path("run"));
    write("ppp/peers/arcor", "noauth\nuser \"arcor user\" # comment\nconnect \"/usr/sbin/chat -v -f " +
                                 bytes("chatscripts/arcor") + "\"\n/dev/ttyS0\n");
    write("chatscripts/arcor", "ABORT BUSY\n'' ATZ\nOK ATDT 0192 070\nCONNECT ''\n");
    write("ppp/peers/provider", "user provider\n");
    write("ppp/peers/provider~", "old copy\n");
    write("ppp/peers/.hidden", "\n");
    write("ppp/pap-secrets", "# client server secret\n\"arcor user\" * \"arcor pass\"\n");
    addInterface("lo", "772", "0x9");
    addInterface("eth0", "1", "0x1003");
    // pon brings ppp0 up after a moment, as pppd does; poff takes it down.
    write("bin/pon",
          "#!/bin/sh\necho \"$@\" >> " + bytes("pon.log") +
              "\nfor a; do [ \"$p\" = passwordfd ] && cat <&$a > " + bytes("password.log") + "; p=$a; done" +
              "\n[ \"$1\" = provider ] && exit 0\nsleep 0.3\nd=" + bytes("net/ppp0") +
              "\nmkdir -p $d && echo 512 > $d/type && echo 0x1091 > $d/flags\n",
          true);
    write(
        "bin/poff",
        "#!/bin/sh\necho \"$@\" >> " + bytes("poff.log") + "\nsleep 0.2\nrm -rf " + bytes("net/ppp0") + "\n",
        true);
  }

  void entriesAndDialData() {
    KernelRemoteAccess ras(paths());
    QCOMPARE(ras.GetEntries(), QStringList({"arcor", "provider"}));
    const RasDialParams arcor = ras.GetDialParams("arcor").value_or(RasDialParams{});
    QCOMPARE(QStringList({arcor.Benutzer, arcor.Telefon, arcor.Passwort}),
             QStringList({"arcor user", "0192070", "arcor pass"}));
    QVERIFY(arcor.passwordStored);
    const RasDialParams provider = ras.GetDialParams("provider").value_or(RasDialParams{});
    QCOMPARE(provider.Benutzer, u"provider"_s);
    QVERIFY(!provider.passwordStored);
    QVERIFY(!ras.GetDialParams("../pap-secrets"));
    QVERIFY(!ras.GetDialParams("fehlt"));

    const QString none = path("none");
    KernelRemoteAccess nothing({none, none, none, none, none, none});
    QVERIFY(nothing.GetEntries().isEmpty());
    QVERIFY(nothing.GetRasConnections().isEmpty());
    QVERIFY(nothing.DialEntry("arcor", {}).isEmpty());
  }

  void connectionsAreThePppInterfacesThatAreUp() {
    KernelRemoteAccess ras(paths());
    QVERIFY(ras.GetRasConnections().isEmpty());
    addInterface("ppp1", "512", "0x1090");  // down
    addInterface("ppp0", "512", "0x1091");
    write("run/ppp-arcor.pid", "4711\nppp0\n");
    const QList<RasConnection> up = ras.GetRasConnections();
    QCOMPARE(up.size(), 1);
    QCOMPARE(QStringList({up.at(0).handle, up.at(0).entryName, up.at(0).interfaceName}),
             QStringList({"ppp0", "arcor", "ppp0"}));
    QCOMPARE(ras.GetConnectState("ppp0")->state, RasState::Connected);
    QVERIFY(!ras.GetConnectState("ppp1"));

    // pon without a link name: pppd's command line names the peer; another
    // program's pid, or a peer that isn't one, names nothing.
    addInterface("ppp1", "512", "0x1091");
    write("run/ppp1.pid", "4712\n");
    write("proc/4712/cmdline", QByteArray("/usr/sbin/pppd\0call\0provider\0", 29));
    QCOMPARE(ras.GetRasConnections().value(1).entryName, u"provider"_s);
    write("proc/4712/cmdline", QByteArray("/usr/sbin/pppd\0call\0../pap-secrets\0", 35));
    QCOMPARE(ras.GetRasConnections().value(1).entryName, QString());
    write("proc/4712/cmdline", QByteArray("/bin/sleep\0call\0provider\0", 25));
    QCOMPARE(ras.GetRasConnections().value(1).entryName, QString());
  }

  void dialAndHangUp() {
    KernelRemoteAccess ras(paths());
    QSignalSpy progress(&ras, &RemoteAccess::DialProgress);
    RasDialParams own = *ras.GetDialParams("arcor");
    own.Benutzer = "anderer";
    own.Telefon = "0190 123";
    own.Passwort = "nicht auf der Befehlszeile";
    const QString handle = ras.DialEntry("arcor", own);
    QVERIFY(!handle.isEmpty());
    QTRY_COMPARE(progress.count(), 2);
    QCOMPARE(progress.at(0), (QList<QVariant>{handle, RasState::OpenPort}));
    QCOMPARE(progress.at(1), (QList<QVariant>{handle, RasState::Connected}));
    // The own number goes to chat, the password through a pipe only.
    const QByteArray command = read("pon.log");
    QVERIFY2(command.startsWith("arcor user anderer connect /usr/sbin/chat -v -f " +
                                bytes("chatscripts/arcor") + " -T 0190123 plugin passwordfd.so passwordfd "),
             command.constData());
    QCOMPARE(read("password.log"), QByteArray("nicht auf der Befehlszeile"));
    // Shell words never reach pppd's connect line.
    QFile::remove(path("pon.log"));
    own.Telefon = "0190; rm -rf /";
    own.Passwort = "arcor pass";
    QVERIFY(!ras.DialEntry("arcor", own).isEmpty());
    QTRY_COMPARE(read("pon.log"), QByteArray("arcor user anderer\n"));
    QTRY_COMPARE(progress.count(), 4);
    // The program's own memory names the entry where pppd left no pid file.
    QCOMPARE(ras.GetRasConnections().value(0).entryName, u"arcor"_s);
    QCOMPARE(ras.GetConnectState(handle)->state, RasState::Connected);

    QVERIFY(ras.HangUp("ppp0"));
    QVERIFY(ras.GetRasConnections().isEmpty());
    QCOMPARE(read("poff.log"), QByteArray("arcor\n"));

    // A peer that never comes up fails when its time is over.
    ras.SetDialTimeout(500);
    const QString silent = ras.DialEntry("provider", {});
    QTRY_COMPARE(progress.count(), 6);
    QCOMPARE(progress.last(), (QList<QVariant>{silent, RasState::Disconnected}));
    QVERIFY(!ras.GetConnectState(silent));
  }
};

QTEST_GUILESS_MAIN(TestKernelRemoteAccess)
#include "test_kernelremoteaccess.moc"
