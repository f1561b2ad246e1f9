#include "users/ConnectionAlarms.h"

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "users/AlarmOutput.h"
#include "users/Alarms.h"
#include "users/TimeLeft.h"
#include "users/UserFile.h"

#include <cmath>

namespace minutor {

namespace {

constexpr int kDarkRed = 128;
constexpr int kDarkGreen = 32768;
constexpr qint64 kDaySeconds = 86400;

}  // namespace

const std::array<QString, 3> ConnectionAlarms::kLabelNames = {
    QStringLiteral("lblRestTag"), QStringLiteral("lblRestMonat"), QStringLiteral("lblRestDefiniert")};

bool IsLimitReached(qint32 secondsLeft, const QString& dauer) {
  // Whole minutes, halves to the even one.
  const auto minutes = static_cast<qint64>(std::nearbyint(secondsLeft / 60.0));
  const qint64 allowed = minutes >= 0 ? (minutes * 60) % kDaySeconds : minutes * 60;
  return allowed - static_cast<qint64>(ClockTextSeconds(dauer)) <= 0;
}

ConnectionAlarms::ConnectionAlarms(Services& services, AlarmOutput& output)
    : services_(services), output_(output) {}

void ConnectionAlarms::LoadTimeLeft() {
  AppState& state = services_.state;
  if (state.DayLimitOn || state.MonthLimitOn) {
    GetTimeLeft(services_.dir, state, services_.clock.Now().date());
  }
}

void ConnectionAlarms::GetTimeLimit() {
  minutor::GetTimeLimit(services_.dir, services_.state, services_.clock.Now().date());
}

void ConnectionAlarms::GetBudget() {
  budget_ = minutor::GetBudget(services_.dir, services_.state.ActiveUser, services_.clock.Now().date());
  for (int i = 0; i < 3; ++i) {
    RestLabel& label = labels_[static_cast<std::size_t>(i)];
    if (!budget_ || budget_->amounts[static_cast<std::size_t>(i)] == 0) {
      label = RestLabel{};
      continue;
    }
    ShowRest(i);
    label.tag = budget_->rests[static_cast<std::size_t>(i)];
  }
}

void ConnectionAlarms::GetNewBudget(bool alsoMonth) {
  if (!budget_) {
    return;
  }
  const auto file = ReadBudgetFile(services_.dir, BudgetFileOf(services_.dir, services_.state.ActiveUser));
  if (!file) {
    return;
  }
  budget_->rests[0] = file->perDay;
  if (alsoMonth) {
    budget_->rests[1] = file->perMonth;
  }
}

void ConnectionAlarms::CheckBudget(double cost) {
  if (!budget_) {
    return;
  }
  const QDate today = services_.clock.Now().date();
  for (int i = 0; i < 3; ++i) {
    const auto k = static_cast<std::size_t>(i);
    if (labels_[k].text == RestLabel{}.text || (i == 2 && !budget_->PeriodHolds(today))) {
      continue;
    }
    const double rest = budget_->rests[k];
    const double before = rest - setOff_[k];
    setOff_[k] = cost;
    if (before >= 0 && rest - cost < 0) {
      output_.BudgetCrossed(i + 1);
      BudgetAlarm(services_.dir, services_.state, i + 1, output_);
    }
    ShowRest(i);
  }
}

void ConnectionAlarms::ShowRest(int index) {
  const auto k = static_cast<std::size_t>(index);
  const double left = budget_->rests[k] - setOff_[k];
  labels_[k].text = RestText(left, services_.state.Waehrung);
  labels_[k].colour = left <= 0 ? kDarkRed : kDarkGreen;
}

void ConnectionAlarms::CheckDayLimit(const QString& dauer) {
  if (!dayLimitFired_ && IsLimitReached(services_.state.DaySecondsLeft, dauer)) {
    dayLimitFired_ = true;
    output_.ShowConStop();
  }
}

void ConnectionAlarms::CheckMonthLimit(const QString& dauer) {
  if (!monthLimitFired_ && IsLimitReached(services_.state.MonthSecondsLeft, dauer)) {
    monthLimitFired_ = true;
    output_.ShowConStop();
  }
}

}  // namespace minutor
