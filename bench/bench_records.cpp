// Times the program's record reader against plain reads of the same files,
// and the Overview's free allowance (which reads the records of the month)
// against listing the folder and reading those files plainly.
//
//   bench_records [N]     N records (default 100000) in a temporary data directory
//
// Prints the times, "allowance ratio R" and, last, "ratio R": reader time /
// baseline time.

#include "desk/FreeAllowance.h"
#include "frame/datadir/DataDir.h"
#include "metering/ConnectionRecord.h"
#include "users/FieldCipher.h"

#include "PlainRead.h"

#include <QCoreApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

using namespace minutor;

namespace {

const QString kFreeMinutesTariff = QStringLiteral("Mobilnetz Plus - Freiminuten 100.tel");

QStringList MakeRecords(const DataDir& dir, int count) {
  QStringList paths;
  paths.reserve(count);
  dir.MakeDir(kRecordFolder);
  const QString folder = dir.Resolve(kRecordFolder);
  for (int i = 0; i < count; ++i) {
    const int day = 1 + i % 28;
    const int month = 1 + (i / 28) % 12;
    const int second = i / 336;
    RecordLabels l;
    l.startTag = QStringLiteral("%1%2%3")
                     .arg(day, 2, 10, QLatin1Char('0'))
                     .arg(month, 2, 10, QLatin1Char('0'))
                     .arg(2000 + (i / 336) % 27);
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
    l.tarif = i % 2 == 0 ? kFreeMinutesTariff : QStringLiteral("Funkwelle - Tag und Nacht.tel");
    l.benutzer = QStringLiteral("Supervisor");
    QList<QByteArray> lines;
    for (const QByteArray& plain : RecordPlainLines(l)) {
      lines.append(EncryptField(plain));
    }
    // Written straight to disk: the program's writer looks for the name in
    // any case first, which is right for one record but slow for a hundred
    // thousand in a row.
    const QString path = folder + QLatin1Char('/') + RecordFileName(l.startTag, l.startTime);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
      file.write(lines.join("\r\n") + "\r\n");
    }
    paths.append(path);
  }
  paths.removeDuplicates();
  return paths;
}

qint64 TimeReader(const QStringList& paths, qint64* checksum) {
  QElapsedTimer timer;
  timer.start();
  for (const QString& path : paths) {
    const auto fields = ReadRecordFields(path, 11);
    if (fields) {
      for (const QByteArray& field : *fields) {
        *checksum += field.size();
      }
    }
  }
  return timer.nsecsElapsed();
}

qint64 TimeAllowance(const DataDir& dir, const QDate& today, qint64* checksum) {
  QElapsedTimer timer;
  timer.start();
  const FreeAllowance allowance = ComputeFreeAllowance(dir, kFreeMinutesTariff, today);
  *checksum += allowance.text.size();
  return timer.nsecsElapsed();
}

}  // namespace

int main(int argc, char* argv[]) {
  QCoreApplication app(argc, argv);
  const int count = argc > 1 ? std::max(1, QByteArray(argv[1]).toInt()) : 100000;
  QTemporaryDir temp;
  const DataDir dir(temp.path());
  const QStringList paths = MakeRecords(dir, count);
  std::printf("records %lld\n", static_cast<long long>(paths.size()));

  // Best of three rounds each, alternating, so that both see the same cache.
  qint64 reader = 0;
  qint64 baseline = 0;
  qint64 checksum = 0;
  QList<QByteArray> encodedPaths;
  for (const QString& path : paths) {
    encodedPaths.append(QFile::encodeName(path));
  }
  for (int round = 0; round < 3; ++round) {
    const qint64 b = bench::PlainReadFiles(encodedPaths, &checksum);
    const qint64 r = TimeReader(paths, &checksum);
    baseline = round == 0 ? b : std::min(baseline, b);
    reader = round == 0 ? r : std::min(reader, r);
  }
  // The free allowance of a free-minutes tariff in a month that has records.
  dir.CopyShippedFiles(QStringLiteral(MINUTOR_SHIPPED_DIR));
  const QDate today(2026, 3, 15);
  qint64 allowance = 0;
  qint64 allowanceBaseline = 0;
  for (int round = 0; round < 3; ++round) {
    const QByteArray wanted = QByteArray::number(today.month()).rightJustified(2, '0');
    const qint64 b = bench::PlainRead(
        dir.Resolve(kRecordFolder),
        [&](const QByteArray& name) { return name.size() > 4 && name.mid(2, 2) == wanted; }, &checksum);
    const qint64 r = TimeAllowance(dir, today, &checksum);
    allowanceBaseline = round == 0 ? b : std::min(allowanceBaseline, b);
    allowance = round == 0 ? r : std::min(allowance, r);
  }
  std::printf("allowance baseline %.1f ms\n", static_cast<double>(allowanceBaseline) / 1e6);
  std::printf("allowance %.1f ms\n", static_cast<double>(allowance) / 1e6);
  std::printf("allowance ratio %.2f\n",
              static_cast<double>(allowance) / static_cast<double>(std::max<qint64>(allowanceBaseline, 1)));

  std::printf("baseline %.1f ms\n", static_cast<double>(baseline) / 1e6);
  std::printf("reader %.1f ms\n", static_cast<double>(reader) / 1e6);
  std::printf("checksum %lld\n", static_cast<long long>(checksum));
  std::printf("ratio %.2f\n",
              static_cast<double>(reader) / static_cast<double>(std::max<qint64>(baseline, 1)));
  return 0;
}
