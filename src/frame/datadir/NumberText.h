#pragma once

#include <QByteArray>
#include <QChar>
#include <QString>

namespace minutor {

// The decimal sign of the locale the program runs in (QLocale's default).
QChar DecimalSign();

// The plain leading-number parse: blanks are skipped, an optional sign, then
// digits with at most one point as decimal mark, up to the first other
// character. A comma ends the number: "3,9" is 3 and "60 / 60" is 60. No
// digits give 0.
double LeadingNumber(QStringView text);
double LeadingNumber(const QByteArray& text);

// An amount typed or written with a decimal comma or point: "3,9" and "3.9"
// are both 3.9. Kept in single precision, as the amounts are.
float ParseBetrag(QStringView text);
float ParseBetrag(const QByteArray& text);

// The general number-to-text conversion of the program: shortest form, up to
// 15 significant digits (7 for single precision), the locale's decimal sign.
QString GeneralText(double value);
QString GeneralText(float value);

// A number as the program prints it into a settings file: a blank where a
// plus sign would stand, the general text, and a trailing blank (" 16 ").
QByteArray PrintedNumber(double value);

// Fixed decimals with the locale's decimal sign: the format "0.00" is
// FixedText(v, 2), "0" is FixedText(v, 0).
QString FixedText(double value, int decimals);

// True when the numeric value of a settings line equals 1.
bool IsOne(const QByteArray& line);

}  // namespace minutor
