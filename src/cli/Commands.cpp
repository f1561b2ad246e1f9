#include "cli/Commands.h"

#include "cli/BudgetCommands.h"
#include "cli/ChartCommands.h"
#include "cli/CompareCommands.h"
#include "cli/ExportCommands.h"
#include "cli/HistoryCommands.h"
#include "cli/PrintCommands.h"
#include "cli/SimulatedConnection.h"
#include "cli/UpdateCommands.h"
#include "desk/FreeAllowance.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Options.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/Names.h"
#include "metering/ConnectionChecks.h"
#include "metering/ConnectionRecord.h"
#include "metering/Meter.h"
#include "metering/MeterHooks.h"
#include "metering/TrafficSource.h"
#include "tariffs/RateLookup.h"
#include "tariffs/TariffNames.h"
#include "users/FieldCipher.h"
#include "users/UserAccounts.h"
#include "users/UserRights.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>

namespace minutor::cli {

namespace {

const char* const kUsageText =
    "usage: minutorctl [--datadir DIR] COMMAND\n"
    "\n"
    "commands:\n"
    "  field encrypt [TEXT...]     encipher each TEXT (or each line of standard input) as a stored field\n"
    "  field decrypt               decipher each line of standard input\n"
    "  record show FILE            the lines of a connection record in plain text\n"
    "  record estimate --tariff FILE --date DD.MM.YYYY --start HH:MM:SS --duration H:MM:SS\n"
    "                              the cost estimate of manual entry\n"
    "  record add --date D --start T --duration T --provider P --tariff \"M - NAME\" --user U [...]\n"
    "                              enters a connection by hand (--help lists all fields)\n"
    "  list [--period ITEM] [--user U] [--provider P] [--tariff T] [--net] [--today YYYY-MM-DD]\n"
    "                              the connection list and its totals\n"
    "  tariff list                 provider, label and file name of every tariff\n"
    "  tariff price FILE [--at \"YYYY-MM-DD HH:MM:SS\"] [--holiday]\n"
    "                              the price of a tariff at a moment, in hundredths\n"
    "  simulate FILE --start \"YYYY-MM-DD HH:MM:SS\" --seconds N [--holiday] [--bundling]\n"
    "           [--user NAME] [--connection NAME] [--traffic TRAFFIC] [--trace] [--save]\n"
    "                              a recording of N seconds started by hand with tariff FILE: the\n"
    "                              meter's labels and the record; --save writes the record (and a\n"
    "                              volume tariff's carry-over) as the recording would; TRAFFIC holds\n"
    "                              lines \"TICK RECEIVED SENT\", the byte counters from that tick on;\n"
    "                              the user's budgets and limits are checked, and the cut ends the run\n"
    "  budget [--user NAME] [--today YYYY-MM-DD]\n"
    "                              the rests of a user's budget as the Budget panel shows them\n"
    "  timeleft [--user NAME] [--today YYYY-MM-DD]\n"
    "                              the seconds of the day's and the month's allowance left\n"
    "  compare [--period ITEM] [--user U] [--today YYYY-MM-DD]\n"
    "                              the analysis' connections priced under every tariff: FILE<TAB>COST a\n"
    "                              line, cheapest first, then Tatsächlich<TAB>COST\n"
    "  export --format html|text|csv|json [--charts] [list filters] --output FILE\n"
    "                              the list as the \"Exportieren\" dialog writes it (html, text), or\n"
    "                              as CSV or JSON\n"
    "  print --output FILE.pdf [--form liste|rechnung] [--transfer] [--colours] [--mono]\n"
    "        [--charts YYYY-MM --pair dauer-transfer|kosten-transfer|kosten-dauer] [list filters]\n"
    "                              the pages \"Drucken\" prints, as a PDF file\n"
    "  update index DIR [--revision N]\n"
    "                              writes DIR/update.txt for an update server: each folder DIR/tel/0001,\n"
    "                              DIR/tel/0002, ... is a batch of that number holding its .atl tariffs\n"
    "  update check [--server URL] the tariffs the update servers offer: ADDRESS<TAB>FILE a line, then\n"
    "                              letzteSerie<TAB>N\n"
    "  update fetch [--server URL] the check, then every offered tariff fetched into Tarife and\n"
    "                              Config/Update.cfg written; prints each file written\n"
    "  timesync parse FILE [--bias SECONDS]\n"
    "                              the local moment a saved page of the time service gives, or 0\n"
    "  chart --month M --year Y --measure dauer|kosten|transfer|anbieter|benutzer [--style linien|balken]\n"
    "        [--user U] [--provider P] [--tariff T] [--values] [--output FILE.png|FILE.bmp]\n"
    "                              a month's chart: the day values or the pie's counts, or the picture\n"
    "  report [--period ITEM] [--user U] [--today YYYY-MM-DD]\n"
    "                              the analysis: its eleven sentences and three totals\n";

struct Io {
  std::FILE* in;
  std::FILE* out;
  std::FILE* err;

