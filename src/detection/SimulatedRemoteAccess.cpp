#include "detection/SimulatedRemoteAccess.h"

#include <QTimer>

namespace minutor {

QList<RasConnection> SimulatedRemoteAccess::GetRasConnections() { return connections_; }

QStringList SimulatedRemoteAccess::GetEntries() { return entryOrder_; }

std::optional<RasDialParams> SimulatedRemoteAccess::GetDialParams(const QString& entry) {
  const auto it = entries_.constFind(entry);
  if (it == entries_.constEnd()) {
    return std::nullopt;
  }
  return *it;
}

QString SimulatedRemoteAccess::DialEntry(const QString& entry, const RasDialParams& params) {
  dials.append({entry, params});
  if (!entries_.contains(entry) || dialStates_.isEmpty()) {
    return {};
  }
  const QString handle = QStringLiteral("sim/%1").arg(nextHandle_++);
  QTimer::singleShot(0, this, [this, handle, entry] { PlayDial(handle, entry, 0); });
  return handle;
}

void SimulatedRemoteAccess::PlayDial(const QString& handle, const QString& entry, int step) {
  const quint32 state = dialStates_.value(step, RasState::Disconnected);
  if (state == RasState::Connected) {
    connections_.append(
        {handle, entry, QStringLiteral("modem"), QStringLiteral("ttyS0"), QStringLiteral("ppp0")});
    emit ConnectionsChanged();
  }
  emit DialProgress(handle, state);
  if (step + 1 < dialStates_.size() && !IsRasStateFinal(state)) {
    QTimer::singleShot(0, this, [this, handle, entry, step] { PlayDial(handle, entry, step + 1); });
  }
}

std::optional<RasConnStatus> SimulatedRemoteAccess::GetConnectState(const QString& handle) {
  for (const RasConnection& connection : std::as_const(connections_)) {
    if (connection.handle != handle) {
      continue;
    }
    auto pending = pendingHangUps_.find(handle);
    if (pending != pendingHangUps_.end() && *pending >= 0 && (*pending)-- == 0) {
      pendingHangUps_.erase(pending);
      TakeDown(handle);
      return std::nullopt;
    }
    return RasConnStatus{RasState::Connected, 0, connection.deviceType, connection.deviceName, {}};
  }
  return std::nullopt;
}

void SimulatedRemoteAccess::AddEntry(const QString& name, const RasDialParams& params) {
  if (!entries_.contains(name)) {
    entryOrder_.append(name);
  }
  RasDialParams stored = params;
  stored.Eintrag = name;
  entries_.insert(name, stored);
}

void SimulatedRemoteAccess::RemoveEntry(const QString& name) {
  entries_.remove(name);
  entryOrder_.removeAll(name);
}

QString SimulatedRemoteAccess::BringUp(const QString& entry, const QString& deviceName,
                                       const QString& interfaceName) {
  return BringUp({{}, entry, QStringLiteral("modem"), deviceName, interfaceName});
}

QString SimulatedRemoteAccess::BringUp(RasConnection connection) {
  connection.handle = QStringLiteral("sim/%1").arg(nextHandle_++);
  connections_.append(connection);
  emit ConnectionsChanged();
  return connection.handle;
}

void SimulatedRemoteAccess::TakeDown(const QString& handle) {
  const auto removed = connections_.removeIf([&](const RasConnection& c) { return c.handle == handle; });
  if (removed > 0) {
    emit ConnectionsChanged();
  }
}

void SimulatedRemoteAccess::RequestHangUp(const QString& handle) {
  hangUps.append(handle);
  if (hangUpPolls_ == 0) {
    TakeDown(handle);
  } else {
    pendingHangUps_.insert(handle, hangUpPolls_);
  }
}

}  // namespace minutor
