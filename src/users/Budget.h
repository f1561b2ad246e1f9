#pragma once

#include "users/UserFile.h"

#include <QDate>
#include <QString>

#include <array>
#include <optional>

namespace minutor {

class DataDir;

// "Benutzer/Benutzer.dat", the budget options of the whole installation.
struct BudgetOptions {
  bool shared = false;  // one budget for all users, "Benutzer/Budget.dat"
  bool sound = false;   // play the warning sound on a crossing
  bool visual = false;  // show the warning box on a crossing
  QString soundName;    // "Sounds/<name>.wav"
};

// nullopt when the file is missing; damaged lines read as off and empty.
std::optional<BudgetOptions> ReadBudgetOptions(const DataDir& dir);
bool WriteBudgetOptions(const DataDir& dir, const BudgetOptions& options);

inline const QString kSharedBudgetFile = QStringLiteral("Benutzer/Budget.dat");

// The budget file that counts for `user`: the shared one when the options say
// so, else the user's own.
QString BudgetFileOf(const DataDir& dir, const QString& user);

// The budget of a user and what is left of it on a day. Day, month and the
// defined period, in that order, as everywhere below.
struct BudgetRests {
  std::array<double, 3> amounts{};
  std::array<double, 3> rests{};
  QDate periodFrom;
  QDate periodTo;
  // What the records of the last seven days, today included, spent: the
  // pace at which the rests go.
  double lastWeekSpent = 0.0;

  // Today lies within the defined period, its ends included.
  bool PeriodHolds(const QDate& today) const { return periodFrom <= today && today <= periodTo; }
};

// The amounts of `user`'s budget less what the records spent: today's records
// against the day, this month's against the month, and, while today lies in
// the period, every record of whatever date against the period. A shared
// budget counts every user's records, a separate one those of `user` (case
// included). The same records of the last seven days make `lastWeekSpent`.
// nullopt when the budget file is missing or a date in it isn't
// one: the caller says the budget files are damaged.
std::optional<BudgetRests> GetBudget(const DataDir& dir, const QString& user, const QDate& today);

// "Die Budgetdateien sind beschädigt ..."
extern const QString kBudgetFilesDamaged;

// A rest as the panels print it: "0.00", a blank and the currency sign.
QString RestText(double rest, const QString& waehrung);

// The Budget panel's line of one budget: "inaktiv" without an amount, else the
// rest; the bar is the share left, 0 to 100.
struct BudgetPanelLine {
  QString text;
  int bar = 0;
};
BudgetPanelLine BudgetPanelShows(double amount, double rest, const QString& waehrung);

// The Overview's line of one budget: the rest, the share left in percent
// ("nicht festgelegt" without an amount) and the bar, 0 to 100.
struct OverviewBudgetLine {
  QString rest;
  QString percent;
  int bar = 0;
};
OverviewBudgetLine OverviewBudgetShows(double amount, double rest, const QString& waehrung);

// A rest below zero, or of exactly nothing, of a budget that is set.
bool IsBudgetExceeded(const std::array<OverviewBudgetLine, 3>& lines);
// The same for the user's rests now; a damaged budget is never exceeded.
bool IsBudgetExceeded(const DataDir& dir, const QString& user, const QDate& today);

}  // namespace minutor
