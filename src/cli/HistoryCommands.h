#pragma once

#include <QString>
#include <QStringList>

#include <cstdio>

namespace minutor {
class DataDir;
}

namespace minutor::cli {

// "list [filters]": the list's rows and totals as the panel shows them.
int ListCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err);

// "record estimate ..." and "record add ...": the manual entry's cost
// estimate, and a record entered as the "Neue Verbindung" dialog enters it.
int RecordEntryCommand(const DataDir& dir, const QString& command, const QStringList& args, std::FILE* out,
                       std::FILE* err);

}  // namespace minutor::cli
