#pragma once

#include "history/Report.h"

#include <QStringList>

#include <atomic>
#include <functional>

namespace minutor {

class DataDir;

// The items of the analysis' period combo, in their order.
const QStringList& ReportPeriodItems();

// Whether a record of the name date `date` belongs to a period of the
// analysis. "Dieser Monat" takes this month of every year; the other periods
// select as the list does.
std::function<bool(const QDate& date)> ReportPeriodFilter(const DataDir& dir, const QString& period,
                                                          const QDate& today);

// The whole analysis of one period and user ("[Alle]" for everybody) from
// one walk over the records. Stops early once `cancel` is set.
ReportTexts BuildReport(const DataDir& dir, const QString& period, const QString& user, const QDate& today,
                        const QString& currency, const std::atomic<bool>* cancel = nullptr);

}  // namespace minutor
