#pragma once

#include "metering/TrafficSource.h"

#include <QString>
#include <QtGlobal>

#include <optional>

namespace minutor {

// The bytes of a connection from the kernel's 64-bit statistics of its
// network interface (<root>/<interface>/statistics/rx_bytes and tx_bytes),
// counted from the connection's start: the counters' values when the
// interface is first seen are the origin.
//
// Counters below their last value were reset, or the interface is new (a ppp
// interface comes anew with each session): they count from 0 again, so the
// count falls and the meter holds its labels until it has caught up. An
// interface that was gone counts from 0 when it comes back, being a new one.
// Without an interface, or with one that can't be read, there is no count.
class SysfsTraffic final : public TrafficSource {
 public:
  explicit SysfsTraffic(QString interfaceName = QString(), QString root = QStringLiteral("/sys/class/net"));

  // The connection runs over another interface, or over none ("" when it
  // isn't known): counting begins afresh at its first sight.
  void SetInterface(const QString& interfaceName) override;
  const QString& Interface() const { return interface_; }

  // The interface is given, so the handle isn't needed.
  std::optional<TrafficCount> Read(qint32 connectionHandle) override;

 private:
  // One direction's counter: where it stands now and what it counted from.
  struct Counter {
    quint64 origin = 0;
    quint64 last = 0;
    double Advance(quint64 value);
  };

  QString interface_;
  QString root_;
  bool seen_ = false;  // the counters have an origin
  bool gone_ = false;  // the interface vanished since
  Counter received_;
  Counter sent_;
};

}  // namespace minutor
