#include "cli/UpdateCommands.h"

#include "cli/Commands.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/datadir/DataDir.h"
#include "online/TimePage.h"
#include "online/UpdateCheck.h"
#include "online/UpdateDownload.h"
#include "online/UpdateFiles.h"
#include "online/UpdateIndex.h"
#include "online/platform/NetworkFetcher.h"

#include <QCommandLineParser>
#include <QDateTime>
#include <QEventLoop>
#include <QFile>

namespace minutor::cli {

namespace {

// Boxes become lines on standard error.
class ErrorPrompter final : public Prompter {
 public:
  explicit ErrorPrompter(std::FILE* err) : err_(err) {}
  void Message(const QString& text, Icon, const QString&) override {
    Print(err_, QStringLiteral("minutorctl: ") + text);
    told = true;
  }
  Answer Ask(const QString& text, const QString& title, bool) override {
    Message(text, Icon::Question, title);
    return Answer::No;
  }
  bool told = false;

 private:
  std::FILE* err_;
};

// Parses `args` (the command's own, after the group) with the options given;
// nullopt after printing why when they don't fit.
std::optional<QStringList> Parse(QCommandLineParser& parser, const QString& command, const QStringList& args,
                                 int positional, std::FILE* err) {
  parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
  if (!parser.parse(QStringList{command} + args)) {
    Print(err, QStringLiteral("minutorctl: ") + parser.errorText());
    return std::nullopt;
  }
  const QStringList rest = parser.positionalArguments();
  if (rest.size() != positional) {
    Print(err, QStringLiteral("minutorctl: %1 takes %2 argument(s)").arg(command).arg(positional));
    return std::nullopt;
  }
  return rest;
}

int UpdateIndexCommand(const QStringList& args, std::FILE* out, std::FILE* err) {
  QCommandLineParser parser;
  const QCommandLineOption revision(QStringLiteral("revision"), QStringLiteral("program revision"),
                                    QStringLiteral("N"), QStringLiteral("0"));
  parser.addOption(revision);
  const auto rest = Parse(parser, QStringLiteral("index"), args, 1, err);
  if (!rest) {
    return kUsage;
  }
  QStringList skipped;
  QString error;
  const auto index = MakeUpdateIndex(rest->first(), parser.value(revision).toDouble(), &skipped, &error);
  for (const QString& file : skipped) {
    Print(err, QStringLiteral("minutorctl: left out, not a plain .atl file name: ") + file);
  }
  if (!index) {
    Print(err, QStringLiteral("minutorctl: ") + error);
    return kError;
  }
  const QString path = rest->first() + QStringLiteral("/update.txt");
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(*index) != index->size()) {
    Print(err, QStringLiteral("minutorctl: cannot write ") + path);
    return kError;
  }
  Print(out, path);
  return kOk;
}

int UpdateCheckCommand(const DataDir& dir, const QString& command, const QStringList& args, std::FILE* out,
                       std::FILE* err) {
  QCommandLineParser parser;
  const QCommandLineOption server(QStringLiteral("server"), QStringLiteral("the one server to ask"),
                                  QStringLiteral("URL"));
  parser.addOption(server);
  if (!Parse(parser, command, args, 0, err)) {
    return kUsage;
  }
  ErrorPrompter prompter(err);
  NetworkFetcher fetcher;
  UpdateCheck check(dir, prompter, fetcher);
  QEventLoop loop;
  QObject::connect(&check, &UpdateCheck::finished, &loop, &QEventLoop::quit, Qt::QueuedConnection);
  if (parser.isSet(server)) {
    check.StartWith({parser.value(server)});
  } else {
    check.Start();
  }
  loop.exec();
  if (prompter.told) {
    return kError;
  }
  if (command == QLatin1String("check")) {
    for (const UpdateEntry& entry : check.Entries()) {
      Print(out, entry.address + QLatin1Char('\t') + entry.fileName);
    }
    Print(out, QStringLiteral("letzteSerie\t%1").arg(check.LetzteSerie()));
    return kOk;
  }
  if (check.Entries().isEmpty()) {
    return kOk;
  }
  const SystemClock clock;
  UpdateDownload download(dir, clock, fetcher, check.Entries(), check.LetzteSerie());
  QObject::connect(&download, &UpdateDownload::finished, &loop, &QEventLoop::quit, Qt::QueuedConnection);
  download.Start();
  loop.exec();
  for (const QString& written : download.Written()) {
    Print(out, dir.Resolve(written));
  }
  return kOk;
}

int TimesyncParseCommand(const QStringList& args, std::FILE* out, std::FILE* err) {
  QCommandLineParser parser;
  const QCommandLineOption bias(QStringLiteral("bias"), QStringLiteral("seconds east of UTC"),
                                QStringLiteral("SECONDS"));
  parser.addOption(bias);
  const auto rest = Parse(parser, QStringLiteral("parse"), args, 1, err);
  if (!rest) {
    return kUsage;
  }
  QFile file(rest->first());
  if (!file.open(QIODevice::ReadOnly)) {
    Print(err, QStringLiteral("minutorctl: cannot read ") + rest->first());
    return kError;
  }
  const qint64 seconds =
      parser.isSet(bias) ? parser.value(bias).toLongLong() : QDateTime::currentDateTime().offsetFromUtc();
  const auto found = ParseZeitseite(file.read(2'000'000), seconds);
  Print(out, found ? found->date.toString(QStringLiteral("yyyy-MM-dd ")) +
                         found->time.toString(QStringLiteral("HH:mm:ss"))
                   : QStringLiteral("0"));
  return kOk;
}

}  // namespace

bool IsOnlineGroup(const QString& group) {
  return group == QLatin1String("update") || group == QLatin1String("timesync");
}

int RunOnlineCommand(const DataDir& dir, const QString& group, const QStringList& args, std::FILE* out,
                     std::FILE* err) {
  const QString command = args.value(0);
  const QStringList rest = args.mid(1);
  if (group == QLatin1String("update") && command == QLatin1String("index")) {
    return UpdateIndexCommand(rest, out, err);
  }
  if (group == QLatin1String("update") &&
      (command == QLatin1String("check") || command == QLatin1String("fetch"))) {
    return UpdateCheckCommand(dir, command, rest, out, err);
  }
  if (group == QLatin1String("timesync") && command == QLatin1String("parse")) {
    return TimesyncParseCommand(rest, out, err);
  }
  Print(err, QStringLiteral("minutorctl: unknown command: %1 %2").arg(group, args.join(QLatin1Char(' '))));
  return kUsage;
}

}  // namespace minutor::cli
