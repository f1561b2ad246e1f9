#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace minutor {

// Holds a lock for one data directory as long as the program runs, so that a
// second start on the same data can tell that the first is still there. A
// program that died leaves a stale lock, which the next start takes over.
class SingleInstance {
 public:
  explicit SingleInstance(const QString& dataDir);
  // False when another running process holds the lock.
  bool TryAcquire();

  static QString LockPath(const QString& dataDir);

 private:
  std::unique_ptr<QLockFile> lock_;
};

}  // namespace minutor
