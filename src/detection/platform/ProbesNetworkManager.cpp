#include "detection/platform/ProbesNetworkManager.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace minutor {

namespace {

constexpr int kTimeoutMs = 1000;

}  // namespace

ProbesNetworkManager::ProbesNetworkManager(const QDBusConnection& bus, QObject* parent)
    : QObject(parent), bus_(bus) {}

std::optional<quint32> ProbesNetworkManager::NetworkState() {
  if (!asking_) {
    QDBusMessage ask = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.NetworkManager"), QStringLiteral("/org/freedesktop/NetworkManager"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    ask << QStringLiteral("org.freedesktop.NetworkManager") << QStringLiteral("State");
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(ask, kTimeoutMs), this);
    asking_ = true;
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* answered) {
      const QDBusPendingReply<QDBusVariant> reply = *answered;
      QVariant value = reply.isValid() ? reply.value().variant() : QVariant();
      // Some services wrap the value in one variant more than the property needs.
      while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
      }
      bool ok = false;
      const quint32 state = value.toUInt(&ok);
      lastAnswer_ = ok ? std::optional<quint32>(state) : std::nullopt;
      asking_ = false;
      answered->deleteLater();
    });
  }
  return lastAnswer_;
}

}  // namespace minutor
