#include "users/BudgetProjection.h"

#include "users/Budget.h"

#include <algorithm>
#include <cmath>

namespace minutor {

namespace {

constexpr int kPaceDays = 7;

QString DayMonth(const QDate& date) { return date.toString(QStringLiteral("dd.MM.")); }

}  // namespace

BudgetProjection ProjectBudget(double rest, double lastWeekSpent, const QDate& today, const QDate& end) {
  BudgetProjection p;
  p.pace = std::max(lastWeekSpent, 0.0) / kPaceDays;
  p.end = end;
  // A rest that the panels print as 0.00 counts as spent, as it does for
  // the warnings.
  if (std::round(rest * 100.0) <= 0.0) {
    p.usedUp = true;
    p.lastsUntil = today;
    return p;
  }
  const qint64 daysToEnd = today.daysTo(end);
  p.perDay = rest / static_cast<double>(daysToEnd + 1);
  // Compared before it is added, so that a tiny pace can't overflow the date.
  const double daysLeft = p.pace > 0.0 ? std::floor(rest / p.pace) : INFINITY;
  p.lastsToEnd = daysLeft > static_cast<double>(daysToEnd);
  p.lastsUntil = p.lastsToEnd ? end : today.addDays(static_cast<qint64>(daysLeft));
  return p;
}

std::array<std::optional<BudgetProjection>, 3> ProjectBudgets(const BudgetRests& rests, const QDate& today) {
  const std::array<QDate, 3> ends = {today, QDate(today.year(), today.month(), today.daysInMonth()),
                                     rests.PeriodHolds(today) ? rests.periodTo : QDate()};
  std::array<std::optional<BudgetProjection>, 3> result;
  for (std::size_t i = 0; i < 3; ++i) {
    if (rests.amounts[i] != 0 && ends[i].isValid()) {
      result[i] = ProjectBudget(rests.rests[i], rests.lastWeekSpent, today, ends[i]);
    }
  }
  return result;
}

BudgetProjectionLine BudgetProjectionShows(const std::optional<BudgetProjection>& projection,
                                           const QString& waehrung) {
  if (!projection) {
    return {};
  }
  const BudgetProjection& p = *projection;
  const QString pace =
      QStringLiteral("Ausgaben der letzten 7 Tage: %1 pro Tag. ").arg(RestText(p.pace, waehrung));
  if (p.usedUp) {
    return {QStringLiteral("aufgebraucht"), QString(), pace + QStringLiteral("Das Budget ist aufgebraucht.")};
  }
  BudgetProjectionLine line;
  line.lasts = p.lastsToEnd ? QStringLiteral("reicht bis zum Ende (%1)").arg(DayMonth(p.end))
                            : QStringLiteral("reicht bis zum %1").arg(DayMonth(p.lastsUntil));
  line.perDay = QStringLiteral("noch %1 pro Tag").arg(RestText(p.perDay, waehrung));
  line.toolTip =
      pace +
      (p.lastsToEnd
           ? QStringLiteral("Geht es so weiter, reicht das Budget bis zum Ende (%1).").arg(DayMonth(p.end))
           : QStringLiteral("Geht es so weiter, ist das Budget am %1 aufgebraucht.")
                 .arg(DayMonth(p.lastsUntil))) +
      QStringLiteral(" Damit es bis zum %1 reicht, dürfen Sie noch %2 pro Tag ausgeben.")
          .arg(DayMonth(p.end), RestText(p.perDay, waehrung));
  return line;
}

}  // namespace minutor
