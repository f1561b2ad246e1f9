#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace minutor {

// Fetches web addresses for the tariff update and the clock correction,
// without blocking: the answer comes later from the event loop.
class Fetcher {
 public:
  using Done = std::function<void(std::optional<QByteArray>)>;

  virtual ~Fetcher() = default;

  // Fetches an address; `done` runs once, after the call has returned, with
  // the body, or with nullopt when anything failed (no answer, an error
  // status, too slow, too large, an address that isn't http or https).
  virtual void Fetch(const QString& address, Done done) = 0;

  // Ends every fetch under way; their `done` never runs.
  virtual void Abort() = 0;
};

}  // namespace minutor
