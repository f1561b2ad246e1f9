#pragma once

#include "detection/Probes.h"

#include <QDBusConnection>
#include <QObject>

namespace minutor {

// NetworkManager's state of the network. Each question goes out without
// waiting; the answer is the last one that came back, so a slow or vanished
// service never holds up the poll.
class ProbesNetworkManager final : public QObject, public NetworkStateSource {
  Q_OBJECT

 public:
  explicit ProbesNetworkManager(const QDBusConnection& bus, QObject* parent = nullptr);

  // The last answer, and a new question unless one is still on its way.
  std::optional<quint32> NetworkState() override;

 private:
  QDBusConnection bus_;
  std::optional<quint32> lastAnswer_;
  bool asking_ = false;
};

}  // namespace minutor
