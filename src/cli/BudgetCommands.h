#pragma once

#include <QStringList>

#include <cstdio>

namespace minutor {

class DataDir;

namespace cli {

// "budget ..." and "timeleft ...", the whole command line from the group on.
int RunBudgetCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err);

}  // namespace cli
}  // namespace minutor
