#pragma once

#include "users/DesktopNotifier.h"

#include <QDBusConnection>

namespace minutor {

// org.freedesktop.Notifications on the session bus. The call is sent without
// waiting for its answer, so a missing service costs nothing.
class DBusNotifier final : public DesktopNotifier {
 public:
  explicit DBusNotifier(QDBusConnection bus) : bus_(std::move(bus)) {}
  void Notify(const QString& title, const QString& text) override;

 private:
  QDBusConnection bus_;
};

}  // namespace minutor
