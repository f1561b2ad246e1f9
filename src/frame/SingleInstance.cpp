#include "frame/SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace minutor {

namespace {

// The session's runtime folder, when it is one that only this account can
// write to; empty otherwise.
QString PrivateRuntimeFolder() {
  const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
  if (folder.isEmpty() || !QDir::isAbsolutePath(folder)) {
    return {};
  }
  struct stat info {};
  if (::stat(QFile::encodeName(folder).constData(), &info) != 0 || !S_ISDIR(info.st_mode) ||
      info.st_uid != ::geteuid() || (info.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    return {};
  }
  return folder;
}

}  // namespace

SingleInstance::SingleInstance(const QString& dataDir)
    : lock_(std::make_unique<QLockFile>(LockPath(dataDir))) {
  lock_->setStaleLockTime(0);
}

bool SingleInstance::TryAcquire() { return lock_->tryLock(0); }

QString SingleInstance::LockPath(const QString& dataDir) {
  // Where another account could make the lock first, it could keep the
  // program from starting: so never in a shared temporary folder. The
  // runtime folder keeps the data directory free of anything but the data.
  const QString folder = PrivateRuntimeFolder();
  if (folder.isEmpty()) {
    return dataDir + QStringLiteral("/.minutor.lock");
  }
  const QByteArray key = QFileInfo(dataDir).absoluteFilePath().toUtf8();
  const QString hash =
      QString::fromLatin1(QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex().left(16));
  return folder + QStringLiteral("/minutor-") + hash + QStringLiteral(".lock");
}

}  // namespace minutor
