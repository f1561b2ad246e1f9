#pragma once

#include "detection/Probes.h"

#include <QStringList>

namespace minutor::test {

// A network that reaches the internet.
class FakeNetwork final : public NetworkStateSource {
 public:
  std::optional<quint32> NetworkState() override { return 70; }
};

// The machine's addresses, as the test sets them.
class FakeHost final : public HostAddressSource {
 public:
  std::optional<QStringList> IPv4Addresses() const override { return addresses; }
  std::optional<QStringList> addresses = QStringList{"127.0.0.1"};
};

}  // namespace minutor::test
