#pragma once

#include <QDate>
#include <QString>

#include <array>
#include <optional>

namespace minutor {

struct BudgetRests;

// Where a budget's rest gets to if the spending goes on as it did in the last
// seven days: the day it runs out, and what may be spent per day for it to
// last until the end of its period.
struct BudgetProjection {
  double pace = 0.0;    // spent per day over the last seven days
  bool usedUp = false;  // nothing left now
  bool lastsToEnd = false;
  QDate lastsUntil;     // the day the rest runs out, or the period's end
  QDate end;            // the period's last day
  double perDay = 0.0;  // the rest spread over the days left, today and end included
  QDate today;          // the day projected from
};

// The rest runs out `floor(rest / pace)` days after today; at no pace, or
// when that day lies after `end`, it lasts the period. A rest that shows as
// 0.00 or below is used up.
BudgetProjection ProjectBudget(double rest, double lastWeekSpent, const QDate& today, const QDate& end);

// The projections of the day, the month and the defined period: the day ends
// today, the month on its last day, the period on its last date. Nothing for
// a budget that isn't set, nor for the period while today lies outside it.
std::array<std::optional<BudgetProjection>, 3> ProjectBudgets(const BudgetRests& rests, const QDate& today);

// A projection as the panels show it beside a rest.
struct BudgetProjectionLine {
  bool usedUp = false;
  QString until;    // "bis 23.11.", "bis Ende"; empty when used up
  QString perDay;   // "1,23 €/Tag"; empty when used up
  QString toolTip;  // both in words ("reicht bis zum 23.11."), with the pace they come from
  // "bis 23.11. · 1,23 €/Tag", or "aufgebraucht"
  QString Text() const {
    if (usedUp) {
      return QStringLiteral("aufgebraucht");
    }
    return until.isEmpty() ? QString() : until + QStringLiteral(" · ") + perDay;
  }
};
// Empty texts for a budget without a projection.
BudgetProjectionLine BudgetProjectionShows(const std::optional<BudgetProjection>& projection,
                                           const QString& waehrung);

}  // namespace minutor
