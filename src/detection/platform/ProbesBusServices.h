#pragma once

#include "detection/ConCheck.h"

#include <QDBusConnection>

namespace minutor {

// Asks the bus whether a service runs there or can be started by it.
class ProbesBusServices final : public BusServices {
 public:
  explicit ProbesBusServices(const QDBusConnection& bus) : bus_(bus) {}
  bool HasService(const QString& name) const override;

 private:
  QDBusConnection bus_;
};

}  // namespace minutor
