#include "cli/ExportCommands.h"

#include "cli/Commands.h"
#include "cli/HistoryCommands.h"
#include "frame/datadir/DataDir.h"
#include "history/ListExport.h"
#include "history/ListTitle.h"
#include "history/ui/ExportCharts.h"

#include <QCommandLineParser>

namespace minutor::cli {

int ExportCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err) {
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral(
      "The connection list as a file: html and text as the \"Exportieren\" dialog writes them, "
      "csv (RFC 4180, UTF-8) and json for spreadsheets and scripts."));
  AddListOptions(parser);
  parser.addOptions({
      {QStringLiteral("format"), QStringLiteral("html, text, csv or json"), QStringLiteral("FORMAT")},
      {QStringLiteral("charts"),
       QStringLiteral(
           "with html: the month's charts as BMP pictures beside the file (periods of a month only)")},
      {QStringLiteral("output"), QStringLiteral("the file to write"), QStringLiteral("FILE")},
  });
  if (!ParseCommand(parser, QStringLiteral("export"), args, err)) {
    return kUsage;
  }
  if (parser.isSet(QStringLiteral("help"))) {
    std::fputs(parser.helpText().toUtf8().constData(), out);
    return kOk;
  }
  const QString format = parser.value(QStringLiteral("format"));
  const QString output = parser.value(QStringLiteral("output")).trimmed();
  const QStringList formats = {QStringLiteral("html"), QStringLiteral("text"), QStringLiteral("csv"),
                               QStringLiteral("json")};
  if (!formats.contains(format) || output.isEmpty()) {
    return Fail(err, QStringLiteral("export needs --format html|text|csv|json and --output FILE"), kUsage);
  }
  const bool charts = parser.isSet(QStringLiteral("charts"));
  if (charts && format != QLatin1String("html")) {
    return Fail(err, QStringLiteral("--charts goes with --format html"), kUsage);
  }
  const auto query = ListQueryOf(dir, parser, err);
  if (!query) {
    return kError;
  }
  const QDate chartMonth = ListChartMonth(query->period.index, query->period.today);
  if (charts && !chartMonth.isValid()) {
    return Fail(err,
                QStringLiteral("--charts needs the period \"Dieser Monat\", \"Letzter Monat\" or "
                               "\"Vorletzter Monat\""),
                kUsage);
  }
  const ListResult result = LoadListRows(dir, *query, err);
  if (result.rows.isEmpty()) {
    return Fail(err, QStringLiteral("Die Liste enthält keine Einträge."));
  }
  QStringList chartFiles;
  if (charts) {
    const auto written = WriteExportCharts(dir, output, chartMonth, query->filter, query->waehrung);
    if (!written) {
      return Fail(err, QStringLiteral("cannot write the chart pictures beside %1").arg(output));
    }
    chartFiles = *written;
  }
  bool ok = false;
  if (format == QLatin1String("html")) {
    const QString title =
        BuildListTitle(dir, ListPeriodItems().value(query->period.index), query->period.today);
    ok = WriteExportFile(output, ExportHtmlLines(result.rows, title, query->filter, chartFiles));
  } else if (format == QLatin1String("text")) {
    ok = WriteExportFile(output, ExportTextLines(result.rows));
  } else if (format == QLatin1String("csv")) {
    ok = WriteExportFile(output, ExportCsv(result.rows));
  } else {
    ok = WriteExportFile(output, ExportJson(result.rows));
  }
  return ok ? kOk : Fail(err, QStringLiteral("cannot write %1").arg(output));
}

}  // namespace minutor::cli