  void Write(const QByteArray& bytes) const { std::fwrite(bytes.constData(), 1, bytes.size(), out); }
  void Line(const QString& text) const { Write(text.toUtf8() + '\n'); }
  int Fail(const QString& message) const {
    std::fputs(("minutorctl: " + message + '\n').toUtf8().constData(), err);
    return kError;
  }
  int Usage(const QString& message = {}) const {
    if (!message.isEmpty()) {
      std::fputs(("minutorctl: " + message + "\n\n").toUtf8().constData(), err);
    }
    std::fputs(kUsageText, err);
    return kUsage;
  }

  // The lines of standard input without their line ends.
  QList<QByteArray> InputLines() const {
    QByteArray all;
    char buffer[65536];
    size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, in)) > 0) {
      all.append(buffer, static_cast<qsizetype>(got));
    }
    return SplitLines(all);
  }
};

int FieldEncrypt(const QStringList& texts, const Io& io) {
  QList<QByteArray> plain;
  if (texts.isEmpty()) {
    for (const QByteArray& line : io.InputLines()) {
      plain.append(ToAnsi(QString::fromUtf8(line)));
    }
  } else {
    for (const QString& text : texts) {
      plain.append(ToAnsi(text));
    }
  }
  for (const QByteArray& value : plain) {
    io.Write(EncryptField(value) + '\n');
  }
  return kOk;
}

int FieldDecrypt(const Io& io) {
  for (const QByteArray& line : io.InputLines()) {
    io.Write(FromAnsi(DecryptField(line)).toUtf8() + '\n');
  }
  return kOk;
}

int RecordShow(const DataDir& dir, const QString& file, const Io& io) {
  QString path = file;
  if (!QFileInfo(path).isFile()) {
    path = dir.Resolve(kRecordFolder + QLatin1Char('/') + file);
  }
  const auto fields = ReadRecordFields(path);
  if (!fields) {
    return io.Fail(QStringLiteral("cannot read the record %1").arg(file));
  }
  for (qsizetype i = 0; i < fields->size(); ++i) {
    io.Line(QString::number(i + 1) + QLatin1Char('\t') + FromAnsi(fields->at(i)));
  }
  return kOk;
}

int TariffList(const DataDir& dir, const Io& io) {
  // An empty list must mean no tariffs, not a mistyped folder.
  if (!QFileInfo(dir.Root()).isDir()) {
    return io.Fail(QStringLiteral("no data directory %1").arg(dir.Root()));
  }
  for (const QString& file : dir.ListFiles(QStringLiteral("Tarife"))) {
    const auto anbieter = GetAnbieter(file);
    const QString label = anbieter ? TarifLabel(*anbieter, file) : QString();
    if (!label.isEmpty()) {
      io.Line(*anbieter + QLatin1Char('\t') + label + QLatin1Char('\t') + file);
    }
  }
  return kOk;
}

