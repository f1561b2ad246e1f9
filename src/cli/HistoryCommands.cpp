#include "cli/HistoryCommands.h"

#include "cli/Commands.h"
#include "desk/OverviewFiles.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Options.h"
#include "frame/Prompter.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "frame/datadir/TaxFile.h"
#include "history/ConnectionList.h"
#include "history/ListSort.h"
#include "history/ManualCost.h"
#include "history/ManualRecord.h"

#include <QCommandLineParser>

namespace minutor::cli {

namespace {

// Boxes the logic shows become lines on standard error.
class ErrorStreamPrompter final : public Prompter {
 public:
  explicit ErrorStreamPrompter(std::FILE* err) : err_(err) {}
  void Message(const QString& text, Icon, const QString&) override {
    Print(err_, QStringLiteral("minutorctl: ") + text);
  }
  Answer Ask(const QString& text, const QString&, bool) override {
    Print(err_, QStringLiteral("minutorctl: ") + text);
    return Answer::No;
  }

 private:
  std::FILE* err_;
};

QString Option(const QCommandLineParser& parser, const QString& name, const QString& fallback) {
  return parser.isSet(name) ? parser.value(name) : fallback;
}

}  // namespace

bool ParseCommand(QCommandLineParser& parser, const QString& command, const QStringList& args,
                  std::FILE* err) {
  parser.addHelpOption();
  if (!parser.parse(QStringList{QStringLiteral("minutorctl ") + command} + args) ||
      !parser.positionalArguments().isEmpty()) {
    const QString error =
        parser.errorText().isEmpty()
            ? QStringLiteral("unexpected argument %1").arg(parser.positionalArguments().value(0))
            : parser.errorText();
    Print(err, QStringLiteral("minutorctl: ") + error + QStringLiteral("\n\n") + parser.helpText());
    return false;
  }
  return true;
}

void AddListOptions(QCommandLineParser& parser) {
  parser.addOptions({
      {QStringLiteral("period"), QStringLiteral("a period of the list (default \"Gesamt\")"),
       QStringLiteral("ITEM")},
      {QStringLiteral("user"), QStringLiteral("a user, or \"[Alle]\""), QStringLiteral("USER")},
      {QStringLiteral("provider"), QStringLiteral("a provider, or \"[Alle]\""), QStringLiteral("PROVIDER")},
      {QStringLiteral("tariff"),
       QStringLiteral("a tariff as the list names it (\"M - Name\"), or \"[Alle]\""),
       QStringLiteral("TARIFF")},
      {QStringLiteral("net"), QStringLiteral("costs less the tax of Tax.dat")},
      {QStringLiteral("today"), QStringLiteral("the day the periods count from"),
       QStringLiteral("YYYY-MM-DD")},
  });
}

std::optional<ListQuery> ListQueryOf(const DataDir& dir, const QCommandLineParser& parser, std::FILE* err) {
  QDate today = SystemClock().Now().date();
  if (parser.isSet(QStringLiteral("today"))) {
    today = QDate::fromString(parser.value(QStringLiteral("today")), Qt::ISODate);
    if (!today.isValid()) {
      Fail(err, QStringLiteral("--today takes a date YYYY-MM-DD"));
      return std::nullopt;
    }
  }
  const QString period = Option(parser, QStringLiteral("period"), QStringLiteral("Gesamt"));
  if (!ListPeriodItems().contains(period)) {
    Fail(err, QStringLiteral("no period \"%1\"; the periods are: %2")
                  .arg(period, ListPeriodItems().join(QStringLiteral(", "))));
    return std::nullopt;
  }
  AppState state;
  LoadOptions(dir, state);
  ListQuery query;
  query.period = MakeListPeriod(dir, period, today);
  query.filter.user = Option(parser, QStringLiteral("user"), kAlle);
  query.filter.provider = Option(parser, QStringLiteral("provider"), kAlle);
  query.filter.tariff = Option(parser, QStringLiteral("tariff"), kAlle);
  query.colouring = ReadColouring(dir);
  query.waehrung = state.Waehrung;
  if (parser.isSet(QStringLiteral("net"))) {
    ErrorStreamPrompter prompter(err);
    query.tax = ReadTax(dir, prompter);
  }
  return query;
}

ListResult LoadListRows(const DataDir& dir, const ListQuery& query, std::FILE* err) {
  ListResult result = GetConnections(dir, query);
  SortRows(result.rows, SortByHeader(kColumnDatum));
  if (result.walk.unreadable > 0) {
    Print(err, QStringLiteral("minutorctl: %1 record files could not be read").arg(result.walk.unreadable));
  }
  return result;
}

int ListCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err) {
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral(
      "The connection list: the grid's columns 2 to 14 joined by TAB, newest first, then the totals."));
  AddListOptions(parser);
  if (!ParseCommand(parser, QStringLiteral("list"), args, err)) {
    return kUsage;
  }
  if (parser.isSet(QStringLiteral("help"))) {
    Print(out, parser.helpText());
    return kOk;
  }
  const auto query = ListQueryOf(dir, parser, err);
  if (!query) {
    return kError;
  }
  const ListResult result = LoadListRows(dir, *query, err);
  for (const ListRow& row : result.rows) {
    Print(out, row.Cells(kColumnFile).join(QLatin1Char('\t')));
  }
  Print(out, QStringLiteral("Gesamt\t") + result.totalDuration + QLatin1Char('\t') + result.totalCost);
  return kOk;
}

