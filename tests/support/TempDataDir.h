#pragma once

#include "frame/datadir/DataDir.h"

#include <QByteArray>
#include <QList>
#include <QTemporaryDir>

namespace minutor::test {

// A fresh, empty data directory that disappears with the test.
class TempDataDir {
 public:
  TempDataDir();
  const DataDir& dir() const { return dir_; }
  QString path(const QString& relative = {}) const;

  // Writes raw bytes to a file below the directory, making its folders.
  void write(const QString& relative, const QByteArray& bytes) const;
  QByteArray read(const QString& relative) const;

  // The source tree's shipped data (tariffs and the like).
  static QString shippedDir();

 private:
  QTemporaryDir temp_;
  DataDir dir_;
};

}  // namespace minutor::test
