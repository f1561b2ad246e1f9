#include "users/UserFile.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/Names.h"
#include "frame/datadir/NumberText.h"
#include "users/FieldCipher.h"

#include <cmath>

namespace minutor {

namespace {

QString UserPath(const QString& name) { return QStringLiteral("Benutzer/") + name + QStringLiteral(".usr"); }

QByteArray Flag(bool on) { return EncryptField(on ? 1 : 0); }

qint64 WholeMinutes(const QByteArray& text) {
  const double value = LeadingNumber(text);
  return std::fabs(value) < 2.0e9 ? static_cast<qint64>(value) : 0;
}

}  // namespace

QList<QByteArray> UserFileLines(const UserFile& user) {
  return {Flag(user.noUserSettings), Flag(user.noMonitoringSettings),     Flag(user.noBudgetSettings),
          Flag(user.noListEdit),     Flag(user.noDialOnBudget),           Flag(user.noListView),
          Flag(user.dayLimitOn),     EncryptField(user.dayLimitMinutes),  EncryptField(user.password),
          Flag(user.monthLimitOn),   EncryptField(user.monthLimitMinutes)};
}

bool WriteUserFile(const DataDir& dir, const QString& name, const UserFile& user) {
  return IsSafeFileName(name) && dir.WriteLines(UserPath(name), UserFileLines(user));
}

std::optional<UserFile> ReadUserFile(const DataDir& dir, const QString& name) {
  const auto lines = IsSafeFileName(name) ? dir.ReadLines(UserPath(name)) : std::nullopt;
  if (!lines) {
    return std::nullopt;
  }
  auto field = [&](qsizetype i) { return i < lines->size() ? DecryptField(lines->at(i)) : QByteArray(); };
  UserFile user;
  user.noUserSettings = IsOne(field(0));
  user.noMonitoringSettings = IsOne(field(1));
  user.noBudgetSettings = IsOne(field(2));
  user.noListEdit = IsOne(field(3));
  user.noDialOnBudget = IsOne(field(4));
  user.noListView = IsOne(field(5));
  user.dayLimitOn = IsOne(field(6));
  user.dayLimitMinutes = WholeMinutes(field(7));
  user.password = field(8);
  user.monthLimitOn = IsOne(field(9));
  user.monthLimitMinutes = WholeMinutes(field(10));
  return user;
}

bool WriteBudgetFile(const DataDir& dir, const QString& relativePath, const BudgetFile& budget) {
  return dir.WriteLines(
      relativePath, {PrintedNumber(budget.perDay), PrintedNumber(budget.perMonth),
                     PrintedNumber(budget.perPeriod), ToAnsi(budget.periodFrom), ToAnsi(budget.periodTo)});
}

std::optional<BudgetFile> ReadBudgetFile(const DataDir& dir, const QString& relativePath) {
  const auto lines = dir.ReadLines(relativePath);
  if (!lines) {
    return std::nullopt;
  }
  auto line = [&](qsizetype i) { return i < lines->size() ? lines->at(i) : QByteArray(); };
  BudgetFile budget;
  budget.perDay = static_cast<double>(ParseBetrag(line(0)));
  budget.perMonth = static_cast<double>(ParseBetrag(line(1)));
  budget.perPeriod = static_cast<double>(ParseBetrag(line(2)));
  budget.periodFrom = FromAnsi(line(3)).trimmed();
  budget.periodTo = FromAnsi(line(4)).trimmed();
  return budget;
}

}  // namespace minutor
