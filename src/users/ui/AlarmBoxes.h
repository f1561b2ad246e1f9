#pragma once

#include "users/AlarmOutput.h"
#include "users/ui/AlertBox.h"
#include "users/ui/ConStopBox.h"

#include <QPointer>

namespace minutor {

class DesktopNotifier;
class RemoteAccess;
class SoundPlayer;

// The warnings as the user meets them: the sound, the boxes, and a desktop
// notification beside each box, since a desktop may not keep it on top. The
// boxes outlive the connection they were opened for.
class AlarmBoxes final : public AlarmOutput {
 public:
  explicit AlarmBoxes(QWidget* parent);

  void SetSoundPlayer(SoundPlayer* player) { player_ = player; }
  void SetNotifier(DesktopNotifier* notifier) { notifier_ = notifier; }
  void SetRemoteAccess(RemoteAccess* remote);

  void PlaySound(const QString& path) override;
  void ShowAlert(int kind) override;
  void ShowConStop() override;

  AlertBox* Alert() const { return alert_; }
  ConStopBox* ConStop() const { return conStop_; }

 private:
  QPointer<AlertBox> alert_;
  QPointer<ConStopBox> conStop_;
  SoundPlayer* player_ = nullptr;
  DesktopNotifier* notifier_ = nullptr;
};

}  // namespace minutor
