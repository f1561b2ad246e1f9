#pragma once

#include <QString>

namespace minutor {

// A message to the desktop's notification service, for boxes that a desktop
// may not keep on top. Without a service nothing happens.
class DesktopNotifier {
 public:
  virtual ~DesktopNotifier() = default;
  virtual void Notify(const QString& title, const QString& text) = 0;
};

}  // namespace minutor
