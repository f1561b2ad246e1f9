#pragma once

#include <QDate>
#include <QString>

namespace minutor {

class DataDir;

// The heading of the exported and printed list for a period item of the
// list: "Verbindungen am Mittwoch, den 20.05.2026", "Verbindungen im Mai
// 2026", ... "Definiert" names the two lines of Period.cfg as they stand.
QString BuildListTitle(const DataDir& dir, const QString& periodItem, const QDate& today);

// The month whose charts go with the list of a period index: this month, the
// last or the one before, as a date built from today with its day kept, so
// that a short month rolls over into the next. Invalid for other periods.
QDate ListChartMonth(int periodIndex, const QDate& today);

}  // namespace minutor
