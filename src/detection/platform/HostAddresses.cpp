#include "detection/platform/HostAddresses.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

namespace minutor {

std::optional<QStringList> HostAddresses::IPv4Addresses() const {
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) {
    return std::nullopt;
  }
  QStringList addresses;
  for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET ||
        (entry->ifa_flags & IFF_UP) == 0) {
      continue;
    }
    char text[INET_ADDRSTRLEN] = {};
    const auto* address = reinterpret_cast<const sockaddr_in*>(entry->ifa_addr);
    if (inet_ntop(AF_INET, &address->sin_addr, text, sizeof text) != nullptr) {
      addresses.append(QString::fromLatin1(text));
    }
  }
  freeifaddrs(list);
  return addresses;
}

}  // namespace minutor
