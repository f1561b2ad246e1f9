#include "cli/CompareCommands.h"

#include "cli/ChartCommands.h"

#include "cli/Commands.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "history/RecordFilter.h"
#include "history/ReportRun.h"
#include "history/TariffComparison.h"

#include <QCommandLineParser>
#include <QDate>

namespace minutor::cli {

int CompareCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err) {
  QCommandLineParser parser;
  parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
  parser.addOptions(
      {{QStringLiteral("period"), QStringLiteral("the period item"), QStringLiteral("ITEM"),
        QStringLiteral("Gesamt")},
       {QStringLiteral("user"), QStringLiteral("the user item"), QStringLiteral("U"), kAlle},
       {QStringLiteral("today"), QStringLiteral("the day taken as today"), QStringLiteral("YYYY-MM-DD")}});
  if (!parser.parse(QStringList{QStringLiteral("minutorctl")} + args)) {
    return Fail(err, parser.errorText(), kUsage);
  }
  if (!parser.positionalArguments().isEmpty()) {
    return Fail(err, QStringLiteral("unexpected argument %1").arg(parser.positionalArguments().first()),
                kUsage);
  }
  QString period;
  QDate today;
  if (const int code = ReadReportPeriod(parser, err, period, today); code != kOk) {
    return code;
  }
  const TariffComparison comparison =
      CompareTariffs(dir, period, parser.value(QStringLiteral("user")), today);
  for (const TariffCost& tariff : comparison.tariffs) {
    Print(out, tariff.file + QLatin1Char('\t') + FixedText(tariff.cost, 2));
  }
  Print(out, QStringLiteral("Tatsächlich\t") + FixedText(comparison.actual, 2));
  return kOk;
}

}  // namespace minutor::cli
