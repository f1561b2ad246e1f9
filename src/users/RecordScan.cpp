#include "users/RecordScan.h"

#include "frame/datadir/DataDir.h"
#include "metering/ConnectionRecord.h"

#include <QFile>

#include <dirent.h>
#include <sys/stat.h>

namespace minutor {

void ScanRecords(const DataDir& dir, const std::function<bool(QByteArrayView name)>& wanted,
                 const std::function<void(const QString& path, QByteArrayView name)>& visit) {
  const QByteArray base = QFile::encodeName(dir.Resolve(kRecordFolder)) + '/';
  DIR* listing = ::opendir(base.constData());
  if (listing == nullptr) {
    return;
  }
  while (const dirent* entry = ::readdir(listing)) {
    const QByteArrayView name(entry->d_name);
    if (!wanted(name)) {
      continue;
    }
    bool isFile = entry->d_type == DT_REG;
    if (entry->d_type == DT_UNKNOWN || entry->d_type == DT_LNK) {
      struct stat info {};
      isFile = ::stat((base + entry->d_name).constData(), &info) == 0 && S_ISREG(info.st_mode);
    }
    if (isFile) {
      visit(QFile::decodeName(base + entry->d_name), name);
    }
  }
  ::closedir(listing);
}

}  // namespace minutor
