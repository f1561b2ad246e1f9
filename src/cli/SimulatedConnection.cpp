#include "cli/SimulatedConnection.h"

#include "metering/Meter.h"
#include "users/Alarms.h"

namespace minutor::cli {

SimulatedConnection::SimulatedConnection(Services& services, QString connection)
    : connection_(std::move(connection)), alarms_(services, *this) {}

void SimulatedConnection::Second() {
  if (conStopLeft_ <= 0) {
    return;
  }
  if (--conStopLeft_ == 0) {
    // The simulated line is the one active connection: it is cut.
    events_.append(QStringLiteral("HangUp"));
    lineDown_ = true;
  }
}

QStringList SimulatedConnection::TakeEvents() { return std::exchange(events_, {}); }

void SimulatedConnection::CheckBudget() { alarms_.CheckBudget(static_cast<double>(meter_->Fields().Kosten)); }

void SimulatedConnection::CheckConnectionEnd() {
  if (lineDown_) {
    meter_->Counter_Stop();
  }
}

void SimulatedConnection::CheckDayLimit() { alarms_.CheckDayLimit(meter_->Labels().lblDauer); }

void SimulatedConnection::CheckMonthLimit() { alarms_.CheckMonthLimit(meter_->Labels().lblDauer); }

void SimulatedConnection::BudgetCrossed(int kind) { events_.append(QStringLiteral("alarm %1").arg(kind)); }

void SimulatedConnection::ShowConStop() {
  if (conStopLeft_ > 0) {
    return;
  }
  conStopLeft_ = kConStopSeconds;
  events_.append(QStringLiteral("ConStop"));
}

}  // namespace minutor::cli
