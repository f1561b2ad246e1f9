#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <functional>

namespace minutor {

class DataDir;

// Walks the connection records' folder in folder order. `wanted` sees each
// file's name as the file system gives it and decides whether the record
// counts; only then is `visit` called with the file's path. A walk over a
// hundred thousand records thus costs little more than the reads it must do.
void ScanRecords(const DataDir& dir, const std::function<bool(QByteArrayView name)>& wanted,
                 const std::function<void(const QString& path, QByteArrayView name)>& visit);

}  // namespace minutor
