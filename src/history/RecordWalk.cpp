#include "history/RecordWalk.h"

#include "frame/datadir/DataDir.h"
#include "history/RecordDates.h"
#include "metering/ConnectionRecord.h"

namespace minutor {

WalkResult WalkRecords(const DataDir& dir,
                       const std::function<bool(const QString& name, const QDate& date)>& wanted,
                       const std::function<void(const RecordFile& record)>& take,
                       const std::atomic<bool>* cancel, bool withCipher) {
  WalkResult result;
  const QString folder = dir.Resolve(kRecordFolder) + QLatin1Char('/');
  RecordFile record;
  for (const QString& name : dir.ListFiles(kRecordFolder)) {
    if (!name.endsWith(QLatin1String(".con"), Qt::CaseInsensitive)) {
      continue;
    }
    if (cancel != nullptr && cancel->load(std::memory_order_relaxed)) {
      result.cancelled = true;
      break;
    }
    const QDate date = GetRecordFileDate(name);
    if (!wanted(name, date)) {
      continue;
    }
    record.cipher.clear();
    auto fields = ReadRecordFields(folder + name, 12, ~0u, withCipher ? &record.cipher : nullptr);
    if (!fields) {
      ++result.unreadable;
      continue;
    }
    record.name = name;
    record.date = date;
    record.fields = std::move(*fields);
    take(record);
    ++result.read;
  }
  return result;
}

}  // namespace minutor
