#include "frame/datadir/ClockText.h"

#include "frame/datadir/NumberText.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace minutor {

namespace {

// Hours, minutes and seconds of a clock text, each the leading number of the
// text behind the n-th colon; the hours are taken without their sign.
struct ClockParts {
  double hours = 0;
  double minutes = 0;
  double seconds = 0;
  bool negative = false;
};

ClockParts ReadClock(QStringView text) {
  ClockParts parts;
  parts.hours = std::fabs(LeadingNumber(text));
  parts.negative = text.trimmed().startsWith(QLatin1Char('-'));
  const auto first = text.indexOf(QLatin1Char(':'));
  if (first >= 0) {
    parts.minutes = LeadingNumber(text.mid(first + 1));
    const auto second = text.indexOf(QLatin1Char(':'), first + 1);
    if (second >= 0) {
      parts.seconds = LeadingNumber(text.mid(second + 1));
    }
  }
  return parts;
}

// Whole numbers of clock texts are kept within a million million hours (in
// seconds), so that no sum or product of them can overflow; a damaged record
// can hold any number of digits. Not a number reads as 0.
constexpr double kLargestSeconds = 3.6e15;

qint64 Whole(double value, double bound = kLargestSeconds) {
  if (std::isnan(value)) {
    return 0;
  }
  return static_cast<qint64>(std::clamp(value, -bound, bound));
}

QString TwoDigits(qint64 value) { return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0')); }

struct HourMinuteSecond {
  qint64 hours;
  qint64 minutes;
  qint64 seconds;
};

HourMinuteSecond NormalizedParts(QStringView text) {
  auto twoAfter = [&](qsizetype colon) -> qint64 {
    return colon < 0 ? 0 : Whole(LeadingNumber(text.mid(colon + 1, 2)));
  };
  const auto first = text.indexOf(QLatin1Char(':'));
  const auto second = first < 0 ? -1 : text.indexOf(QLatin1Char(':'), first + 1);
  HourMinuteSecond p{Whole(LeadingNumber(first < 0 ? text : text.left(first))), twoAfter(first),
                     twoAfter(second)};
  p.minutes += p.seconds / 60;
  p.seconds %= 60;
  p.hours += p.minutes / 60;
  p.minutes %= 60;
  return p;
}

QString JoinParts(const HourMinuteSecond& p) {
  return TwoDigits(p.hours) + QLatin1Char(':') + TwoDigits(p.minutes) + QLatin1Char(':') +
         TwoDigits(p.seconds);
}

}  // namespace

double ClockTextSeconds(QStringView text) {
  const ClockParts p = ReadClock(text);
  const double total = p.hours * 3600 + p.minutes * 60 + p.seconds;
  return p.negative ? -total : total;
}

QString SecondsToClockText(qint64 seconds) {
  const qint64 magnitude = seconds < 0 ? -std::max(seconds, -std::numeric_limits<qint64>::max()) : seconds;
  const QString text = JoinParts({magnitude / 3600, (magnitude / 60) % 60, magnitude % 60});
  return seconds < 0 ? QLatin1Char('-') + text : text;
}

QString ZeitDifferenz(QStringView a, QStringView b) {
  const double difference = ClockTextSeconds(a) - ClockTextSeconds(b);
  return SecondsToClockText(Whole(std::round(difference)));
}

QString NormalizeTime(QStringView text) { return JoinParts(NormalizedParts(text)); }

QString NormalizeTimeOfDay(QStringView text) {
  HourMinuteSecond p = NormalizedParts(text);
  if (p.hours >= 24) {
    p.hours = 0;
  }
  return JoinParts(p);
}

qint64 TimeToSeconds(QStringView text) {
  const auto parts = text.split(QLatin1Char(':'));
  auto value = [&](qsizetype i) { return Whole(LeadingNumber(parts.at(i))); };
  if (parts.size() >= 3) {
    return value(0) * 360 + value(1) * 60 + value(2);
  }
  if (parts.size() == 2) {
    return value(0) * 360 + value(1) * 60;
  }
  return value(0);
}

double ZeitProzent(QStringView a, QStringView b) {
  const double secondsA = std::fabs(ClockTextSeconds(a));
  const double secondsB = std::fabs(ClockTextSeconds(b));
  if (secondsA > 0 && secondsB > 0) {
    return secondsA * 100.0 / secondsB;
  }
  return 0.0;
}

namespace {

QString ShortDateFormat() {
  QString format = QLocale().dateFormat(QLocale::ShortFormat);
  if (!format.contains(QStringLiteral("yyyy"))) {
    format.replace(QStringLiteral("yy"), QStringLiteral("yyyy"));
  }
  return format;
}

}  // namespace

QString NormaliseDate(const QDate& date) {
  if (!date.isValid()) {
    return {};
  }
  return QLocale().toString(date, ShortDateFormat());
}

QDate ParseShortDate(QStringView text) {
  const QString trimmed = text.trimmed().toString();
  QDate date = QLocale().toDate(trimmed, ShortDateFormat());
  if (!date.isValid()) {
    date = QDate::fromString(trimmed, QStringLiteral("d.M.yyyy"));
  }
  return date;
}

QString LongTimeText(const QTime& time) {
  QString format = QLocale().timeFormat(QLocale::LongFormat);
  format.remove(QLatin1Char('t'));
  return QLocale().toString(time, format.trimmed());
}

}  // namespace minutor
