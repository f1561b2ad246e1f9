#pragma once

#include "detection/RemoteAccess.h"

#include <QDBusConnection>
#include <memory>

namespace minutor {

// NetworkManager when it is on the bus, else pppd when it is installed, else
// a remote access that knows no entries and no connections.
std::unique_ptr<RemoteAccess> CreateRemoteAccess(const QDBusConnection& bus = QDBusConnection::systemBus());

}  // namespace minutor
