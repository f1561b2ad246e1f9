#pragma once

#include <QDateTime>
#include <QObject>

#include <functional>

namespace minutor {

// Sets the system's clock, asking the user for the right where the system
// wants that. The answer comes later from the event loop.
class ClockSetter {
 public:
  enum class Outcome {
    Set,
    SystemKeepsTime,  // the system synchronises its clock itself: left alone
    Refused,          // the user or the system's policy didn't allow it
    Failed,           // no service to set the clock
  };
  using Done = std::function<void(Outcome)>;

  virtual ~ClockSetter() = default;
  // `done` runs later, unless `context` has gone by then.
  virtual void SetClock(const QDateTime& moment, QObject* context, Done done) = 0;
};

}  // namespace minutor
