// Times the history readers against plain reads of the same files, in the
// same run:
//
//   bench_history [N] [NAME...]   N records (default 100000) in a temporary data
//                                 directory; with names, only those ratios
//
// Prints "list ratio R" (the list over "Gesamt" against reading every file
// plainly), "month ratio R" (the list over "Dieser Monat" against listing the
// folder and reading that month's files plainly), "chart ratio R" (the
// monthly chart of this month against the same), "report ratio R" (the
// analysis over "Gesamt" against reading every file plainly) and "stall ms N" (the
// longest the event loop stood still while the list panel loaded the
// history), "compare ratio R" (every connection priced again under 20
// tariffs of every shape against the analysis over "Gesamt"). Each further
// measurement is one more entry in kRatios.

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/DataDir.h"
#include "history/ChartValues.h"
#include "history/ConnectionList.h"
#include "history/ListSort.h"
#include "history/ReportRun.h"
#include "history/TariffComparison.h"
#include "history/ui/ListPanel.h"
#include "metering/ConnectionRecord.h"
#include "users/FieldCipher.h"

#include "PlainRead.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>

using namespace minutor;

namespace {

const QDate kToday(2026, 3, 15);

class SilentPrompter final : public Prompter {
 public:
  void Message(const QString&, Icon, const QString&) override {}
  Answer Ask(const QString&, const QString&, bool) override { return Answer::No; }
};

// Records of 27 years, every day from the 1st to the 28th, two tariffs and
// two users; written straight to disk, as a hundred thousand saves in a row
// through the program's writer would take long.
void MakeRecords(const DataDir& dir, int count) {
  dir.MakeDir(kRecordFolder);
  const QString folder = dir.Resolve(kRecordFolder);
  for (int i = 0; i < count; ++i) {
    const int day = 1 + i % 28;
    const int month = 1 + (i / 28) % 12;
    const int year = 2000 + (i / 336) % 27;
    const int second = i / 9072;
    const QByteArray date = QStringLiteral("%1.%2.%3")
                                .arg(day, 2, 10, QLatin1Char('0'))
                                .arg(month, 2, 10, QLatin1Char('0'))
                                .arg(year)
                                .toLatin1();
    const QByteArray start = QStringLiteral("%1:%2:%3")
                                 .arg(second / 3600 % 24, 2, 10, QLatin1Char('0'))
                                 .arg(second / 60 % 60, 2, 10, QLatin1Char('0'))
                                 .arg(second % 60, 2, 10, QLatin1Char('0'))
                                 .toLatin1();
    const QList<QByteArray> plain{
        'S' + date,
        start,
        "00:" + QByteArray::number(10 + i % 50) + ":17",
        "S" + QByteArray::number(i % 7) + "," + QByteArray::number(10 + i % 90),
        QByteArray::number(i % 90),
        QByteArray::number(i * 1733),
        QByteArray::number(i * 211),
        QByteArray::number(i * 1944),
        "Mobilfunk-Stick",
        i % 2 == 0 ? "Funkwelle - Tag und Nacht.tel" : "Mobilnetz Plus - Freiminuten.atl",
        i % 3 == 0 ? "Anna" : "Supervisor",
        i % 5 == 0 ? "nachgetragen" : ""};
    QByteArray bytes;
    for (const QByteArray& line : plain) {
      bytes += EncryptField(line) + "\r\n";
    }
    const QString name = QString::fromLatin1(date.left(2) + date.mid(3, 2) + date.mid(6, 4) + '-' +
                                             start.left(2) + start.mid(3, 2) + start.mid(6, 2) + ".con");
    QFile file(folder + QLatin1Char('/') + name);
    if (file.open(QIODevice::WriteOnly)) {
      file.write(bytes);
    }
  }
}

// Twenty tariffs of all shapes: by the minute, to the second, with a long
// first unit, with free minutes, with zones by hour and weekday, by volume.
void MakeTariffs(const DataDir& dir) {
  const QByteArray takte[] = {"60/60", "1/1", "60/1", "30/30", "180/10"};
  const QByteArray zones =
      "[Tarifzonen]\r\nZone:Z\r\nVon:8\r\nBis:18\r\nPfennig:3,9\r\nEinheit:60\r\nWochenende:Nein\r\n"
      "Zone:Z\r\nVon:18\r\nBis:24\r\nPfennig:2\r\nEinheit:60\r\nWochenende:Nein\r\n"
      "Zone:Z\r\nVon:0\r\nBis:8\r\nPfennig:1,1\r\nEinheit:60\r\nWochenende:Nein\r\n"
      "Zone:Z\r\nVon:0\r\nBis:24\r\nPfennig:1,5\r\nEinheit:60\r\nWochenende:Ja\r\n";
  dir.MakeDir(QStringLiteral("Tarife"));
  for (int i = 0; i < 20; ++i) {
    const QByteArray head =
        i % 5 == 4 ? "Volumenabrechnung:Ja\r\nVolumenkosten:" + QByteArray::number(i) +
                         "\r\nVolumeneinheit:1\r\nVolumengrenze:" + QByteArray::number(i * 10)
                   : "Takt:" + takte[i % 4] + "\r\nFreiminuten:" + QByteArray::number(i % 3 * 60);
    QFile file(dir.Resolve(QStringLiteral("Tarife")) + QStringLiteral("/Anbieter%1 - Tarif.tel").arg(i));
    if (file.open(QIODevice::WriteOnly)) {
      file.write(head + "\r\n" + zones);
    }
  }
}

qint64 TimeList(const DataDir& dir, const QString& period, qint64* checksum) {
  QElapsedTimer timer;
  timer.start();
  ListQuery query;
  query.period = MakeListPeriod(dir, period, kToday);
  query.waehrung = QStringLiteral("€");
  ListResult result = GetConnections(dir, query);
  SortRows(result.rows, SortByHeader(kColumnDatum));
  *checksum += result.rows.size();
  return timer.nsecsElapsed();
}

qint64 TimeChart(const DataDir& dir, qint64* checksum) {
  QElapsedTimer timer;
  timer.start();
  ChartQuery query;
  query.month = kToday.month();
  query.year = kToday.year();
  *checksum += static_cast<qint64>(GatherChartData(dir, query, ChartMeasure::Dauer).days[0]);
  return timer.nsecsElapsed();
}

qint64 TimeCompare(const DataDir& dir, qint64* checksum) {
  QElapsedTimer timer;
  timer.start();
  *checksum += static_cast<qint64>(
      CompareTariffs(dir, QStringLiteral("Gesamt"), QStringLiteral("[Alle]"), kToday).tariffs.first().cost);
  return timer.nsecsElapsed();
}

qint64 TimeReport(const DataDir& dir, qint64* checksum) {
  QElapsedTimer timer;
  timer.start();
  *checksum +=
      BuildReport(dir, QStringLiteral("Gesamt"), QStringLiteral("[Alle]"), kToday, QStringLiteral("€"))
          .dauer.size();
  return timer.nsecsElapsed();
}

struct Ratio {
  const char* name;
  std::function<qint64(qint64*)> measured;
  std::function<qint64(qint64*)> baseline;
};

// The longest gap between two turns of the event loop while the panel
// loads, from its making to its rows on screen.
qint64 StallWhileLoading(const Services& services) {
  QElapsedTimer clock;
  qint64 last = 0;
  qint64 longest = 0;
  QTimer ticker;
  ticker.setInterval(1);
  QObject::connect(&ticker, &QTimer::timeout, [&] {
    const qint64 now = clock.elapsed();
    longest = std::max(longest, now - last);
    last = now;
  });
  clock.start();
  ticker.start();
  QEventLoop loop;
  ListPanel* panel = nullptr;
  QTimer::singleShot(0, [&] {
    const qint64 before = clock.elapsed();
    panel = new ListPanel(services, nullptr);
    panel->resize(900, 600);
    panel->show();
    longest = std::max(longest, clock.elapsed() - before);
    QObject::connect(panel, &ListPanel::listLoaded, &loop, [&] {
      // The rows' first painting counts too.
      QTimer::singleShot(0, &loop, &QEventLoop::quit);
    });
  });
  loop.exec();
  const qint64 now = clock.elapsed();
  longest = std::max(longest, now - last);
  delete panel;
  return longest;
}

}  // namespace

