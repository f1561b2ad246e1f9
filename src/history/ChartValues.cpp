#include "history/ChartValues.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/NumberText.h"
#include "history/RecordWalk.h"

namespace minutor {

namespace {

constexpr int kPieNames = 20;
const QString kBroken = QStringLiteral("Defekte Aufzeichnungen");

double DayValue(const RecordFile& record, ChartMeasure measure) {
  switch (measure) {
    case ChartMeasure::Dauer:
      return static_cast<double>(TimeToSeconds(FromAnsi(record.Line(3))));
    case ChartMeasure::Kosten:
      return static_cast<double>(ParseBetrag(record.Line(4).mid(1)));
    default:
      return LeadingNumber(record.Line(8)) / 1000000;
  }
}

QString PieName(const RecordFile& record, ChartMeasure measure) {
  if (measure != ChartMeasure::Anbieter) {
    return FromAnsi(record.Line(11));
  }
  const QString tariff = FromAnsi(record.Line(10));
  const QString label = tariff.endsWith(QLatin1String(".tel"), Qt::CaseInsensitive) ? QStringLiteral("M - ")
                                                                                    : QStringLiteral("A - ");
  return label + tariff.left(tariff.size() - 4);
}

ChartData GatherDays(const DataDir& dir, const ChartQuery& query, ChartMeasure measure,
                     const std::atomic<bool>* cancel) {
  std::array<double, 31> sums{};
  WalkRecords(
      dir,
      [&](const QString&, const QDate& date) {
        return date.year() == query.year && date.month() == query.month;
      },
      [&](const RecordFile& record) {
        if (RecordMatches(query.filter, FromAnsi(record.Line(10)), FromAnsi(record.Line(11)))) {
          sums[static_cast<std::size_t>(record.date.day() - 1)] += DayValue(record, measure);
        }
      },
      cancel);
  ChartData data;
  for (std::size_t i = 0; i < sums.size(); ++i) {
    data.days[i] = static_cast<float>(sums[i]);
  }
  return data;
}

ChartData GatherPie(const DataDir& dir, const ChartQuery& query, ChartMeasure measure,
                    const std::atomic<bool>* cancel) {
  ChartData data;
  double counted = 0;
  WalkRecords(
      dir,
      [&](const QString&, const QDate& date) {
        return date.isValid() && date.month() == query.month && date.year() % 100 == query.year % 100;
      },
      [&](const RecordFile& record) {
        data.total += 1;
        const QString name = PieName(record, measure);
        for (PieEntry& entry : data.pie) {
          if (entry.name.compare(name, Qt::CaseInsensitive) == 0) {
            entry.count += 1;
            counted += 1;
            return;
          }
        }
        if (data.pie.size() < kPieNames) {
          data.pie.append({name, 1});
          counted += 1;
        }
      },
      cancel);
  if (data.total > counted) {
    data.pie.append({kBroken, static_cast<float>(data.total - counted)});
  }
  return data;
}

}  // namespace

ChartData GatherChartData(const DataDir& dir, const ChartQuery& query, ChartMeasure measure,
                          const std::atomic<bool>* cancel) {
  if (measure == ChartMeasure::Anbieter || measure == ChartMeasure::Benutzer) {
    return GatherPie(dir, query, measure, cancel);
  }
  ChartQuery dayQuery = query;
  dayQuery.filter.userCase = Qt::CaseInsensitive;
  return GatherDays(dir, dayQuery, measure, cancel);
}

}  // namespace minutor
