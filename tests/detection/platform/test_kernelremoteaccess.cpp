#include "detection/RasStates.h"
#include "detection/platform/KernelRemoteAccess.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace minutor;

// pppd's peers and the kernel's interfaces in a folder of the test's own; pon
// and poff are scripts that make and remove the interface.
class TestKernelRemoteAccess : public QObject {
  Q_OBJECT

  QTemporaryDir root_;

  QString path(const QString& relative) const { return root_.filePath(relative); }

  void write(const QString& relative, const QByteArray& text, bool executable = false) {
    QDir().mkpath(QFileInfo(path(relative)).absolutePath());
    QFile file(path(relative));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text);
    file.close();
    if (executable) {
      file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
  }

  void addInterface(const QString& name, const QByteArray& type, const QByteArray& flags) {
    write(QStringLiteral("net/%1/type").arg(name), type + '\n');
    write(QStringLiteral("net/%1/flags").arg(name), flags + '\n');
  }

  KernelRemoteAccess::Paths paths() const {
    return {path(QStringLiteral("ppp/peers")), path(QStringLiteral("net")), path(QStringLiteral("run")),
            path(QStringLiteral("bin/pon")), path(QStringLiteral("bin/poff")), path(QStringLiteral("proc"))};
  }

 private slots:
  void init() {
    QDir(root_.path()).removeRecursively();
    QDir().mkpath(root_.path());
    QDir().mkpath(path(QStringLiteral("run")));
    write(QStringLiteral("ppp/peers/arcor"),
          "noauth\nuser \"arcor user\" # comment\nconnect \"/usr/sbin/chat -v -f " +
              path(QStringLiteral("chatscripts/arcor")).toUtf8() + "\"\n/dev/ttyS0\n");
    write(QStringLiteral("chatscripts/arcor"), "ABORT BUSY\n'' ATZ\nOK ATDT 0192 070\nCONNECT ''\n");
    write(QStringLiteral("ppp/peers/provider"), "user provider\n");
    write(QStringLiteral("ppp/peers/provider~"), "old copy\n");
    write(QStringLiteral("ppp/peers/.hidden"), "\n");
    write(QStringLiteral("ppp/pap-secrets"), "# client server secret\n\"arcor user\" * \"arcor pass\"\n");
    addInterface(QStringLiteral("lo"), "772", "0x9");
    addInterface(QStringLiteral("eth0"), "1", "0x1003");
    // pon brings ppp0 up after a moment, as pppd does; poff takes it down.
    write(QStringLiteral("bin/pon"),
          "#!/bin/sh\necho \"$@\" >> " + path(QStringLiteral("pon.log")).toUtf8() +
              "\n[ \"$1\" = provider ] && exit 0\nsleep 0.3\nd=" + path(QStringLiteral("net/ppp0")).toUtf8() +
              "\nmkdir -p $d && echo 512 > $d/type && echo 0x1091 > $d/flags\n",
          true);
    write(QStringLiteral("bin/poff"),
          "#!/bin/sh\necho \"$@\" >> " + path(QStringLiteral("poff.log")).toUtf8() + "\nsleep 0.2\nrm -rf " +
              path(QStringLiteral("net/ppp0")).toUtf8() + "\n",
          true);
  }

  void entriesAndDialData() {
    KernelRemoteAccess ras(paths());
    QCOMPARE(ras.GetEntries(), (QStringList{QStringLiteral("arcor"), QStringLiteral("provider")}));
    const std::optional<RasDialParams> arcor = ras.GetDialParams(QStringLiteral("arcor"));
    QVERIFY(arcor);
    QCOMPARE(arcor->Benutzer, QStringLiteral("arcor user"));
    QCOMPARE(arcor->Telefon, QStringLiteral("0192070"));
    QCOMPARE(arcor->Passwort, QStringLiteral("arcor pass"));
    QVERIFY(arcor->passwordStored);
    const std::optional<RasDialParams> provider = ras.GetDialParams(QStringLiteral("provider"));
    QVERIFY(provider);
    QCOMPARE(provider->Benutzer, QStringLiteral("provider"));
    QVERIFY(!provider->passwordStored);
    QVERIFY(!ras.GetDialParams(QStringLiteral("../pap-secrets")));
    QVERIFY(!ras.GetDialParams(QStringLiteral("fehlt")));

    KernelRemoteAccess nothing({path(QStringLiteral("none")), path(QStringLiteral("none")),
                                path(QStringLiteral("none")), path(QStringLiteral("none")),
                                path(QStringLiteral("none"))});
    QVERIFY(nothing.GetEntries().isEmpty());
    QVERIFY(nothing.GetRasConnections().isEmpty());
    QVERIFY(nothing.DialEntry(QStringLiteral("arcor"), {}).isEmpty());
  }

