#pragma once

#include "online/ClockSetter.h"

#include <QDBusConnection>
#include <QObject>

namespace minutor {

// Sets the clock through systemd's timedated, which asks the user through
// polkit where an administrator's right is needed. While the system keeps its
// time by NTP the clock is left alone: setting it would only start a fight
// with the time service.
class TimedatedClockSetter final : public QObject, public ClockSetter {
 public:
  explicit TimedatedClockSetter(QDBusConnection bus = QDBusConnection::systemBus(),
                                QObject* parent = nullptr);

  void SetClock(const QDateTime& moment, QObject* context, Done done) override;

 private:
  void CallSetTime(qint64 microseconds, QObject* context, Done done);

  QDBusConnection bus_;
};

}  // namespace minutor
