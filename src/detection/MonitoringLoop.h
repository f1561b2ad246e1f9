#pragma once

#include "metering/MeterHooks.h"

#include <QString>

#include <functional>

namespace minutor {

class HostAddressSource;
class NetworkStateSource;
class RemoteAccess;
struct Services;

// The loop that notices a connection and its end. The frame runs Check at
// each of its checks; the recording panel asks DetectConnection at its start
// and ConnectionEnded at each tick.
class MonitoringLoop {
 public:
  MonitoringLoop(Services& services, RemoteAccess& remote, NetworkStateSource& network,
                 const HostAddressSource& host);

  // The probes in their order, each only while no recording runs: a probe
  // that says connected sets the detection source and calls
  // startConnection. Nothing happens with monitoring off or while no tariff
  // is chosen.
  void Check(const std::function<void()>& startConnection);

  // The guard against entries the user hasn't allowed, run before a
  // recording starts: IsUnwantedConnection, except that with no connection
  // reported at all it also answers true, so nothing unnamed is recorded.
  bool CheckAllowedEntry();

  // True when the probe that started the recording says the connection is
  // gone. A recording started by hand is never ended here.
  bool ConnectionEnded();

  // The last connection of the system: its entry name, device and handle,
  // and, for a detected connection, the tariff assigned to the entry.
  // interfaceName gets the connection's network interface, "" if unknown.
  void DetectConnection(DetectedConnection& connection, QString* interfaceName);

 private:
  Services& services_;
  RemoteAccess& remote_;
  NetworkStateSource& network_;
  const HostAddressSource& host_;

  bool InternetProbe();
  bool IpProbe();
};

// The tariff file of a dial-up entry from "DialUp/<entry>.trf": line 1 the
// provider, line 2 the label ("A..." for a fetched, "M..." for a hand-made
// tariff). Empty when there is none or line 2 has another letter.
QString EntryTariff(const class DataDir& dir, const QString& entry);

// Whether "DialUp/Deny.sec" marks the entry as allowed (pairs of lines:
// name, then 1 or 0; names compared without case).
bool IsEntryAllowed(const class DataDir& dir, const QString& entry);

}  // namespace minutor