  void connectionsAreThePppInterfacesThatAreUp() {
    KernelRemoteAccess ras(paths());
    QVERIFY(ras.GetRasConnections().isEmpty());
    addInterface(QStringLiteral("ppp1"), "512", "0x1090");  // down
    addInterface(QStringLiteral("ppp0"), "512", "0x1091");
    write(QStringLiteral("run/ppp-arcor.pid"), "4711\nppp0\n");
    const QList<RasConnection> up = ras.GetRasConnections();
    QCOMPARE(up.size(), 1);
    QCOMPARE(up.at(0).handle, QStringLiteral("ppp0"));
    QCOMPARE(up.at(0).entryName, QStringLiteral("arcor"));
    QCOMPARE(up.at(0).interfaceName, QStringLiteral("ppp0"));
    QCOMPARE(ras.GetConnectState(QStringLiteral("ppp0"))->state, RasState::Connected);
    QVERIFY(!ras.GetConnectState(QStringLiteral("ppp1")));

    // pon without a link name: pppd's command line names the peer; another
    // program's pid, or a peer that isn't one, names nothing.
    addInterface(QStringLiteral("ppp1"), "512", "0x1091");
    write(QStringLiteral("run/ppp1.pid"), "4712\n");
    write(QStringLiteral("proc/4712/cmdline"), QByteArray("/usr/sbin/pppd\0call\0provider\0", 29));
    QCOMPARE(ras.GetRasConnections().value(1).entryName, QStringLiteral("provider"));
    write(QStringLiteral("proc/4712/cmdline"), QByteArray("/usr/sbin/pppd\0call\0../pap-secrets\0", 35));
    QCOMPARE(ras.GetRasConnections().value(1).entryName, QString());
    write(QStringLiteral("proc/4712/cmdline"), QByteArray("/bin/sleep\0call\0provider\0", 25));
    QCOMPARE(ras.GetRasConnections().value(1).entryName, QString());
  }

  void dialAndHangUp() {
    KernelRemoteAccess ras(paths());
    QSignalSpy progress(&ras, &RemoteAccess::DialProgress);
    RasDialParams own = *ras.GetDialParams(QStringLiteral("arcor"));
    own.Benutzer = QStringLiteral("anderer");
    own.Passwort = QStringLiteral("nicht auf der Befehlszeile");
    const QString handle = ras.DialEntry(QStringLiteral("arcor"), own);
    QVERIFY(!handle.isEmpty());
    QTRY_COMPARE(progress.count(), 2);
    QCOMPARE(progress.at(0), (QList<QVariant>{handle, RasState::OpenPort}));
    QCOMPARE(progress.at(1), (QList<QVariant>{handle, RasState::Connected}));
    QFile ponLog(path(QStringLiteral("pon.log")));
    QVERIFY(ponLog.open(QIODevice::ReadOnly));
    QCOMPARE(ponLog.readAll(), QByteArray("arcor user anderer\n"));
    // The program's own memory names the entry where pppd left no pid file.
    QCOMPARE(ras.GetRasConnections().value(0).entryName, QStringLiteral("arcor"));
    QCOMPARE(ras.GetConnectState(handle)->state, RasState::Connected);

    QVERIFY(ras.HangUp(QStringLiteral("ppp0")));
    QVERIFY(ras.GetRasConnections().isEmpty());
    QFile poffLog(path(QStringLiteral("poff.log")));
    QVERIFY(poffLog.open(QIODevice::ReadOnly));
    QCOMPARE(poffLog.readAll(), QByteArray("arcor\n"));

    // A peer that never comes up fails when its time is over.
    ras.SetDialTimeout(500);
    const QString silent = ras.DialEntry(QStringLiteral("provider"), {});
    QTRY_COMPARE(progress.count(), 4);
    QCOMPARE(progress.last(), (QList<QVariant>{silent, RasState::Disconnected}));
    QVERIFY(!ras.GetConnectState(silent));
  }
};

QTEST_GUILESS_MAIN(TestKernelRemoteAccess)
#include "test_kernelremoteaccess.moc"
