#include "users/platform/DBusNotifier.h"

#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

namespace minutor {

void DBusNotifier::Notify(const QString& title, const QString& text) {
  if (!bus_.isConnected()) {
    return;
  }
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
  call << QStringLiteral("Minutor") << quint32{0} << QStringLiteral("minutor") << title << text
       << QStringList() << QVariantMap{{QStringLiteral("urgency"), QVariant::fromValue<uchar>(2)}}
       << qint32{-1};
  call.setAutoStartService(true);
  bus_.send(call);
}

}  // namespace minutor
