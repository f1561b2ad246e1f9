#include "cli/PrintCommands.h"

#include "cli/Commands.h"
#include "cli/HistoryCommands.h"
#include "history/ListTitle.h"
#include "history/ui/ListPrintPage.h"

#include <QCommandLineParser>
#include <QPageSize>
#include <QPdfWriter>

namespace minutor::cli {

int PrintCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("The pages \"Drucken\" prints for the list, as a PDF file on A4."));
  AddListOptions(parser);
  parser.addOptions({
      {QStringLiteral("output"), QStringLiteral("the PDF file to write"), QStringLiteral("FILE.pdf")},
      {QStringLiteral("form"),
       QStringLiteral("liste (the rows, default) or rechnung (the sums per provider)"),
       QStringLiteral("FORM"), QStringLiteral("liste")},
      {QStringLiteral("transfer"), QStringLiteral("with the transfer and dial-up columns")},
      {QStringLiteral("colours"), QStringLiteral("rows in the colours of their class")},
      {QStringLiteral("charts"), QStringLiteral("the two charts of this month"), QStringLiteral("YYYY-MM")},
      {QStringLiteral("pair"), QStringLiteral("dauer-transfer (default), kosten-transfer or kosten-dauer"),
       QStringLiteral("PAIR"), QStringLiteral("dauer-transfer")},
      {QStringLiteral("mono"), QStringLiteral("black and white")},
  });
  if (!ParseCommand(parser, QStringLiteral("print"), args, err)) {
    return kUsage;
  }
  if (parser.isSet(QStringLiteral("help"))) {
    std::fputs(parser.helpText().toUtf8().constData(), out);
    return kOk;
  }
  const QString output = parser.value(QStringLiteral("output"));
  const QString form = parser.value(QStringLiteral("form"));
  const QStringList pairs = {QStringLiteral("dauer-transfer"), QStringLiteral("kosten-transfer"),
                             QStringLiteral("kosten-dauer")};
  const qsizetype pair = pairs.indexOf(parser.value(QStringLiteral("pair")));
  if (output.isEmpty() || (form != QLatin1String("liste") && form != QLatin1String("rechnung")) || pair < 0) {
    return Fail(err,
                QStringLiteral("print needs --output FILE.pdf, --form liste|rechnung and --pair %1")
                    .arg(pairs.join(QLatin1Char('|'))),
                kUsage);
  }
  ListPrintOptions options;
  options.invoice = form == QLatin1String("rechnung");
  options.transfer = parser.isSet(QStringLiteral("transfer"));
  options.mono = parser.isSet(QStringLiteral("mono"));
  options.classColours = parser.isSet(QStringLiteral("colours")) && !options.mono;
  options.charts = parser.isSet(QStringLiteral("charts"));
  options.pair = static_cast<ListPrintOptions::Pair>(pair);
  if (options.charts) {
    options.chartMonth = QDate::fromString(parser.value(QStringLiteral("charts")) + QStringLiteral("-01"),
                                           QStringLiteral("yyyy-MM-dd"));
    if (!options.chartMonth.isValid()) {
      return Fail(err, QStringLiteral("--charts takes a month YYYY-MM"), kUsage);
    }
  }
  const auto query = ListQueryOf(dir, parser, err);
  if (!query) {
    return kError;
  }
  ListPrintContent content;
  content.rows = LoadListRows(dir, *query, err).rows;
  content.title = BuildListTitle(dir, ListPeriodItems().value(query->period.index), query->period.today);
  content.filter = query->filter;
  content.currency = query->waehrung;
  if (options.charts) {
    AddPrintCharts(dir, options, content);
  }
  QPdfWriter writer(output);
  writer.setPageSize(QPageSize(QPageSize::A4));
  writer.setPageMargins(QMarginsF());
  writer.setTitle(content.title);
  writer.setCreator(QStringLiteral("Minutor"));
  if (!PaintListPages(writer, content, options)) {
    return Fail(err, QStringLiteral("cannot write %1").arg(output));
  }
  return kOk;
}

}  // namespace minutor::cli
