#include "users/ui/AlarmBoxes.h"

#include "users/Alarms.h"
#include "users/DesktopNotifier.h"
#include "users/SoundPlayer.h"

namespace minutor {

AlarmBoxes::AlarmBoxes(QWidget* parent) : alert_(new AlertBox(parent)), conStop_(new ConStopBox(parent)) {}

void AlarmBoxes::SetRemoteAccess(RemoteAccess* remote) {
  if (conStop_) {
    conStop_->SetRemoteAccess(remote);
  }
}

void AlarmBoxes::PlaySound(const QString& path) {
  if (player_ != nullptr) {
    player_->Play(path);
  }
}

void AlarmBoxes::ShowAlert(int kind) {
  if (!alert_) {
    return;
  }
  alert_->ShowAlert(kind);
  if (notifier_ != nullptr) {
    notifier_->Notify(alert_->windowTitle(), AlertText(kind));
  }
}

void AlarmBoxes::ShowConStop() {
  if (!conStop_) {
    return;
  }
  const bool opens = !conStop_->IsCounting();
  conStop_->Open();
  if (opens && notifier_ != nullptr) {
    notifier_->Notify(conStop_->windowTitle(),
                      kConStopMessage + QLatin1Char('\n') + ConStopText(kConStopSeconds));
  }
}

}  // namespace minutor
