#pragma once

#include <QDate>
#include <QString>

namespace minutor {

class DataDir;

// The free allowance of the month for a tariff, as the Overview shows it.
struct FreeAllowance {
  enum class Colour { DarkRed = 128, DarkGreen = 32768 };

  QString caption;  // "Verbleibende kostenfreie Zeit:" or "...Transfer:"
  QString text;     // the value shown
  Colour colour = Colour::DarkRed;
  bool barVisible = false;
  double percent = 0;   // of the bar's full width
  QString percentText;  // "50,0%"
  QString restfrei;     // what the meter later counts down from; "-" for none
};

// Free minutes count the records of this month (the year isn't compared)
// with the same tariff; free transfer counts every record of this month and
// year, whatever its tariff.
FreeAllowance ComputeFreeAllowance(const DataDir& dir, const QString& tariffFile, const QDate& today);

// The clock text a month's free minutes start from. Its middle field holds
// the fraction of an hour, not minutes: read back, a decimal comma cuts it
// off. That is how the allowance has always counted.
QString FreeMinutesText(double minutes);

}  // namespace minutor
