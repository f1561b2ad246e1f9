#include "users/BudgetProjection.h"

#include "users/Budget.h"

#include <algorithm>
#include <cmath>

namespace minutor {

namespace {

constexpr int kPaceDays = 7;

QString DayMonth(const QDate& date) { return date.toString(QStringLiteral("dd.MM.")); }

// The year only where it isn't this one.
QString FullDay(const QDate& date, const QDate& today) {
  return date.year() == today.year() ? DayMonth(date) : date.toString(QStringLiteral("dd.MM.yyyy"));
}

}  // namespace

BudgetProjection ProjectBudget(double rest, double lastWeekSpent, const QDate& today, const QDate& end) {
  BudgetProjection p;
  p.pace = std::max(lastWeekSpent, 0.0) / kPaceDays;
  p.end = end;
  p.today = today;
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
  if (p.usedUp) {
    return {true, QString(), QString(),
            QStringLiteral("Das Budget ist aufgebraucht (Ausgaben der letzten 7 Tage: %1 pro Tag).")
                .arg(RestText(p.pace, waehrung))};
  }
  const QString end = FullDay(p.end, p.today);
  const QString lasts = p.lastsToEnd
                            ? QStringLiteral("reicht bis zum Ende (%1)").arg(end)
                            : QStringLiteral("reicht bis zum %1").arg(FullDay(p.lastsUntil, p.today));
  BudgetProjectionLine line;
  line.until =
      p.lastsToEnd ? QStringLiteral("bis Ende") : QStringLiteral("bis %1").arg(DayMonth(p.lastsUntil));
  line.perDay = RestText(p.perDay, waehrung) + QStringLiteral("/Tag");
  line.toolTip = QStringLiteral(
                     "Das Budget %1 beim Tempo der letzten 7 Tage (%2 pro Tag). Damit es bis zum %3 "
                     "reicht, dürfen Sie noch %4 pro Tag ausgeben.")
                     .arg(lasts, RestText(p.pace, waehrung), end, RestText(p.perDay, waehrung));
  return line;
}

}  // namespace minutor
