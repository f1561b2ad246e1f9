#include "history/ReportRun.h"

#include "frame/datadir/AnsiText.h"
#include "history/ListPeriod.h"
#include "history/RecordFilter.h"
#include "history/RecordWalk.h"

namespace minutor {

const QStringList& ReportPeriodItems() {
  static const QStringList items = {QStringLiteral("Gesamt"),        QStringLiteral("Dieser Monat"),
                                    QStringLiteral("Letzter Monat"), QStringLiteral("Vorletzter Monat"),
                                    QStringLiteral("Dieses Jahr"),   QStringLiteral("Letztes Jahr")};
  return items;
}

std::function<bool(const QDate& date)> ReportPeriodFilter(const DataDir& dir, const QString& period,
                                                          const QDate& today) {
  if (period == QLatin1String("Dieser Monat")) {
    return [today](const QDate& date) { return date.isValid() && date.month() == today.month(); };
  }
  return [listPeriod = MakeListPeriod(dir, period, today)](const QDate& date) {
    return listPeriod.Passes(date);
  };
}

ReportTexts BuildReport(const DataDir& dir, const QString& period, const QString& user, const QDate& today,
                        const QString& currency, const std::atomic<bool>* cancel) {
  const bool all = period == QLatin1String("Gesamt");
  const auto passes = ReportPeriodFilter(dir, period, today);
  const bool anyUser = user == kAlle;
  const QByteArray wantedUser = ToAnsi(user);
  QDate earliest = today;
  ReportTotals totals;
  WalkRecords(
      dir,
      [&](const QString&, const QDate& date) {
        if (all) {
          if (date.isValid() && date < earliest) {
            earliest = date;
          }
          return true;
        }
        return passes(date);
      },
      [&](const RecordFile& record) {
        if (anyUser || record.Line(11) == wantedUser) {
          AddToReport(totals, record.fields);
        }
      },
      cancel);
  return ReportSentences(totals, GetPeriodDays(period, today, earliest), user, currency);
}

}  // namespace minutor
