#pragma once

#include <QByteArray>
#include <QDate>
#include <QList>
#include <QString>

#include <atomic>
#include <functional>

namespace minutor {

class DataDir;

// One record file as the history readers see it.
struct RecordFile {
  QString name;  // file name without the folder
  QDate date;    // the date its name holds (GetRecordFileDate)
  // The deciphered lines in file order, as many as the file has, at most 12.
  QList<QByteArray> fields;
  // The same lines as they stand in the file, still enciphered; only when
  // the walk is asked for them.
  QList<QByteArray> cipher;

  // Line n (counted from 1) deciphered; empty when the file is shorter.
  QByteArray Line(int n) const { return n >= 1 && n <= fields.size() ? fields.at(n - 1) : QByteArray(); }
};

struct WalkResult {
  int read = 0;        // files opened and handed over
  int unreadable = 0;  // files wanted but not readable
  bool cancelled = false;
};

// Lists the records' folder once and reads the records whose name `wanted`
// accepts, handing each to `take` in the order of their names; the name is
// judged before the file is opened, so a short period doesn't read the whole
// history. `wanted` is asked in the folder's own order. Unreadable files
// are counted and passed over. Stops between two files once `cancel` is set.
WalkResult WalkRecords(const DataDir& dir,
                       const std::function<bool(const QString& name, const QDate& date)>& wanted,
                       const std::function<void(const RecordFile& record)>& take,
                       const std::atomic<bool>* cancel = nullptr, bool withCipher = false);

}  // namespace minutor
