#pragma once

#include "users/Budget.h"

#include <QString>

#include <array>
#include <optional>

namespace minutor {

class AlarmOutput;
struct Services;

// What the connection panel keeps of budgets and time limits while a
// connection runs: the rests as they were at its start, the cost already set
// off against each, and whether a limit's box has come. The checks touch no
// file except to warn; the rests are read at the start and after a budget
// was saved.
class ConnectionAlarms {
 public:
  ConnectionAlarms(Services& services, AlarmOutput& output);

  // One rest label: "nicht festgelegt" for a budget that isn't set, else the
  // rest less the cost set off, in dark red (128) from 0 down and dark green
  // (32768) above. The tag is the rest before this connection.
  struct RestLabel {
    QString text = QStringLiteral("nicht festgelegt");
    int colour = 0;
    double tag = 0;
  };
  const RestLabel& Label(int kind) const { return labels_[static_cast<std::size_t>(kind - 1)]; }
  static const std::array<QString, 3> kLabelNames;  // lblRestTag, lblRestMonat, lblRestDefiniert

  // The opening of the connection window, with a limit on: both seconds left.
  void LoadTimeLeft();
  // The start of the meter, with the day limit on: the day's seconds left.
  void GetTimeLimit();
  // The rests of the active user, at the start and after each budget save.
  void GetBudget();
  // A new day: the day's amount (and the month's, when the month changed
  // too) is whole again; the running cost keeps counting against it.
  void GetNewBudget(bool alsoMonth);
  // After each charge: a rest that crosses from zero or more to below zero
  // warns. `cost` is the cost of the connection so far.
  void CheckBudget(double cost);
  // At the end of each tick: the box comes once the allowed whole minutes
  // are used up. `dauer` is the duration label.
  void CheckDayLimit(const QString& dauer);
  void CheckMonthLimit(const QString& dauer);

  bool DayLimitFired() const { return dayLimitFired_; }
  bool MonthLimitFired() const { return monthLimitFired_; }

 private:
  void ShowRest(int index);

  Services& services_;
  AlarmOutput& output_;
  std::optional<BudgetRests> budget_;
  std::array<double, 3> setOff_{};
  std::array<RestLabel, 3> labels_;
  bool dayLimitFired_ = false;
  bool monthLimitFired_ = false;
};

// Whether the allowed time is used up: the seconds left, rounded to whole
// minutes and taken as a time of day (so that more than a day wraps), less
// the duration so far.
bool IsLimitReached(qint32 secondsLeft, const QString& dauer);

}  // namespace minutor
