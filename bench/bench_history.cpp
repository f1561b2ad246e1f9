// Times the history's readers against plain reads of the same files: the
// monthly chart against listing the folder and reading the month's files,
// the analysis of the whole history against reading every file.
//
//   bench_history [N]     N records (default 100000) in a temporary data directory
//
// Prints the times and "chart ratio R", "report ratio R": reader time /
// baseline time, the best of three rounds each.

#include "frame/datadir/DataDir.h"
#include "history/ChartValues.h"
#include "history/ReportRun.h"
#include "metering/ConnectionRecord.h"
#include "users/FieldCipher.h"

#include <QCoreApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

using namespace minutor;

namespace {

// Records spread over the days of 2020 to 2026, a few a day.
void MakeRecords(const DataDir& dir, int count) {
  dir.MakeDir(kRecordFolder);
  const QString folder = dir.Resolve(kRecordFolder);
  const QDate first(2020, 1, 1);
  const int days = static_cast<int>(first.daysTo(QDate(2026, 12, 31))) + 1;
  for (int i = 0; i < count; ++i) {
    const QDate date = first.addDays(i % days);
    const int second = 8 * 3600 + (i / days) * 97;
    RecordLabels l;
    l.startTag = date.toString(QStringLiteral("ddMMyyyy"));
    l.startTime = QStringLiteral("%1:%2:%3")
                      .arg(second / 3600 % 24, 2, 10, QLatin1Char('0'))
                      .arg(second / 60 % 60, 2, 10, QLatin1Char('0'))
                      .arg(second % 60, 2, 10, QLatin1Char('0'));
    l.dauer = QStringLiteral("00:%1:17").arg(i % 60, 2, 10, QLatin1Char('0'));
    l.kosten = QStringLiteral("%1,%2 €").arg(i % 7).arg(i % 1000, 3, 10, QLatin1Char('0'));
    l.einheiten = QString::number(i % 90);
    l.bytesIn = QStringLiteral("%1 Bytes").arg(i * 1733);
    l.bytesOut = QStringLiteral("%1 Bytes").arg(i * 211);
    l.bytesInOut = QStringLiteral("%1 Bytes").arg(i * 1944);
    l.connectionName = QStringLiteral("Mobilfunk-Stick");
    l.tarif = i % 2 == 0 ? QStringLiteral("Mobilnetz Plus - Freiminuten 100.tel")
                         : QStringLiteral("Funkwelle - Tag und Nacht.tel");
    l.benutzer = i % 3 == 0 ? QStringLiteral("Anna") : QStringLiteral("Supervisor");
    QList<QByteArray> lines;
    for (const QByteArray& plain : RecordPlainLines(l)) {
      lines.append(EncryptField(plain));
    }
    QFile file(folder + QLatin1Char('/') + RecordFileName(l.startTag, l.startTime));
    if (file.open(QIODevice::WriteOnly)) {
      file.write(lines.join("\r\n") + "\r\n");
    }
  }
}

// Lists the folder and reads, plainly, the files whose names `wanted` takes.
qint64 PlainRead(const QString& folder, const std::function<bool(const QByteArray&)>& wanted,
                 qint64* checksum) {
  QElapsedTimer timer;
  timer.start();
  QList<QByteArray> chosen;
  if (DIR* d = ::opendir(QFile::encodeName(folder).constData())) {
    while (const dirent* entry = ::readdir(d)) {
      const QByteArray name(entry->d_name);
      if (name.endsWith(".con") && wanted(name)) {
        chosen.append(QFile::encodeName(folder) + '/' + name);
      }
    }
    ::closedir(d);
  }
  char buffer[4096];
  for (const QByteArray& path : std::as_const(chosen)) {
    const int fd = ::open(path.constData(), O_RDONLY);
    if (fd < 0) {
      continue;
    }
    ssize_t got = 0;
    while ((got = ::read(fd, buffer, sizeof buffer)) > 0) {
      *checksum += got;
    }
    ::close(fd);
  }
  return timer.nsecsElapsed();
}

qint64 Time(const std::function<void()>& work) {
  QElapsedTimer timer;
  timer.start();
  work();
  return timer.nsecsElapsed();
}

// The best of three rounds of each, taken in turns.
void Report(const char* name, const std::function<qint64()>& baseline,
            const std::function<qint64()>& reader) {
  qint64 base = 0;
  qint64 read = 0;
  for (int round = 0; round < 3; ++round) {
    const qint64 b = baseline();
    const qint64 r = reader();
    base = round == 0 ? b : std::min(base, b);
    read = round == 0 ? r : std::min(read, r);
  }
  std::printf("%s baseline %.1f ms\n", name, static_cast<double>(base) / 1e6);
  std::printf("%s %.1f ms\n", name, static_cast<double>(read) / 1e6);
  std::printf("%s ratio %.2f\n", name,
              static_cast<double>(read) / static_cast<double>(std::max<qint64>(base, 1)));
}

}  // namespace

int main(int argc, char* argv[]) {
  QCoreApplication app(argc, argv);
  const int count = argc > 1 ? std::max(1, QByteArray(argv[1]).toInt()) : 100000;
  QTemporaryDir temp;
  const DataDir dir(temp.path());
  MakeRecords(dir, count);
  const QString folder = dir.Resolve(kRecordFolder);
  std::printf("records %d\n", count);
  qint64 checksum = 0;

  ChartQuery query;
  query.month = 3;
  query.year = 2024;
  Report(
      "chart",
      [&] {
        return PlainRead(
            folder, [](const QByteArray& name) { return name.mid(2, 6) == "032024"; }, &checksum);
      },
      [&] {
        return Time([&] {
          checksum += static_cast<qint64>(GatherChartData(dir, query, ChartMeasure::Dauer).days[0]);
        });
      });
  Report(
      "report",
      [&] {
        return PlainRead(
            folder, [](const QByteArray&) { return true; }, &checksum);
      },
      [&] {
        return Time([&] {
          checksum += BuildReport(dir, QStringLiteral("Gesamt"), QStringLiteral("[Alle]"),
                                  QDate(2026, 12, 31), QStringLiteral("€"))
                          .dauer.size();
        });
      });
  std::printf("checksum %lld\n", static_cast<long long>(checksum));
  return 0;
}
