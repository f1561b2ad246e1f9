#pragma once

#include "detection/Probes.h"

namespace minutor {

// The IPv4 addresses of the interfaces that are up, from the kernel. The
// host-name lookup is no substitute: on Debian it gives 127.0.1.1 whether a
// line is up or not.
class HostAddresses final : public HostAddressSource {
 public:
  std::optional<QStringList> IPv4Addresses() const override;
};

}  // namespace minutor
