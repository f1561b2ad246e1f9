#include "detection/platform/RemoteAccessFactory.h"

#include "detection/SimulatedRemoteAccess.h"
#include "detection/platform/KernelRemoteAccess.h"
#include "detection/platform/NetworkManagerRemoteAccess.h"

#include <QFileInfo>

namespace minutor {

std::unique_ptr<RemoteAccess> CreateRemoteAccess(const QDBusConnection& bus) {
  if (NetworkManagerRemoteAccess::IsAvailable(bus)) {
    return std::make_unique<NetworkManagerRemoteAccess>(bus);
  }
  const KernelRemoteAccess::Paths paths;
  if (QFileInfo::exists(paths.peers) || QFileInfo::exists(QStringLiteral("/usr/sbin/pppd"))) {
    return std::make_unique<KernelRemoteAccess>(paths);
  }
  return std::make_unique<SimulatedRemoteAccess>();
}

}  // namespace minutor
