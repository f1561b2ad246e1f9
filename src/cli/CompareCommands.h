#pragma once

#include <QStringList>

#include <cstdio>

namespace minutor {
class DataDir;
}

namespace minutor::cli {

// "compare [--period ITEM] [--user U] [--today YYYY-MM-DD]": what the
// analysis' period would have cost under each tariff, cheapest first, then
// what it did cost. `args` follow the command's name.
int CompareCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err);

}  // namespace minutor::cli
