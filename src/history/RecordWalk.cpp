#include "history/RecordWalk.h"

#include "frame/datadir/DataDir.h"
#include "history/RecordDates.h"
#include "metering/ConnectionRecord.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

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

using Chosen = QList<std::pair<QString, QDate>>;

// One file as a reader thread left it: its lines, or nothing when it
// couldn't be read.
struct ReadFile {
  std::optional<QList<QByteArray>> fields;
  QList<QByteArray> cipher;
};

ReadFile ReadOne(const QString& folder, const QString& name, bool withCipher) {
  ReadFile file;
  file.fields = ReadRecordFields(folder + name, 12, ~0u, withCipher ? &file.cipher : nullptr);
  return file;
}

// A long walk spends most of its time opening files and deciphering them.
// Reader threads do that ahead of the caller, a chunk of files at a time, so
// that the caller, who builds its rows or sums from the lines, and the
// readers work side by side; the caller still gets the files in name order.
class AheadReader {
 public:
  static constexpr qsizetype kChunk = 128;
  static constexpr qsizetype kSlots = 8;  // chunks read ahead at most

  AheadReader(const QString& folder, const Chosen& chosen, bool withCipher, int readers)
      : folder_(folder),
        chosen_(chosen),
        withCipher_(withCipher),
        chunks_((chosen.size() + kChunk - 1) / kChunk),
        slots_(kSlots) {
    // A thread the system refuses leaves the reading to those there are,
    // or, without any, to the caller.
    try {
      for (int i = 0; i < readers; ++i) {
        threads_.emplace_back([this] { Run(); });
      }
    } catch (const std::system_error&) {
    }
  }
  AheadReader(const AheadReader&) = delete;
  AheadReader& operator=(const AheadReader&) = delete;

  ~AheadReader() {
    {
      const std::lock_guard lock(mutex_);
      stop_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_) {
      thread.join();
    }
  }

  qsizetype Chunks() const { return chunks_; }

  // Waits for chunk `k` and hands it over; its place is free for the
  // readers again. Chunks are taken in order. Without reader threads the
  // chunk is read here.
  std::vector<ReadFile> Take(qsizetype k) {
    if (threads_.empty()) {
      return ReadChunk(k);
    }
    Slot& slot = slots_[static_cast<size_t>(k % kSlots)];
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return slot.chunk == k; });
    std::vector<ReadFile> files = std::move(slot.files);
    slot.chunk = -1;
    taken_ = k + 1;
    lock.unlock();
    changed_.notify_all();
    return files;
  }

 private:
  struct Slot {
    qsizetype chunk = -1;
    std::vector<ReadFile> files;
  };

  std::vector<ReadFile> ReadChunk(qsizetype chunk) const {
    const qsizetype begin = chunk * kChunk;
    const qsizetype end = std::min(begin + kChunk, chosen_.size());
    std::vector<ReadFile> files;
    files.reserve(static_cast<size_t>(end - begin));
    for (qsizetype i = begin; i < end; ++i) {
      files.push_back(ReadOne(folder_, chosen_.at(i).first, withCipher_));
    }
    return files;
  }

  void Run() {
    for (;;) {
      qsizetype chunk = 0;
      {
        std::unique_lock lock(mutex_);
        if (stop_ || next_ >= chunks_) {
          return;
        }
        chunk = next_++;
        // Its slot is free once the chunk kSlots before it has been taken.
        changed_.wait(lock, [&] { return stop_ || chunk < taken_ + kSlots; });
        if (stop_) {
          return;
        }
      }
      std::vector<ReadFile> files = ReadChunk(chunk);
      {
        const std::lock_guard lock(mutex_);
        Slot& slot = slots_[static_cast<size_t>(chunk % kSlots)];
        slot.files = std::move(files);
        slot.chunk = chunk;
      }
      changed_.notify_all();
    }
  }

  const QString folder_;
  const Chosen& chosen_;
  const bool withCipher_;
  const qsizetype chunks_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Slot> slots_;
  qsizetype next_ = 0;   // the next chunk a reader claims
  qsizetype taken_ = 0;  // chunks the caller has taken
  bool stop_ = false;
  std::vector<std::thread> threads_;
};

// Reader threads beside the caller: as many as the machine has cores, a few
// at most, and none for a walk too short to be worth them.
int ReadersFor(qsizetype files) {
  if (files < 2 * AheadReader::kChunk) {
    return 0;
  }
  const unsigned cores = std::thread::hardware_concurrency();
  return static_cast<int>(std::clamp(cores, 1u, 4u));
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

  // Short walks have no reader threads: the caller reads each chunk itself.
  AheadReader ahead(folder, chosen, withCipher, ReadersFor(chosen.size()));
  RecordFile record;
  for (qsizetype k = 0; k < ahead.Chunks(); ++k) {
    std::vector<ReadFile> files = ahead.Take(k);
    for (size_t j = 0; j < files.size(); ++j) {
      if (cancel != nullptr && cancel->load(std::memory_order_relaxed)) {
        result.cancelled = true;
        return result;
      }
      if (!files[j].fields) {
        ++result.unreadable;
        continue;
      }
      const auto& [name, date] = chosen.at(k * AheadReader::kChunk + static_cast<qsizetype>(j));
      record.name = name;
      record.date = date;
      record.fields = std::move(*files[j].fields);
      record.cipher = std::move(files[j].cipher);
      take(record);
      ++result.read;
    }
  }
  return result;
}

}  // namespace minutor
