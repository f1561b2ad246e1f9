#pragma once

#include <QStringList>

#include <QDate>

#include <cstdio>

namespace minutor {
class DataDir;
}

class QCommandLineParser;

namespace minutor::cli {

// "chart ..." and "report ...": the monthly chart's figures or picture and
// the analysis' texts, as the panels show them. `args` starts with the
// command's name; the return value is the exit code.
int RunChartCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err);

// The analysis' --period and --today of a parsed command line; kUsage, told
// on `err`, when either doesn't hold.
int ReadReportPeriod(const QCommandLineParser& parser, std::FILE* err, QString& period, QDate& today);

}  // namespace minutor::cli
