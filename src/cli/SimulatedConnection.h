#pragma once

#include "metering/MeterHooks.h"
#include "users/AlarmOutput.h"
#include "users/ConnectionAlarms.h"

#include <QStringList>

namespace minutor {

class Meter;
struct Services;

namespace cli {

// The line and the boxes of a simulated recording: the connection has the
// given entry name, budgets and limits are checked as the connection panel
// checks them, and what the boxes would do is noted as events. The cut
// countdown runs a second at a time; when it ends, the line is down and the
// next tick ends the recording.
class SimulatedConnection final : public MeterHooks, public AlarmOutput {
 public:
  SimulatedConnection(Services& services, QString connection);
  void SetMeter(Meter& meter) { meter_ = &meter; }

  // The connection window opens.
  void Load() { alarms_.LoadTimeLeft(); }
  // A second of the countdown's own timer.
  void Second();
  // The events since the last call: "alarm KIND", "ConStop", "HangUp".
  QStringList TakeEvents();
  const ConnectionAlarms& Alarms() const { return alarms_; }

  void DetectConnection(DetectedConnection& connection) override { connection.name = connection_; }
  void GetTimeLimit() override { alarms_.GetTimeLimit(); }
  void GetBudget() override { alarms_.GetBudget(); }
  void GetNewBudget(bool monthChanged) override { alarms_.GetNewBudget(monthChanged); }
  void CheckBudget() override;
  void CheckConnectionEnd() override;
  void CheckDayLimit() override;
  void CheckMonthLimit() override;

  void PlaySound(const QString&) override {}
  void BudgetCrossed(int kind) override;
  void ShowAlert(int) override {}
  void ShowConStop() override;

 private:
  QString connection_;
  ConnectionAlarms alarms_;
  Meter* meter_ = nullptr;
  QStringList events_;
  int conStopLeft_ = 0;  // 0 while the box isn't shown
  bool lineDown_ = false;
};

}  // namespace cli
}  // namespace minutor
