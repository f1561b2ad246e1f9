#include "frame/SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace minutor {

SingleInstance::SingleInstance(const QString& dataDir)
    : lock_(std::make_unique<QLockFile>(LockPath(dataDir))) {
  lock_->setStaleLockTime(0);
}

bool SingleInstance::TryAcquire() { return lock_->tryLock(0); }

QString SingleInstance::LockPath(const QString& dataDir) {
  // The lock lives in the runtime folder, not in the data directory, so that
  // the data holds nothing but the program's own files.
  QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (folder.isEmpty()) {
    folder = QDir::tempPath();
  }
  const QByteArray key = QFileInfo(dataDir).absoluteFilePath().toUtf8();
  const QString hash =
      QString::fromLatin1(QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex().left(16));
  return folder + QStringLiteral("/minutor-") + hash + QStringLiteral(".lock");
}

}  // namespace minutor
