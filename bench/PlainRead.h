#pragma once

// The baseline of the benchmarks: the least any reader of the history must
// do, listing a folder and reading the chosen files whole, with nothing
// made of their bytes.

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QList>
#include <QString>

#include <functional>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace minutor::bench {

// Reads the files whole; their sizes go into the checksum, so that nothing
// is optimised away. The time taken, in nanoseconds.
inline qint64 PlainReadFiles(const QList<QByteArray>& paths, qint64* checksum) {
  QElapsedTimer timer;
  timer.start();
  char buffer[4096];
  for (const QByteArray& path : paths) {
    const int fd = ::open(path.constData(), O_RDONLY);
    if (fd < 0) {
      continue;
    }
    ssize_t got = 0;
    while ((got = ::read(fd, buffer, sizeof buffer)) > 0) {
      *checksum += got;
    }
    ::close(fd);
  }
  return timer.nsecsElapsed();
}

// Lists the folder and reads the files `wanted` lets through (names that
// start with a dot never).
inline qint64 PlainRead(const QString& folder, const std::function<bool(const QByteArray& name)>& wanted,
                        qint64* checksum) {
  QElapsedTimer timer;
  timer.start();
  QList<QByteArray> chosen;
  if (DIR* d = ::opendir(QFile::encodeName(folder).constData())) {
    while (const dirent* entry = ::readdir(d)) {
      const QByteArray name(entry->d_name);
      if (!name.startsWith('.') && wanted(name)) {
        chosen.append(QFile::encodeName(folder) + '/' + name);
      }
    }
    ::closedir(d);
  }
  const qint64 listed = timer.nsecsElapsed();
  return listed + PlainReadFiles(chosen, checksum);
}

}  // namespace minutor::bench
