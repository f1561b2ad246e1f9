#include "cli/BudgetCommands.h"

#include "cli/Commands.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Options.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/Names.h"
#include "users/Budget.h"
#include "users/BudgetProjection.h"
#include "users/TimeLeft.h"
#include "users/UserAccounts.h"
#include "users/UserFile.h"

#include <QCommandLineParser>
#include <QDate>

namespace minutor::cli {

namespace {

// The rests as the Budget panel shows them for the user, each set one with
// the day it lasts until at the last week's pace and what is left per day.
int ShowBudget(const DataDir& dir, const QString& user, const QDate& today, std::FILE* out, std::FILE* err) {
  AppState state;
  LoadOptions(dir, state);
  const auto budget = GetBudget(dir, user, today);
  if (!budget) {
    return Fail(err, kBudgetFilesDamaged);
  }
  const char* names[] = {"Tag", "Monat", "Definiert"};
  const auto projections = ProjectBudgets(*budget, today);
  for (std::size_t i = 0; i < 3; ++i) {
    const BudgetPanelLine line = BudgetPanelShows(budget->amounts[i], budget->rests[i], state.Waehrung);
    Print(out, QString::fromLatin1(names[i]) + QLatin1Char('\t') + line.text);
    if (const auto& p = projections[i]) {
      Print(out, QStringLiteral("Reicht bis\t") +
                     (p->usedUp ? QStringLiteral("aufgebraucht")
                                : p->lastsUntil.toString(QStringLiteral("dd.MM.yyyy"))));
      Print(out, QStringLiteral("Pro Tag\t") + RestText(p->perDay, state.Waehrung));
    }
  }
  return kOk;
}

int ShowTimeLeft(const DataDir& dir, const QString& user, const QDate& today, std::FILE* out,
                 std::FILE* err) {
  const auto file = ReadUserFile(dir, user);
  if (!file) {
    return Fail(err, QStringLiteral("no user %1 in %2").arg(user, dir.Resolve(QStringLiteral("Benutzer"))));
  }
  const TimeLeft left = ComputeTimeLeft(dir, user, static_cast<qint32>(file->dayLimitMinutes),
                                        static_cast<qint32>(file->monthLimitMinutes), today);
  Print(out, QStringLiteral("DaySecondsLeft\t%1").arg(left.daySeconds));
  Print(out, QStringLiteral("MonthSecondsLeft\t%1").arg(left.monthSeconds));
  Print(out, QStringLiteral("Refused\t%1").arg(left.Refused() ? 1 : 0));
  return kOk;
}

}  // namespace

int RunBudgetCommand(const DataDir& dir, const QStringList& args, std::FILE* out, std::FILE* err) {
  QCommandLineParser parser;
  const QCommandLineOption userOption(QStringLiteral("user"), QStringLiteral("the user"),
                                      QStringLiteral("NAME"));
  const QCommandLineOption todayOption(QStringLiteral("today"), QStringLiteral("the day to count for"),
                                       QStringLiteral("YYYY-MM-DD"));
  parser.addOptions({userOption, todayOption});
  if (!parser.parse(QStringList{QStringLiteral("minutorctl")} + args) ||
      parser.positionalArguments().size() != 1) {
    Print(err,
          QStringLiteral("minutorctl: ") +
              (parser.errorText().isEmpty() ? QStringLiteral("unexpected argument") : parser.errorText()));
    Print(err, QStringLiteral("usage: minutorctl %1 [--user NAME] [--today YYYY-MM-DD]").arg(args.first()));
    return kUsage;
  }
  QDate today = SystemClock().Now().date();
  if (parser.isSet(todayOption)) {
    today = QDate::fromString(parser.value(todayOption), QStringLiteral("yyyy-MM-dd"));
    if (!today.isValid()) {
      Print(err, QStringLiteral("minutorctl: --today takes YYYY-MM-DD"));
      return kUsage;
    }
  }
  const QString user = parser.isSet(userOption) ? parser.value(userOption) : LastActiveUser(dir);
  if (!user.isEmpty() && !IsValidName(user)) {
    return Fail(err, QStringLiteral("not a user name: %1").arg(user));
  }
  if (args.first() == QLatin1String("budget")) {
    return ShowBudget(dir, user, today, out, err);
  }
  return ShowTimeLeft(dir, user, today, out, err);
}

}  // namespace minutor::cli
