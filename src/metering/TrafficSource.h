#pragma once

#include <QString>

#include <optional>

namespace minutor {

// Bytes moved over a connection, counted up from the counter's origin.
struct TrafficCount {
  double received = 0;
  double sent = 0;
};

// Where the meter reads the traffic of the running connection once a second.
class TrafficSource {
 public:
  virtual ~TrafficSource() = default;

  // The cumulative counters of the connection with this handle (0 when the
  // connection's handle isn't known); nothing when they can't be read, which
  // the meter takes as zero bytes, as it does for a connection never counted.
  virtual std::optional<TrafficCount> Read(qint32 connectionHandle) = 0;

  // The network interface of the connection about to be metered ("" when it
  // isn't known); counting starts afresh from here.
  virtual void SetInterface(const QString& /*interfaceName*/) {}
};

// A system that tells nothing: the byte labels read "unbekannt" and a volume
// tariff shows "Flatrate".
class NoTrafficSource final : public TrafficSource {
 public:
  std::optional<TrafficCount> Read(qint32) override { return std::nullopt; }
};

}  // namespace minutor
