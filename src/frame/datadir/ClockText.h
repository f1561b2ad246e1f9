#pragma once

#include <QDate>
#include <QString>
#include <QTime>

namespace minutor {

// Clock texts are "hours:minutes:seconds"; hours may pass 24 and 99.

// Seconds of `a` less seconds of `b`, as "[-]HH:MM:SS" with at least two
// digits a field. A leading "-" makes a value negative.
QString ZeitDifferenz(QStringView a, QStringView b);

// Carries seconds of 60 and more into minutes and minutes into hours, taking
// up to two digits behind each colon: "1:75:80" is "02:16:20".
QString NormalizeTime(QStringView text);

// As NormalizeTime, but hours of 24 and more become 0 (not the remainder).
QString NormalizeTimeOfDay(QStringView text);

// hours x 360 + minutes x 60 + seconds. The factor 360 is what the chart and
// the printout add their durations with, so it must stay.
qint64 TimeToSeconds(QStringView text);

// Seconds of `a` x 100 / seconds of `b`, signs dropped; 0 unless both > 0.
double ZeitProzent(QStringView a, QStringView b);

// The seconds of a clock text, read as ZeitDifferenz reads it.
double ClockTextSeconds(QStringView text);

// A count of seconds as "HH:MM:SS" (hours at least two digits).
QString SecondsToClockText(qint64 seconds);

// The date in the locale's short date form (four-digit year); "" when invalid.
QString NormaliseDate(const QDate& date);

// Reads a date in the locale's short date form, or as d.m.yyyy.
QDate ParseShortDate(QStringView text);

// A time of day as the system prints it: the locale's long time form without
// the time zone ("14:05:09" in German).
QString LongTimeText(const QTime& time);

}  // namespace minutor
