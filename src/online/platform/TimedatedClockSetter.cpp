#include "online/platform/TimedatedClockSetter.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace minutor {

namespace {

const QString kService = QStringLiteral("org.freedesktop.timedate1");
const QString kPath = QStringLiteral("/org/freedesktop/timedate1");

// A polkit question may stand on the screen for a while.
constexpr int kAnswerMs = 120000;

}  // namespace

TimedatedClockSetter::TimedatedClockSetter(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)) {}

void TimedatedClockSetter::SetClock(const QDateTime& moment, QObject* context, Done done) {
  QDBusMessage ask = QDBusMessage::createMethodCall(
      kService, kPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll"));
  ask << kService;
  const qint64 microseconds = moment.toMSecsSinceEpoch() * 1000;
  auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(ask), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, watcher, &QObject::deleteLater);
  connect(watcher, &QDBusPendingCallWatcher::finished, context,
          [this, watcher, microseconds, context, done = std::move(done)] {
            const QDBusPendingReply<QVariantMap> reply = *watcher;
            if (reply.isError()) {
              done(Outcome::Failed);
              return;
            }
            const QVariantMap properties = reply.value();
            if (properties.value(QStringLiteral("NTP")).toBool() ||
                properties.value(QStringLiteral("NTPSynchronized")).toBool()) {
              done(Outcome::SystemKeepsTime);
              return;
            }
            CallSetTime(microseconds, context, done);
          });
}

void TimedatedClockSetter::CallSetTime(qint64 microseconds, QObject* context, Done done) {
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kService, QStringLiteral("SetTime"));
  call << microseconds << false << true;
  call.setInteractiveAuthorizationAllowed(true);
  auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, kAnswerMs), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, watcher, &QObject::deleteLater);
  connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, done = std::move(done)] {
    const QDBusPendingReply<> reply = *watcher;
    if (!reply.isError()) {
      done(Outcome::Set);
      return;
    }
    const QString error = reply.error().name();
    if (error == QLatin1String("org.freedesktop.timedate1.AutomaticTimeSyncEnabled")) {
      done(Outcome::SystemKeepsTime);
    } else if (error == QLatin1String("org.freedesktop.DBus.Error.AccessDenied") ||
               error == QLatin1String("org.freedesktop.DBus.Error.InteractiveAuthorizationRequired") ||
               error == QLatin1String("org.freedesktop.DBus.Error.AuthFailed")) {
      done(Outcome::Refused);
    } else {
      done(Outcome::Failed);
    }
  });
}

}  // namespace minutor