int main(int argc, char* argv[]) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  QApplication app(argc, argv);
  const int count = argc > 1 ? std::max(1, QByteArray(argv[1]).toInt()) : 100000;
  QTemporaryDir temp;
  const DataDir dir(temp.path());
  MakeRecords(dir, count);
  MakeTariffs(dir);
  const QString folder = dir.Resolve(kRecordFolder);
  std::printf("records %d\n", count);

  const QByteArray month = QByteArray::number(kToday.month()).rightJustified(2, '0');
  const QByteArray year = QByteArray::number(kToday.year());
  const auto all = [&](qint64* sum) {
    return bench::PlainRead(
        folder, [](const QByteArray& name) { return name.endsWith(".con"); }, sum);
  };
  const auto thisMonth = [&](qint64* sum) {
    return bench::PlainRead(
        folder,
        [&](const QByteArray& name) {
          return name.endsWith(".con") && name.mid(2, 2) == month && name.mid(4, 4) == year;
        },
        sum);
  };
  const Ratio kRatios[] = {
      {"list", [&](qint64* sum) { return TimeList(dir, QStringLiteral("Gesamt"), sum); }, all},
      {"month", [&](qint64* sum) { return TimeList(dir, QStringLiteral("Dieser Monat"), sum); }, thisMonth},
      {"chart", [&](qint64* sum) { return TimeChart(dir, sum); }, thisMonth},
      {"report", [&](qint64* sum) { return TimeReport(dir, sum); }, all},
      {"compare", [&](qint64* sum) { return TimeCompare(dir, sum); },
       [&](qint64* sum) { return TimeReport(dir, sum); }},
  };

  QList<QByteArray> only;
  for (int i = 2; i < argc; ++i) {
    only.append(argv[i]);
  }
  qint64 checksum = 0;
  for (const Ratio& ratio : kRatios) {
    if (!only.isEmpty() && !only.contains(ratio.name)) {
      continue;
    }
    // Best of three rounds each, alternating, so that both see the same cache.
    qint64 measured = 0;
    qint64 baseline = 0;
    for (int round = 0; round < 3; ++round) {
      const qint64 b = ratio.baseline(&checksum);
      const qint64 m = ratio.measured(&checksum);
      baseline = round == 0 ? b : std::min(baseline, b);
      measured = round == 0 ? m : std::min(measured, m);
    }
    std::printf("%s baseline %.1f ms\n", ratio.name, static_cast<double>(baseline) / 1e6);
    std::printf("%s %.1f ms\n", ratio.name, static_cast<double>(measured) / 1e6);
    std::printf("%s ratio %.2f\n", ratio.name,
                static_cast<double>(measured) / static_cast<double>(std::max<qint64>(baseline, 1)));
  }
  std::printf("checksum %lld\n", static_cast<long long>(checksum));

  AppState state;
  const FixedClock clock(QDateTime(kToday, QTime(12, 0)));
  SilentPrompter prompter;
  const Services services{state, dir, clock, prompter};
  if (only.isEmpty() || only.contains("stall")) {
    std::printf("stall ms %lld\n", static_cast<long long>(StallWhileLoading(services)));
  }
  return 0;
}
