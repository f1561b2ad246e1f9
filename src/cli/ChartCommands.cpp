#include "cli/ChartCommands.h"

#include "cli/Commands.h"
#include "frame/AppState.h"
#include "frame/Options.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "history/ChartValues.h"
#include "history/ReportRun.h"
#include "history/ui/ChartPainter.h"

#include <QCommandLineParser>
#include <QDate>
#include <QFileInfo>

namespace minutor::cli {

namespace {

QString Currency(const DataDir& dir) {
  AppState state;
  LoadOptions(dir, state);
  return state.Waehrung;
}

// Parses the options of a command; a message for the user on failure.
QString Parse(QCommandLineParser& parser, const QStringList& args) {
  parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
  if (!parser.parse(QStringList{QStringLiteral("minutorctl")} + args)) {
    return parser.errorText();
  }
  if (parser.positionalArguments().size() != 1) {
    return QStringLiteral("unexpected argument %1").arg(parser.positionalArguments().value(1));
  }
  return {};
}

int Report(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err) {
  QCommandLineParser parser;
  parser.addOptions(
      {{QStringLiteral("period"), QStringLiteral("the period item"), QStringLiteral("ITEM"),
        QStringLiteral("Gesamt")},
       {QStringLiteral("user"), QStringLiteral("the user item"), QStringLiteral("U"), kAlle},
       {QStringLiteral("today"), QStringLiteral("the day taken as today"), QStringLiteral("YYYY-MM-DD")}});
  const QString problem = Parse(parser, args);
  if (!problem.isEmpty()) {
    return Fail(err, problem, kUsage);
  }
  QString period;
  QDate today;
  if (const int code = ReadReportPeriod(parser, err, period, today); code != kOk) {
    return code;
  }
  const ReportTexts texts =
      BuildReport(dir, period, parser.value(QStringLiteral("user")), today, Currency(dir));
  for (std::size_t i = 0; i < texts.sentences.size(); ++i) {
    Print(out, QString::number(i) + QLatin1Char('\t') + texts.sentences[i]);
  }
  Print(out, QStringLiteral("Kosten\t") + texts.kosten);
  Print(out, QStringLiteral("Dauer\t") + texts.dauer);
  Print(out, QStringLiteral("Transfer\t") + texts.transfer);
  return kOk;
}

int Chart(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err) {
  QCommandLineParser parser;
  parser.addOptions({
      {QStringLiteral("month"), QStringLiteral("the month, 1 to 12"), QStringLiteral("M")},
      {QStringLiteral("year"), QStringLiteral("the year"), QStringLiteral("Y")},
      {QStringLiteral("measure"), QStringLiteral("dauer, kosten, transfer, anbieter or benutzer"),
       QStringLiteral("MEASURE")},
      {QStringLiteral("style"), QStringLiteral("linien or balken for the time charts (balken)"),
       QStringLiteral("STYLE"), QStringLiteral("balken")},
      {QStringLiteral("user"), QStringLiteral("the user item"), QStringLiteral("U"), kAlle},
      {QStringLiteral("provider"), QStringLiteral("the provider item"), QStringLiteral("P"), kAlle},
      {QStringLiteral("tariff"), QStringLiteral("the tariff item"), QStringLiteral("T"), kAlle},
      {QStringLiteral("values"), QStringLiteral("print the figures")},
      {QStringLiteral("output"), QStringLiteral("write the picture (.png or .bmp)"), QStringLiteral("FILE")},
  });
  const QString problem = Parse(parser, args);
  if (!problem.isEmpty()) {
    return Fail(err, problem, kUsage);
  }
  bool monthOk = false;
  bool yearOk = false;
  ChartQuery query;
  query.month = parser.value(QStringLiteral("month")).toInt(&monthOk);
  query.year = parser.value(QStringLiteral("year")).toInt(&yearOk);
  const QStringList measures = {QStringLiteral("dauer"), QStringLiteral("kosten"), QStringLiteral("transfer"),
                                QStringLiteral("anbieter"), QStringLiteral("benutzer")};
  const qsizetype measureIndex = measures.indexOf(parser.value(QStringLiteral("measure")).toLower());
  const QString style = parser.value(QStringLiteral("style")).toLower();
  if (!monthOk || query.month < 1 || query.month > 12 || !yearOk || measureIndex < 0) {
    return Fail(err,
                QStringLiteral("chart needs --month 1..12, --year and --measure %1").arg(measures.join('|')),
                kUsage);
  }
  if (style != QLatin1String("linien") && style != QLatin1String("balken")) {
    return Fail(err, QStringLiteral("--style takes linien or balken"), kUsage);
  }
  const QString output = parser.value(QStringLiteral("output"));
  const QString suffix = QFileInfo(output).suffix().toLower();
  if (!output.isEmpty() && suffix != QLatin1String("png") && suffix != QLatin1String("bmp")) {
    return Fail(err, QStringLiteral("--output takes a .png or .bmp file"), kUsage);
  }
  if (output.isEmpty() && !parser.isSet(QStringLiteral("values"))) {
    return Fail(err, QStringLiteral("chart needs --values or --output FILE"), kUsage);
  }
  query.filter.user = parser.value(QStringLiteral("user"));
  query.filter.provider = parser.value(QStringLiteral("provider"));
  query.filter.tariff = parser.value(QStringLiteral("tariff"));

  const auto measure = static_cast<ChartMeasure>(measureIndex + 1);
  const bool pie = measure == ChartMeasure::Anbieter || measure == ChartMeasure::Benutzer;
  const ChartData data = GatherChartData(dir, query, measure);
  if (parser.isSet(QStringLiteral("values"))) {
    if (pie) {
      for (const PieEntry& entry : data.pie) {
        Print(out, entry.name + QLatin1Char('\t') + GeneralText(entry.count));
      }
    } else {
      for (std::size_t day = 0; day < data.days.size(); ++day) {
        Print(out, QString::number(day + 1) + QLatin1Char('\t') + GeneralText(data.days[day]));
      }
    }
  }
  if (!output.isEmpty()) {
    const ChartStyle chartStyle =
        pie ? ChartStyle::Kreis
            : (style == QLatin1String("linien") ? ChartStyle::Linien : ChartStyle::Balken);
    if (!RenderChart(DrawDiagramm(data, measure, chartStyle, Currency(dir))).save(output)) {
      return Fail(err, QStringLiteral("cannot write %1").arg(output));
    }
  }
  return kOk;
}

}  // namespace

int ReadReportPeriod(const QCommandLineParser& parser, std::FILE* err, QString& period, QDate& today) {
  period = parser.value(QStringLiteral("period"));
  if (!ReportPeriodItems().contains(period)) {
    return Fail(
        err, QStringLiteral("--period takes one of: %1").arg(ReportPeriodItems().join(QStringLiteral(", "))),
        kUsage);
  }
  today = QDate::currentDate();
  if (parser.isSet(QStringLiteral("today"))) {
    today = QDate::fromString(parser.value(QStringLiteral("today")), Qt::ISODate);
    if (!today.isValid()) {
      return Fail(err, QStringLiteral("--today takes a date YYYY-MM-DD"), kUsage);
    }
  }
  return kOk;
}

int RunChartCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err) {
  if (args.value(0) == QLatin1String("report")) {
    return Report(dir, args, out, err);
  }
  return Chart(dir, args, out, err);
}

}  // namespace minutor::cli
