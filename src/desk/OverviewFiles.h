#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace minutor {

class DataDir;

// The last selections of the Overview, "Config/Overview.cfg": four plain
// lines. The user is the last active one, which the start also reads; the
// tariff is its label as the list shows it ("M - Tag und Nacht").
struct OverviewConfig {
  QString entry;
  QString user;
  QString provider;
  QString tariff;
};

// nullopt without a file; lines missing at the end read as empty.
std::optional<OverviewConfig> ReadOverviewConfig(const DataDir& dir);
bool WriteOverviewConfig(const DataDir& dir, const OverviewConfig& config);

// The users, one per "Benutzer/*.usr", in folder order, without the extension.
QStringList GetUserNames(const DataDir& dir);

// True when the user may not touch the monitoring settings, which also takes
// the monitoring switch from him; nullopt when the user has no file.
std::optional<bool> MonitoringSwitchForbidden(const DataDir& dir, const QString& user);

// "Config/Users.cfg": 1 when the user is chosen by the desktop login.
bool IsLogonLinked(const DataDir& dir);

}  // namespace minutor
