#include "detection/MonitoringLoop.h"

#include "desk/OptionsFile.h"
#include "detection/Probes.h"
#include "detection/RemoteAccess.h"
#include "frame/AppState.h"
#include "frame/Services.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/Names.h"

#include <algorithm>

namespace minutor {

MonitoringLoop::MonitoringLoop(Services& services, RemoteAccess& remote, NetworkStateSource& network,
                               const HostAddressSource& host)
    : services_(services), remote_(remote), network_(network), host_(host) {}

bool MonitoringLoop::InternetProbe() { return IsOnlineIE(services_.state, network_); }

bool MonitoringLoop::IpProbe() { return IsOnlineIP(services_.state, host_, services_.prompter); }

void MonitoringLoop::Check(const std::function<void()>& startConnection) {
  AppState& state = services_.state;
  // Until a tariff is chosen there is nothing to meter a connection with;
  // the loop waits for it instead of switching itself off.
  if (!state.MonitoringOn || state.AktuellerTarif.isEmpty()) {
    return;
  }
  // Every probe runs in every check; a recording that one of them started
  // keeps the later ones from starting another.
  if ((state.MethodIE || state.MethodLAN) && InternetProbe() && !state.RecordingActive) {
    state.DetectionSource = 1;
    startConnection();
  }
  if (state.MethodTAPI && !state.RecordingActive && state.TapiOnline) {
    state.DetectionSource = 2;
    startConnection();
  }
  if (state.MethodIP && IpProbe() && !state.RecordingActive) {
    state.DetectionSource = 3;
    startConnection();
  }
}

bool MonitoringLoop::CheckAllowedEntry() {
  if (!services_.state.OnlyMarkedEntries) {
    return false;
  }
  // A connection the system doesn't report can't be hung up, but it isn't
  // recorded either: it can't be told apart from a dialer's.
  const QList<RasConnection> connections = remote_.GetRasConnections();
  return connections.isEmpty() || IsUnwantedConnection(services_, remote_, connections);
}

bool MonitoringLoop::ConnectionEnded() {
  const AppState& state = services_.state;
  if (!state.MonitoringOn) {
    return false;
  }
  switch (state.DetectionSource) {
    case 1:
      return !InternetProbe();
    case 2:
      return !state.TapiOnline;
    case 3:
      return !IpProbe();
    default:
      return false;
  }
}

void MonitoringLoop::DetectConnection(DetectedConnection& connection, QString* interfaceName) {
  const QList<RasConnection> connections = remote_.GetRasConnections();
  if (interfaceName != nullptr) {
    interfaceName->clear();
  }
  if (!connections.isEmpty()) {
    const RasConnection& last = connections.last();
    connection.name = last.entryName;
    connection.device = last.deviceName;
    if (interfaceName != nullptr) {
      *interfaceName = last.interfaceName;
    }
  }
  if (services_.state.DetectionSource != 0 && !connection.name.isEmpty()) {
    const QString tariff = EntryTariff(services_.dir, connection.name);
    if (!tariff.isEmpty()) {
      services_.state.AktuellerTarif = tariff;
    }
  }
}

QString EntryTariff(const DataDir& dir, const QString& entry) {
  if (!IsUsableEntryName(entry)) {
    return {};
  }
  const auto lines = dir.ReadLines(QStringLiteral("DialUp/") + entry + QStringLiteral(".trf"));
  if (!lines || lines->size() < 2) {
    return {};
  }
  const QString provider = FromAnsi(lines->at(0));
  const QString label = FromAnsi(lines->at(1));
  QString tariff;
  if (label.startsWith(QLatin1Char('A'))) {
    tariff = provider + label.mid(1) + QStringLiteral(".atl");
  } else if (label.startsWith(QLatin1Char('M'))) {
    tariff = provider + label.mid(1) + QStringLiteral(".tel");
  }
  // The name becomes a file name in "Tarife" and "Prerun".
  return IsSafeFileName(tariff) ? tariff : QString();
}

bool IsEntryAllowed(const DataDir& dir, const QString& entry) {
  const QString wanted = entry.toLower();
  const QList<DenyEntry> entries = ReadDenyList(dir);
  return std::any_of(entries.begin(), entries.end(),
                     [&](const DenyEntry& e) { return e.allowed && e.name.toLower() == wanted; });
}

}  // namespace minutor
