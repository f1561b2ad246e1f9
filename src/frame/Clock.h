#pragma once

#include <QDateTime>

namespace minutor {

// Where "now" comes from. The program asks the system; tests and the
// command-line companion set the time themselves.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual QDateTime Now() const = 0;
};

class SystemClock final : public Clock {
 public:
  QDateTime Now() const override;
};

// A clock that stands still until it is moved.
class FixedClock final : public Clock {
 public:
  explicit FixedClock(QDateTime now) : now_(std::move(now)) {}
  QDateTime Now() const override { return now_; }
  void Set(const QDateTime& now) { now_ = now; }
  void Advance(qint64 seconds) { now_ = now_.addSecs(seconds); }

 private:
  QDateTime now_;
};

}  // namespace minutor
