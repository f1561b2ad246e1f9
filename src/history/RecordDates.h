#pragma once

#include <QDate>
#include <QString>

namespace minutor {

// The date of year, month and day where parts out of range roll over: day 0
// is the last day of the month before, month 0 is December of the year
// before, day 31 of a 30-day month is the first of the next.
QDate BuildDate(int year, int month, int day);

// The date a record's file name holds: of the text before the first "-", the
// first two characters are the day, the next two the month, the rest the
// year. Invalid when these aren't the numbers of a real date.
QDate GetRecordFileDate(const QString& fileName);

}  // namespace minutor
