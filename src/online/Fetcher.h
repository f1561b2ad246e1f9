#pragma once

#include <QByteArray>
#include <QObject>
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
  // status, too slow, too large, an address that isn't http or https). The
  // fetch belongs to `context`: when that goes, the fetch ends and `done`
  // never runs.
  virtual void Fetch(const QString& address, QObject* context, Done done) = 0;

  // Ends the fetches of `context` under way; their `done` never runs.
  virtual void Abort(QObject* context) = 0;
};

}  // namespace minutor
