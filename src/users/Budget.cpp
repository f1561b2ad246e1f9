#include "users/Budget.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "metering/ConnectionRecord.h"
#include "users/RecordScan.h"

#include <algorithm>
#include <cmath>

namespace minutor {

namespace {

const QString kOptionsFile = QStringLiteral("Benutzer/Benutzer.dat");
const QString kNotSet = QStringLiteral("nicht festgelegt");
constexpr quint32 kCostAndUser = 1u << 3 | 1u << 10;

// The share of the amount left, as the bars draw it: whole, never below 0.
int Share(double rest, double amount) {
  const double share = std::floor(rest * 100.0 / amount);
  return share > 0 ? static_cast<int>(std::min(share, 1.0e6)) : 0;
}

}  // namespace

const QString kBudgetFilesDamaged = QStringLiteral(
    "Die Budgetdateien sind beschädigt oder nicht mehr vorhanden, bitte nehmen Sie die Budgeteinstellungen "
    "erneut vor.");

std::optional<BudgetOptions> ReadBudgetOptions(const DataDir& dir) {
  const auto lines = dir.ReadLines(kOptionsFile);
  if (!lines) {
    return std::nullopt;
  }
  BudgetOptions options;
  options.shared = IsOne(lines->value(0));
  options.sound = IsOne(lines->value(1));
  options.visual = IsOne(lines->value(2));
  options.soundName = FromAnsi(lines->value(3));
  return options;
}

bool WriteBudgetOptions(const DataDir& dir, const BudgetOptions& options) {
  auto flag = [](bool on) { return PrintedNumber(on ? 1 : 0); };
  return dir.WriteLines(kOptionsFile, {flag(options.shared), flag(options.sound), flag(options.visual),
                                       ToAnsi(options.soundName)});
}

QString BudgetFileOf(const DataDir& dir, const QString& user) {
  const auto options = ReadBudgetOptions(dir);
  if (options && options->shared) {
    return kSharedBudgetFile;
  }
  return QStringLiteral("Benutzer/") + user + QStringLiteral(".bdg");
}

std::optional<BudgetRests> GetBudget(const DataDir& dir, const QString& user, const QDate& today) {
  const auto options = ReadBudgetOptions(dir);
  const bool shared = options && options->shared;
  const auto file = ReadBudgetFile(dir, BudgetFileOf(dir, user));
  if (!file) {
    return std::nullopt;
  }
  BudgetRests result;
  result.periodFrom = ParseShortDate(file->periodFrom);
  result.periodTo = ParseShortDate(file->periodTo);
  if (!result.periodFrom.isValid() || !result.periodTo.isValid()) {
    return std::nullopt;
  }
  result.amounts = {file->perDay, file->perMonth, file->perPeriod};
  result.rests = result.amounts;

  const QByteArray day = today.toString(QStringLiteral("dd")).toLatin1();
  const QByteArray monthYear = today.toString(QStringLiteral("MMyyyy")).toLatin1();
  const bool periodHolds = result.PeriodHolds(today);
  // The last seven days, by the date their records' names begin with.
  std::array<QByteArray, 7> lastWeek;
  for (std::size_t i = 0; i < lastWeek.size(); ++i) {
    lastWeek[i] = today.addDays(-static_cast<qint64>(i)).toString(QStringLiteral("ddMMyyyy")).toLatin1();
  }
  auto isLastWeek = [&](QByteArrayView name) {
    return name.size() >= 8 && std::find(lastWeek.begin(), lastWeek.end(), name.first(8)) != lastWeek.end();
  };
  // Only records that count somewhere are opened: this month's, the last
  // week's, and all while today lies in the period.
  auto isThisMonth = [&](QByteArrayView name) { return name.size() >= 8 && name.sliced(2, 6) == monthYear; };
  auto counts = [&](QByteArrayView name) {
    const bool isRecord = name.size() >= 4 && qstrnicmp(name.data() + name.size() - 4, ".con", 4) == 0;
    return isRecord && (periodHolds || isThisMonth(name) || isLastWeek(name));
  };
  ScanRecords(dir, counts, [&](const QString& path, QByteArrayView name) {
    const bool thisMonth = isThisMonth(name);
    const bool isToday = thisMonth && name.first(2) == day;
    // The cost and the user, lines 4 and 11. A short record gives the last
    // line it has for either, as the reader always did: it is read whole.
    auto fields = ReadRecordFields(path, 11, kCostAndUser);
    if (fields && !fields->isEmpty() && fields->size() < 11) {
      fields = ReadRecordFields(path, 11);
    }
    if (!fields || fields->isEmpty() || (!shared && FromAnsi(fields->last()) != user)) {
      return;
    }
    const QByteArray costField = fields->at(std::min<qsizetype>(3, fields->size() - 1));
    const double cost = costField.isEmpty() ? 0.0 : static_cast<double>(ParseBetrag(costField.mid(1)));
    if (isToday) {
      result.rests[0] -= cost;
    }
    if (thisMonth) {
      result.rests[1] -= cost;
    }
    if (periodHolds) {
      result.rests[2] -= cost;
    }
    if (isLastWeek(name)) {
      result.lastWeekSpent += cost;
    }
  });
  return result;
}

QString RestText(double rest, const QString& waehrung) {
  return FixedText(rest, 2) + QLatin1Char(' ') + waehrung;
}

BudgetPanelLine BudgetPanelShows(double amount, double rest, const QString& waehrung) {
  if (amount == 0) {
    return {QStringLiteral("inaktiv"), 0};
  }
  return {RestText(rest, waehrung), Share(rest, amount)};
}

OverviewBudgetLine OverviewBudgetShows(double amount, double rest, const QString& waehrung) {
  if (amount == 0) {
    return {QStringLiteral("0.00 ") + waehrung, kNotSet, 0};
  }
  return {RestText(rest, waehrung), FixedText(rest * 100.0 / amount, 1) + QLatin1Char('%'),
          Share(rest, amount)};
}

bool IsBudgetExceeded(const std::array<OverviewBudgetLine, 3>& lines) {
  return std::any_of(lines.begin(), lines.end(), [](const OverviewBudgetLine& line) {
    return line.rest.startsWith(QLatin1Char('-')) ||
           (ParseBetrag(line.rest) == 0.0f && line.percent != kNotSet);
  });
}

bool IsBudgetExceeded(const DataDir& dir, const QString& user, const QDate& today) {
  const auto budget = GetBudget(dir, user, today);
  if (!budget) {
    return false;
  }
  std::array<OverviewBudgetLine, 3> lines;
  for (std::size_t i = 0; i < 3; ++i) {
    lines[i] = OverviewBudgetShows(budget->amounts[i], budget->rests[i], QString());
  }
  return IsBudgetExceeded(lines);
}

}  // namespace minutor