int RecordEntryCommand(const DataDir& dir, const QString& command, const QStringList& args, std::FILE* out,
                       std::FILE* err) {
  QCommandLineParser parser;
  const bool add = command == QLatin1String("add");
  parser.setApplicationDescription(
      add ? QStringLiteral(
                "Enters a connection metered elsewhere, as the \"Neue Verbindung\" dialog does. Without "
                "--cost, the cost (and the units) are estimated from the tariff.")
          : QStringLiteral("The cost estimate of manual entry for a connection."));
  parser.addOptions({
      {QStringLiteral("date"), QStringLiteral("the day of the connection"), QStringLiteral("DD.MM.YYYY")},
      {QStringLiteral("start"), QStringLiteral("its start"), QStringLiteral("HH:MM:SS")},
      {QStringLiteral("duration"), QStringLiteral("its duration"), QStringLiteral("H:MM:SS")},
  });
  if (add) {
    parser.addOptions({
        {QStringLiteral("provider"), QStringLiteral("the tariff's provider"), QStringLiteral("PROVIDER")},
        {QStringLiteral("tariff"),
         QStringLiteral("the tariff as the list names it: \"M - Name\" or \"A - Name\""),
         QStringLiteral("TARIFF")},
        {QStringLiteral("user"), QStringLiteral("the user"), QStringLiteral("USER")},
        {QStringLiteral("cost"), QStringLiteral("the cost in currency units"), QStringLiteral("AMOUNT")},
        {QStringLiteral("units"), QStringLiteral("the units charged"), QStringLiteral("N")},
        {QStringLiteral("received"), QStringLiteral("bytes received"), QStringLiteral("N")},
        {QStringLiteral("sent"), QStringLiteral("bytes sent"), QStringLiteral("N")},
        {QStringLiteral("total"), QStringLiteral("bytes in all"), QStringLiteral("N")},
        {QStringLiteral("dialup"), QStringLiteral("the dial-up entry"), QStringLiteral("NAME")},
        {QStringLiteral("comment"), QStringLiteral("a comment"), QStringLiteral("TEXT")},
    });
  } else {
    parser.addOption({QStringLiteral("tariff"), QStringLiteral("the tariff's file name in Tarife"),
                      QStringLiteral("FILE")});
  }
  if (!ParseCommand(parser, QStringLiteral("record ") + command, args, err)) {
    return kUsage;
  }
  if (parser.isSet(QStringLiteral("help"))) {
    Print(out, parser.helpText());
    return kOk;
  }
  // The fields read as the dialog's fields read once they lose the focus.
  const auto field = [&](int index, const char* name) {
    const QString option = QString::fromLatin1(name);
    return parser.isSet(option) ? NormaliseEntryField(index, parser.value(option)) : QString();
  };
  // Counts not given read 0, as the dialog's fields start.
  const auto count = [&](int index, const char* name) {
    const QString option = QString::fromLatin1(name);
    return NormaliseEntryField(index, parser.value(option));
  };
  ManualRecord record;
  record.date = field(0, "date");
  record.start = field(1, "start");
  record.duration = field(2, "duration");

  if (!add) {
    const QString tariff = parser.value(QStringLiteral("tariff"));
    if (tariff.isEmpty() || !dir.FileExists(QStringLiteral("Tarife/") + tariff)) {
      return Fail(
          err, QStringLiteral("no tariff \"%1\" in %2").arg(tariff, dir.Resolve(QStringLiteral("Tarife"))));
    }
    const auto estimate =
        ComputeManualCost(dir, tariff, record.date, record.start, DurationToSeconds(record.duration));
    if (!estimate) {
      return Fail(err, QStringLiteral("date and start must be a day DD.MM.YYYY and a time HH:MM:SS"));
    }
    Print(out, QStringLiteral("Kosten\t") + FixedText(static_cast<double>(estimate->cost) / 100, 2));
    Print(out, QStringLiteral("Einheiten\t") +
                   (estimate->units ? QString::number(*estimate->units) : QStringLiteral("-")));
    return kOk;
  }

  record.provider = parser.value(QStringLiteral("provider"));
  record.tariff = parser.value(QStringLiteral("tariff"));
  record.user = parser.value(QStringLiteral("user"));
  record.cost = field(3, "cost");
  record.units = count(4, "units");
  record.bytesIn = count(5, "received");
  record.bytesOut = count(6, "sent");
  record.bytesTotal = count(7, "total");
  record.dfue = parser.value(QStringLiteral("dialup"));
  record.comment = parser.value(QStringLiteral("comment"));
  const QString tariffFile = ManualTariffFile(record);
  if (!record.tariff.isEmpty() &&
      (tariffFile.isEmpty() || !dir.FileExists(QStringLiteral("Tarife/") + tariffFile))) {
    return Fail(err,
                QStringLiteral("no tariff \"%1\" of provider \"%2\"").arg(record.tariff, record.provider));
  }
  if (!record.user.isEmpty() && !GetUserNames(dir).contains(record.user)) {
    return Fail(err, QStringLiteral("no user \"%1\"").arg(record.user));
  }
  if (!parser.isSet(QStringLiteral("cost")) && !tariffFile.isEmpty()) {
    const auto estimate =
        ComputeManualCost(dir, tariffFile, record.date, record.start, DurationToSeconds(record.duration));
    if (estimate) {
      record.cost = FixedText(static_cast<double>(estimate->cost) / 100, 2);
      if (estimate->units && !parser.isSet(QStringLiteral("units"))) {
        record.units = QString::number(*estimate->units);
      }
    }
  }
  if (const auto problem = CheckManualRecord(record)) {
    return Fail(err, *problem);
  }
  const ManualSaveResult saved = SaveManualRecord(dir, record);
  if (!saved.error.isEmpty()) {
    return Fail(err, saved.error);
  }
  Print(out, saved.fileName);
  return kOk;
}

}  // namespace minutor::cli
