#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace minutor {

class DataDir;

// What a user's file "Benutzer/<name>.usr" holds, in its line order.
struct UserFile {
  bool noUserSettings = false;        // line 1
  bool noMonitoringSettings = false;  // line 2
  bool noBudgetSettings = false;      // line 3
  bool noListEdit = false;            // line 4
  bool noDialOnBudget = false;        // line 5
  bool noListView = false;            // line 6
  bool dayLimitOn = false;            // line 7
  qint64 dayLimitMinutes = 60;        // line 8
  QByteArray password;                // line 9, empty for none
  bool monthLimitOn = false;          // line 10
  qint64 monthLimitMinutes = 600;     // line 11
};

// The eleven enciphered lines; an empty password stays an empty line.
QList<QByteArray> UserFileLines(const UserFile& user);

bool WriteUserFile(const DataDir& dir, const QString& name, const UserFile& user);

// Reads a user's file. Lines missing at the end read as empty: switches off,
// minutes 0. nullopt when there is no such file.
std::optional<UserFile> ReadUserFile(const DataDir& dir, const QString& name);

// A budget file, "Benutzer/<name>.bdg" or "Benutzer/Budget.dat".
struct BudgetFile {
  double perDay = 0;
  double perMonth = 0;
  double perPeriod = 0;
  QString periodFrom;
  QString periodTo;
};

bool WriteBudgetFile(const DataDir& dir, const QString& relativePath, const BudgetFile& budget);
std::optional<BudgetFile> ReadBudgetFile(const DataDir& dir, const QString& relativePath);

// The user that always exists and can never be restricted.
inline const QString kSupervisor = QStringLiteral("Supervisor");

}  // namespace minutor
