#include "detection/platform/ProbesBusServices.h"

#include <QDBusMessage>

namespace minutor {

namespace {

// The panel asks this at a click: a bus that doesn't answer at once counts
// as one without the service.
constexpr int kTimeoutMs = 500;

QDBusMessage AskBus(const QString& method) {
  return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                        QStringLiteral("/org/freedesktop/DBus"),
                                        QStringLiteral("org.freedesktop.DBus"), method);
}

}  // namespace

bool ProbesBusServices::HasService(const QString& name) const {
  QDBusMessage owner = AskBus(QStringLiteral("NameHasOwner"));
  owner << name;
  const QDBusMessage hasOwner = bus_.call(owner, QDBus::Block, kTimeoutMs);
  if (hasOwner.type() == QDBusMessage::ReplyMessage && hasOwner.arguments().value(0).toBool()) {
    return true;
  }
  // NetworkManager and ModemManager are started on demand on many systems.
  const QDBusMessage activatable =
      bus_.call(AskBus(QStringLiteral("ListActivatableNames")), QDBus::Block, kTimeoutMs);
  return activatable.type() == QDBusMessage::ReplyMessage &&
         activatable.arguments().value(0).toStringList().contains(name);
}

}  // namespace minutor