int TariffPrice(const DataDir& dir, QStringList args, const Io& io) {
  bool holiday = false;
  QDateTime at = SystemClock().Now();
  QString file;
  while (!args.isEmpty()) {
    const QString arg = args.takeFirst();
    if (arg == QLatin1String("--holiday")) {
      holiday = true;
    } else if (arg == QLatin1String("--at")) {
      if (args.isEmpty()) {
        return io.Usage(QStringLiteral("--at needs a moment"));
      }
      at = QDateTime::fromString(args.takeFirst(), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
      if (!at.isValid()) {
        return io.Usage(QStringLiteral("--at takes \"YYYY-MM-DD HH:MM:SS\""));
      }
    } else if (file.isEmpty() && !arg.startsWith(QLatin1String("--"))) {
      file = arg;
    } else {
      return io.Usage(QStringLiteral("unexpected argument %1").arg(arg));
    }
  }
  if (file.isEmpty()) {
    return io.Usage(QStringLiteral("tariff price needs a tariff file"));
  }
  if (file.contains(QLatin1Char('/')) || file.contains(QLatin1Char('\\')) ||
      !dir.FileExists(QStringLiteral("Tarife/") + file)) {
    return io.Fail(QStringLiteral("no tariff %1 in %2").arg(file, dir.Resolve(QStringLiteral("Tarife"))));
  }
  const double price = GetTarifPreis(dir, file, at, holiday);
  io.Line(QString::number(price, 'g', 15));
  return kOk;
}

// The byte counters of a simulated connection: each line of the traffic file
// holds from its tick on, and before the first both are 0.
class ScriptedTraffic final : public TrafficSource {
 public:
  ScriptedTraffic(const Clock& clock, QDateTime start, std::map<qint64, TrafficCount> counts)
      : clock_(clock), start_(std::move(start)), counts_(std::move(counts)) {}

  std::optional<TrafficCount> Read(qint32) override {
    const qint64 tick = start_.secsTo(clock_.Now()) + 1;
    auto after = counts_.upper_bound(tick);
    if (after == counts_.begin()) {
      return TrafficCount{};
    }
    return std::prev(after)->second;
  }

 private:
  const Clock& clock_;
  QDateTime start_;
  std::map<qint64, TrafficCount> counts_;
};

// Boxes become lines on standard error; a failure among them fails the run.
class StderrPrompter final : public Prompter {
 public:
  explicit StderrPrompter(const Io& io) : io_(io) {}
  void Message(const QString& text, Icon icon, const QString&) override {
    std::fputs(("minutorctl: " + text + '\n').toUtf8().constData(), io_.err);
    failed = failed || icon == Icon::Critical;
  }
  Answer Ask(const QString& text, const QString& title, bool) override {
    Message(text, Icon::Question, title);
    return Answer::No;
  }
  bool failed = false;

 private:
  const Io& io_;
};

// "TICK RECEIVED SENT" a line, blank lines allowed; nullopt and the number of
// the bad line when a line is something else.
std::optional<std::map<qint64, TrafficCount>> ReadTrafficScript(const QByteArray& bytes, int* badLine) {
  std::map<qint64, TrafficCount> counts;
  const QList<QByteArray> lines = SplitLines(bytes);
  for (qsizetype i = 0; i < lines.size(); ++i) {
    const QList<QByteArray> fields = lines[i].simplified().split(' ');
    if (fields.size() == 1 && fields.first().isEmpty()) {
      continue;
    }
    bool tickOk = false;
    bool receivedOk = false;
    bool sentOk = false;
    const qint64 tick = fields.value(0).toLongLong(&tickOk);
    const qint64 received = fields.value(1).toLongLong(&receivedOk);
    const qint64 sent = fields.value(2).toLongLong(&sentOk);
    if (fields.size() != 3 || !tickOk || !receivedOk || !sentOk || tick < 1 || received < 0 || sent < 0) {
      *badLine = static_cast<int>(i + 1);
      return std::nullopt;
    }
    counts[tick] = TrafficCount{static_cast<double>(received), static_cast<double>(sent)};
  }
  return counts;
}

int Simulate(const DataDir& dir, QStringList args, const Io& io) {
  QString file;
  QDateTime start;
  qint64 seconds = -1;
  QString trafficFile;
  AppState state;
  QString connection = QStringLiteral("unbekannt");
  bool trace = false;
  bool save = false;
  LoadOptions(dir, state);
  state.ActiveUser = LastActiveUser(dir);
  while (!args.isEmpty()) {
    const QString arg = args.takeFirst();
    const bool hasValue = !args.isEmpty();
    if (arg == QLatin1String("--holiday")) {
      state.FeiertagAktiv = true;
    } else if (arg == QLatin1String("--bundling")) {
      state.KanalbuendelungAktiv = true;
    } else if (arg == QLatin1String("--trace")) {
      trace = true;
    } else if (arg == QLatin1String("--save")) {
      save = true;
    } else if (arg == QLatin1String("--start") && hasValue) {
      start = QDateTime::fromString(args.takeFirst(), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
      if (!start.isValid()) {
        return io.Usage(QStringLiteral("--start takes \"YYYY-MM-DD HH:MM:SS\""));
      }
    } else if (arg == QLatin1String("--seconds") && hasValue) {
      bool ok = false;
      seconds = args.takeFirst().toLongLong(&ok);
      if (!ok || seconds < 1 || seconds > std::numeric_limits<int>::max()) {
        return io.Usage(QStringLiteral("--seconds takes a number of seconds from 1 on"));
      }
    } else if (arg == QLatin1String("--user") && hasValue) {
      state.ActiveUser = args.takeFirst();
    } else if (arg == QLatin1String("--connection") && hasValue) {
      connection = args.takeFirst();
    } else if (arg == QLatin1String("--traffic") && hasValue) {
      trafficFile = args.takeFirst();
    } else if (file.isEmpty() && !arg.startsWith(QLatin1String("--"))) {
      file = arg;
    } else {
      return io.Usage(QStringLiteral("unexpected argument %1").arg(arg));
    }
  }
  if (file.isEmpty() || !start.isValid() || seconds < 0) {
    return io.Usage(QStringLiteral("simulate needs a tariff file, --start and --seconds"));
  }
  if (file.contains(QLatin1Char('/')) || file.contains(QLatin1Char('\\')) ||
      !dir.FileExists(QStringLiteral("Tarife/") + file)) {
    return io.Fail(QStringLiteral("no tariff %1 in %2").arg(file, dir.Resolve(QStringLiteral("Tarife"))));
  }
  std::map<qint64, TrafficCount> counts;
  if (!trafficFile.isEmpty()) {
    const auto bytes = ReadFileBytes(QFileInfo(trafficFile).absoluteFilePath());
    if (!bytes) {
      return io.Fail(QStringLiteral("cannot read the traffic file %1").arg(trafficFile));
    }
    int badLine = 0;
    auto script = ReadTrafficScript(*bytes, &badLine);
    if (!script) {
      return io.Fail(
          QStringLiteral("%1, line %2: expected \"TICK RECEIVED SENT\"").arg(trafficFile).arg(badLine));
    }
    counts = std::move(*script);
  }
  if (!state.ActiveUser.isEmpty() && !IsValidName(state.ActiveUser)) {
    return io.Fail(QStringLiteral("not a user name: %1").arg(state.ActiveUser));
  }
  SetUserPreventions(dir, state.ActiveUser, state);
  state.AktuellerTarif = file;
  state.DetectionSource = 0;
  const QString refusal = TarifCheckMessage(state.AktuellerTarif, state.ActiveUser);
  if (!refusal.isEmpty()) {
    return io.Fail(refusal);
  }

  FixedClock clock(start);
  StderrPrompter prompter(io);
  Services services{state, dir, clock, prompter};
  ScriptedTraffic traffic(clock, start, std::move(counts));
  SimulatedConnection line(services, connection);
  Meter meter(services, traffic, line);
  line.SetMeter(meter);
  meter.SetWritesFiles(save);

  const QStringList shown = {
      QStringLiteral("lblDauer"),    QStringLiteral("lblKosten"),   QStringLiteral("lblEinheiten"),
      QStringLiteral("lblRestFrei"), QStringLiteral("lblEinheit"),  QStringLiteral("lblEuroProMinute"),
      QStringLiteral("lblBytesIn"),  QStringLiteral("lblBytesOut"), QStringLiteral("lblBytesInOut")};
  auto showLabels = [&] {
    for (const QString& name : shown) {
      io.Line(name + QLatin1Char('\t') + meter.Labels().Text(name));
    }
  };
  auto traceTick = [&] {
    const QStringList events = line.TakeEvents();
    if (!trace) {
      return;
    }
    io.Line(QStringLiteral("tick %1").arg(meter.TickCount()));
    for (const QString& event : events) {
      io.Line(QStringLiteral("event\t") + event);
    }
    showLabels();
    for (int kind = 1; kind <= 3; ++kind) {
      io.Line(ConnectionAlarms::kLabelNames[static_cast<std::size_t>(kind - 1)] + QLatin1Char('\t') +
              line.Alarms().Label(kind).text);
    }
  };

  line.Load();
  meter.Counter_Start();
  meter.TimerStarterTick();
  traceTick();
  // A cut line ends the recording at the next tick, as monitoring would.
  while (meter.IsRecording() && meter.TickCount() < seconds) {
    clock.Advance(1);
    // The countdown's timer ticks a second after the box opened.
    line.Second();
    meter.Tick();
    traceTick();
  }
  meter.Counter_Stop();

  showLabels();
  const QList<QByteArray> record = RecordPlainLines(meter.Labels().Record());
  for (qsizetype i = 0; i < record.size(); ++i) {
    io.Line(QStringLiteral("record %1\t").arg(i + 1) + FromAnsi(record[i]));
  }
  return prompter.failed ? kError : kOk;
}

}  // namespace

void Print(std::FILE* stream, const QString& text) {
  std::fputs((text + QLatin1Char('\n')).toUtf8().constData(), stream);
}

int Fail(std::FILE* err, const QString& message, int code) {
  Print(err, QStringLiteral("minutorctl: ") + message);
  return code;
}

int Run(const QStringList& arguments, const QString& defaultDataDir, std::FILE* in, std::FILE* out,
        std::FILE* err) {
  const Io io{in, out, err};
  QStringList args = arguments;
  QString dataDir = defaultDataDir;
  if (!args.isEmpty() && args.first() == QLatin1String("--datadir")) {
    if (args.size() < 2) {
      return io.Usage(QStringLiteral("--datadir needs a folder"));
    }
    dataDir = args.at(1);
    args = args.mid(2);
  }
  const DataDir dir(dataDir);
  if (!args.isEmpty() &&
      (args.first() == QLatin1String("budget") || args.first() == QLatin1String("timeleft"))) {
    return RunBudgetCommand(dir, args, out, err);
  }
  if (args.value(0) == QLatin1String("chart") || args.value(0) == QLatin1String("report")) {
    return RunChartCommand(dir, args, out, err);
  }
  if (args.value(0) == QLatin1String("export")) {
    return ExportCommand(DataDir(dataDir), args.mid(1), out, err);
  }
  if (args.value(0) == QLatin1String("print")) {
    return PrintCommand(DataDir(dataDir), args.mid(1), out, err);
  }
  if (args.value(0) == QLatin1String("compare")) {
    return CompareCommand(dir, args.mid(1), out, err);
  }
  if (!args.isEmpty() && args.first() == QLatin1String("list")) {
    return ListCommand(dir, args.mid(1), out, err);
  }
  if (args.size() < 2) {
    return io.Usage(args.isEmpty() ? QString() : QStringLiteral("incomplete command"));
  }
  const QString group = args.takeFirst();
  if (IsOnlineGroup(group)) {
    return RunOnlineCommand(dir, group, args, out, err);
  }
  if (group == QLatin1String("simulate")) {
    return Simulate(dir, args, io);
  }
  const QString command = args.takeFirst();

  if (group == QLatin1String("field") && command == QLatin1String("encrypt")) {
    return FieldEncrypt(args, io);
  }
  if (group == QLatin1String("field") && command == QLatin1String("decrypt") && args.isEmpty()) {
    return FieldDecrypt(io);
  }
  if (group == QLatin1String("record") && command == QLatin1String("show") && args.size() == 1) {
    return RecordShow(dir, args.first(), io);
  }
  if (group == QLatin1String("record") &&
      (command == QLatin1String("estimate") || command == QLatin1String("add"))) {
    return RecordEntryCommand(dir, command, args, out, err);
  }
  if (group == QLatin1String("tariff") && command == QLatin1String("list") && args.isEmpty()) {
    return TariffList(dir, io);
  }
  if (group == QLatin1String("tariff") && command == QLatin1String("price")) {
    return TariffPrice(dir, args, io);
  }
  return io.Usage(QStringLiteral("unknown command: %1").arg((QStringList{group, command} + args).join(' ')));
}

}  // namespace minutor::cli
