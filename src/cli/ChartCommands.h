#pragma once

#include <QStringList>

#include <cstdio>

namespace minutor {
class DataDir;
}

namespace minutor::cli {

// "chart ..." and "report ...": the monthly chart's figures or picture and
// the analysis' texts, as the panels show them. `args` starts with the
// command's name; the return value is the exit code.
int RunChartCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err);

}  // namespace minutor::cli
