#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTest>

#include <csignal>
#include <list>
#include <memory>

namespace test {

// A D-Bus daemon of the test's own that plays the system bus, and the
// services python3-dbusmock runs on it. Everything stops with the object;
// a stopped (SIGSTOP) service is woken first so that it can end.
class PrivateBus {
 public:
  PrivateBus() = default;
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;
  ~PrivateBus() {
    for (QProcess& mock : mocks_) {
      Stop(mock);
    }
    connection_.reset();
    Stop(daemon_);
  }

  // False when no daemon can be started here.
  bool Start(const QString& connectionName) {
    daemon_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                  QStringLiteral("--print-address=1")});
    if (!daemon_.waitForStarted(5000) || !daemon_.waitForReadyRead(5000)) {
      return false;
    }
    address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    connection_ = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(address_, connectionName));
    return connection_->isConnected();
  }

  const QString& address() const { return address_; }
  QDBusConnection& connection() { return *connection_; }

  bool HasOwner(const QString& name) {
    QDBusMessage ask = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    ask << name;
    return connection_->call(ask, QDBus::Block, 1000).arguments().value(0).toBool();
  }

  // Runs `python3 -m dbusmock --system <arguments>` with the system's own
  // python (where Debian installs dbusmock) and waits until `name` is owned.
  // Nullptr when it doesn't come up.
  QProcess* StartMock(const QStringList& arguments, const QString& name) {
    QProcess& mock = mocks_.emplace_back();
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
    return HasOwner(name) ? &mock : nullptr;
  }

  static void Freeze(QProcess& process) { ::kill(static_cast<pid_t>(process.processId()), SIGSTOP); }
  static void Thaw(QProcess& process) { ::kill(static_cast<pid_t>(process.processId()), SIGCONT); }

  static void Stop(QProcess& process) {
    if (process.state() != QProcess::NotRunning) {
      Thaw(process);
      process.terminate();
      process.waitForFinished(3000);
    }
  }

 private:
  QProcess daemon_;
  QString address_;
  std::unique_ptr<QDBusConnection> connection_;
  std::list<QProcess> mocks_;  // a list: the processes never move
};

}  // namespace test
