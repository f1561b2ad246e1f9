#pragma once

#include <QStringList>

#include <cstdio>

namespace minutor {
class DataDir;
}

namespace minutor::cli {

// "export --format html|text|csv|json [--charts] [filters] --output FILE":
// the list as the "Exportieren" dialog writes it, or for spreadsheets and
// scripts.
int ExportCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err);

}  // namespace minutor::cli
