#include "support/TempDataDir.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace minutor::test {

TempDataDir::TempDataDir() : dir_(temp_.path()) {}

QString TempDataDir::path(const QString& relative) const {
  return relative.isEmpty() ? temp_.path() : temp_.path() + QLatin1Char('/') + relative;
}

void TempDataDir::write(const QString& relative, const QByteArray& bytes) const {
  const QString full = path(relative);
  QDir().mkpath(QFileInfo(full).absolutePath());
  QFile file(full);
  if (file.open(QIODevice::WriteOnly)) {
    file.write(bytes);
  }
}

QByteArray TempDataDir::read(const QString& relative) const {
  QFile file(path(relative));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString TempDataDir::shippedDir() {
  return qEnvironmentVariable("MINUTOR_SOURCE_DIR") + QStringLiteral("/packaging/data");
}

}  // namespace minutor::test
