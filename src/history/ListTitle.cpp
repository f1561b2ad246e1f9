#include "history/ListTitle.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "history/RecordDates.h"

#include <QLocale>

namespace minutor {

namespace {

QString DayTitle(const QDate& date) {
  return QStringLiteral("Verbindungen am ") + QLocale().dayName(date.dayOfWeek(), QLocale::LongFormat) +
         QStringLiteral(", den ") + NormaliseDate(date);
}

QString MonthTitle(const QDate& date) {
  return QStringLiteral("Verbindungen im ") + QLocale().monthName(date.month(), QLocale::LongFormat) +
         QLatin1Char(' ') + QString::number(date.year());
}

}  // namespace

QString BuildListTitle(const DataDir& dir, const QString& periodItem, const QDate& today) {
  const int y = today.year();
  const int m = today.month();
  const int d = today.day();
  if (periodItem == QLatin1String("Heute")) {
    return DayTitle(today);
  }
  if (periodItem == QLatin1String("Gestern")) {
    return DayTitle(BuildDate(y, m, d - 1));
  }
  if (periodItem == QLatin1String("Vorgestern")) {
    return DayTitle(BuildDate(y, m, d - 2));
  }
  if (periodItem == QLatin1String("Dieser Monat")) {
    return MonthTitle(today);
  }
  if (periodItem == QLatin1String("Letzter Monat")) {
    return MonthTitle(BuildDate(y, m - 1, 1));
  }
  if (periodItem == QLatin1String("Vorletzter Monat")) {
    return MonthTitle(BuildDate(y, m - 2, 1));
  }
  if (periodItem == QLatin1String("Dieses Jahr")) {
    return QStringLiteral("Verbindungen im Jahr ") + QString::number(y);
  }
  if (periodItem == QLatin1String("Letztes Jahr")) {
    return QStringLiteral("Verbindungen im Jahr ") + QString::number(y - 1);
  }
  if (periodItem == QLatin1String("Definiert")) {
    const QList<QByteArray> lines =
        dir.ReadLines(QStringLiteral("Config/Period.cfg")).value_or(QList<QByteArray>{});
    return QStringLiteral("Verbindungen vom ") + FromAnsi(lines.value(0)) + QStringLiteral(" bis zum ") +
           FromAnsi(lines.value(1));
  }
  if (periodItem == QLatin1String("Gesamt")) {
    return QStringLiteral("Alle aufgezeichneten Verbindungen");
  }
  return QStringLiteral("Verbindungen");
}

QDate ListChartMonth(int periodIndex, const QDate& today) {
  if (periodIndex < 1 || periodIndex > 3) {
    return {};
  }
  return BuildDate(today.year(), today.month() - (periodIndex - 1), today.day());
}

}  // namespace minutor
