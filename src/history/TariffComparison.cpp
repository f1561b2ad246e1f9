#include "history/TariffComparison.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "history/ManualCost.h"
#include "history/RecordFilter.h"
#include "history/RecordWalk.h"
#include "history/ReportRun.h"
#include "history/TariffRepricer.h"
#include "tariffs/TariffNames.h"

#include <QTime>

#include <algorithm>

namespace minutor {

namespace {

// Progress is told after so many connections priced.
constexpr int kProgressStep = 512;

bool Cancelled(const std::atomic<bool>* cancel) {
  return cancel != nullptr && cancel->load(std::memory_order_relaxed);
}

// The tariffs the catalogue lists, in the order of their names.
QStringList CatalogueFiles(const DataDir& dir) {
  QStringList files;
  for (const QString& file : dir.ListFiles(QStringLiteral("Tarife"))) {
    const auto anbieter = GetAnbieter(file);
    if (anbieter && !TarifLabel(*anbieter, file).isEmpty()) {
      files.append(file);
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

TariffComparison CompareTariffs(const DataDir& dir, const QString& period, const QString& user,
                                const QDate& today, const std::atomic<bool>* cancel,
                                const std::function<void(int percent)>& progress) {
  TariffComparison result;
  const auto passes = ReportPeriodFilter(dir, period, today);
  const QByteArray wantedUser = ToAnsi(user);
  QList<std::pair<QString, PastConnection>> connections;
  const WalkResult walk = WalkRecords(
      dir, [&](const QString&, const QDate& date) { return passes(date); },
      [&](const RecordFile& record) {
        for (int line = 1; line <= 11; ++line) {
          if (record.Line(line).isEmpty()) {
            return;
          }
        }
        // The start is the one in the record's name, "DDMMYYYY-HHMMSS.con".
        const QTime start = QTime::fromString(record.name.mid(9, 6), QStringLiteral("HHmmss"));
        if (!start.isValid() || !record.date.isValid() || (user != kAlle && record.Line(11) != wantedUser)) {
          return;
        }
        result.actual += ParseBetrag(record.Line(4).mid(1));
        connections.append({record.name, PastConnection{QDateTime(record.date, start),
                                                        DurationToSeconds(FromAnsi(record.Line(3))),
                                                        LeadingNumber(record.Line(8))}});
      },
      cancel);
  if (walk.cancelled) {
    result.cancelled = true;
    return result;
  }
  std::sort(connections.begin(), connections.end(), [](const auto& a, const auto& b) {
    return a.second.start != b.second.start ? a.second.start < b.second.start : a.first < b.first;
  });
  result.connections = static_cast<int>(connections.size());

  const QStringList files = CatalogueFiles(dir);
  const qint64 total = std::max<qint64>(1, qint64{files.size()} * connections.size());
  qint64 done = 0;
  for (const QString& file : files) {
    TariffRepricer repricer(dir, file);
    TariffCost cost{file, 0};
    for (const auto& connection : connections) {
      cost.cost += repricer.Next(connection.second).amount;
      if (++done % kProgressStep == 0) {
        if (Cancelled(cancel)) {
          result.cancelled = true;
          return result;
        }
        if (progress) {
          progress(static_cast<int>(done * 100 / total));
        }
      }
    }
    result.tariffs.append(cost);
  }
  std::stable_sort(result.tariffs.begin(), result.tariffs.end(),
                   [](const TariffCost& a, const TariffCost& b) { return a.cost < b.cost; });
  if (progress) {
    progress(100);
  }
  return result;
}

}  // namespace minutor
