// Times the budget walk and the time left against listing the records'
// folder and reading plainly the files each must open.
//
//   bench_budget [N]     N records (default 100000) in a temporary data directory
//
// Prints the times, "budget ratio R" and "timeleft ratio R": walk time /
// baseline time, measured in the same run.

#include "frame/datadir/DataDir.h"
#include "metering/ConnectionRecord.h"
#include "users/Budget.h"
#include "users/FieldCipher.h"
#include "users/TimeLeft.h"

#include "PlainRead.h"

#include <QCoreApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>

using namespace minutor;

namespace {

const QDate kToday(2026, 3, 15);

// Records over 27 years, two users, every day of the month.
void MakeRecords(const DataDir& dir, int count) {
  dir.MakeDir(kRecordFolder);
  const QString folder = dir.Resolve(kRecordFolder);
  for (int i = 0; i < count; ++i) {
    const int second = i / 336;
    const QString tag = QStringLiteral("%1%2%3")
                            .arg(1 + i % 28, 2, 10, QLatin1Char('0'))
                            .arg(1 + (i / 28) % 12, 2, 10, QLatin1Char('0'))
                            .arg(2000 + second % 27);
    const QString time = QStringLiteral("%1%2%3")
                             .arg(second / 3600 % 24, 2, 10, QLatin1Char('0'))
                             .arg(second / 60 % 60, 2, 10, QLatin1Char('0'))
                             .arg(second % 60, 2, 10, QLatin1Char('0'));
    const QList<QByteArray> plain = {"S01.01.2026",
                                     "10:00:00",
                                     QByteArray("00:") + QByteArray::number(10 + i % 50) + ":17",
                                     "S" + QByteArray::number(i % 7) + ",25",
                                     "3",
                                     "1000",
                                     "200",
                                     "1200",
                                     "Mobilfunk-Stick",
                                     "Funkwelle - Tag und Nacht.tel",
                                     i % 3 == 0 ? "Kind" : "Supervisor"};
    QByteArray bytes;
    for (const QByteArray& value : plain) {
      bytes += EncryptField(value) + "\r\n";
    }
    QFile file(folder + QLatin1Char('/') + tag + QLatin1Char('-') + time + QStringLiteral(".con"));
    if (file.open(QIODevice::WriteOnly)) {
      file.write(bytes);
    }
  }
}

qint64 Time(const std::function<void()>& work) {
  QElapsedTimer timer;
  timer.start();
  work();
  return timer.nsecsElapsed();
}

double Ratio(qint64 walk, qint64 baseline) {
  return static_cast<double>(walk) / static_cast<double>(std::max<qint64>(baseline, 1));
}

}  // namespace

int main(int argc, char* argv[]) {
  QCoreApplication app(argc, argv);
  const int count = argc > 1 ? std::max(1, QByteArray(argv[1]).toInt()) : 100000;
  QTemporaryDir temp;
  const DataDir dir(temp.path());
  MakeRecords(dir, count);
  // Today lies in the defined period, so the walk must open every record.
  dir.WriteLines(QStringLiteral("Benutzer/Kind.bdg"), {"5", "50", "500", "1.3.2026", "31.3.2026"});
  const QString folder = dir.Resolve(kRecordFolder);
  const QByteArray month = kToday.toString(QStringLiteral("MMyyyy")).toLatin1();
  const QByteArray day = kToday.toString(QStringLiteral("dd")).toLatin1();

  qint64 checksum = 0;
  qint64 budget = 0;
  qint64 budgetBaseline = 0;
  qint64 timeLeft = 0;
  qint64 timeLeftBaseline = 0;
  // Best of three rounds each, alternating, so that all see the same cache.
  for (int round = 0; round < 3; ++round) {
    const qint64 bb = bench::PlainRead(
        folder, [](const QByteArray& name) { return name.size() >= 8; }, &checksum);
    const qint64 b = Time([&] {
      const auto rests = GetBudget(dir, QStringLiteral("Kind"), kToday);
      checksum += rests ? static_cast<qint64>(rests->rests[2]) : 0;
    });
    const qint64 tb = bench::PlainRead(
        folder,
        [&](const QByteArray& name) {
          return name.size() >= 8 && (name.mid(2, 6) == month || name.left(2) == day);
        },
        &checksum);
    const qint64 t =
        Time([&] { checksum += ComputeTimeLeft(dir, QStringLiteral("Kind"), 60, 600, kToday).monthSeconds; });
    budgetBaseline = round == 0 ? bb : std::min(budgetBaseline, bb);
    budget = round == 0 ? b : std::min(budget, b);
    timeLeftBaseline = round == 0 ? tb : std::min(timeLeftBaseline, tb);
    timeLeft = round == 0 ? t : std::min(timeLeft, t);
  }
  std::printf("records %d\n", count);
  std::printf("budget baseline %.1f ms\n", static_cast<double>(budgetBaseline) / 1e6);
  std::printf("budget %.1f ms\n", static_cast<double>(budget) / 1e6);
  std::printf("timeleft baseline %.1f ms\n", static_cast<double>(timeLeftBaseline) / 1e6);
  std::printf("timeleft %.1f ms\n", static_cast<double>(timeLeft) / 1e6);
  std::printf("checksum %lld\n", static_cast<long long>(checksum));
  std::printf("budget ratio %.2f\n", Ratio(budget, budgetBaseline));
  std::printf("timeleft ratio %.2f\n", Ratio(timeLeft, timeLeftBaseline));
  return 0;
}
