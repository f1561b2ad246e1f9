#include "history/RecordWalk.h"

#include "frame/datadir/DataDir.h"
#include "history/RecordDates.h"
#include "metering/ConnectionRecord.h"

#include <algorithm>
#include <utility>

namespace minutor {

namespace {

// The extension ".con" in any case. Asked of every name in the folder, so
// without the full case folding of a general comparison.
bool IsRecordName(const QString& name) {
  if (name.size() < 4) {
    return false;
  }
  const QStringView ext = QStringView(name).right(4);
  return ext[0] == u'.' && (ext[1].unicode() | 0x20) == u'c' && (ext[2].unicode() | 0x20) == u'o' &&
         (ext[3].unicode() | 0x20) == u'n';
}

}  // namespace

WalkResult WalkRecords(const DataDir& dir,
                       const std::function<bool(const QString& name, const QDate& date)>& wanted,
                       const std::function<void(const RecordFile& record)>& take,
                       const std::atomic<bool>* cancel, bool withCipher) {
  WalkResult result;
  const QString folder = dir.Resolve(kRecordFolder) + QLatin1Char('/');
  // The names are sifted in the folder's own order and only those wanted are
  // sorted: a month of a long history sorts a few hundred names, not all.
  QList<std::pair<QString, QDate>> chosen;
  for (QString& name : dir.ListFiles(kRecordFolder, QStringLiteral("*"), DataDir::Order::AsListed)) {
    if (!IsRecordName(name)) {
      continue;
    }
    const QDate date = GetRecordFileDate(name);
    if (wanted(name, date)) {
      chosen.append({std::move(name), date});
    }
  }
  std::sort(chosen.begin(), chosen.end(), [](const auto& a, const auto& b) { return a.first < b.first; });

  RecordFile record;
  for (auto& [name, date] : chosen) {
    if (cancel != nullptr && cancel->load(std::memory_order_relaxed)) {
      result.cancelled = true;
      break;
    }
    record.cipher.clear();
    auto fields = ReadRecordFields(folder + name, 12, ~0u, withCipher ? &record.cipher : nullptr);
    if (!fields) {
      ++result.unreadable;
      continue;
    }
    record.name = std::move(name);
    record.date = date;
    record.fields = std::move(*fields);
    take(record);
    ++result.read;
  }
  return result;
}

}  // namespace minutor
