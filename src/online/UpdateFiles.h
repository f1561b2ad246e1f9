#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>

namespace minutor {

class DataDir;

// The files of the tariff update and the clock correction.

// The update servers of "Servers.dat", one base address a line, tried in
// order; nullopt when the file is missing. Lines are taken as they stand:
// an empty or unusable one simply fails when it is asked.
std::optional<QStringList> ReadServers(const DataDir& dir);

// The revision of this program, line 1 of "Revision.dat"; nullopt without it.
std::optional<double> ReadRevision(const DataDir& dir);

// The number of the last batch taken, line 1 of "Config/Update.cfg"; 0
// without the file.
int ReadLastBatch(const DataDir& dir);

// Writes "Config/Update.cfg": the batch and the day of the update.
bool WriteUpdateCfg(const DataDir& dir, int letzteSerie, const QDate& today);

// "Config/Autoupdate.cfg": whether the automatic check is on and every how
// many days it runs. Without the file: off, 7 days.
struct AutoupdateSettings {
  bool on = false;
  int days = 7;
};
AutoupdateSettings ReadAutoupdateSettings(const DataDir& dir);

// The catalogue writes the box and the combo's item: 7 days for the first,
// 14 for the second, 30 for a third, and 7 when none is chosen (-1).
bool WriteAutoupdateSettings(const DataDir& dir, bool on, int comboIndex);

// "Online.dat", the program's own addresses: line 1 the web page where a new
// program revision is announced, line 2 the host of the time service. Each
// is "" when not configured.
struct OnlineAddresses {
  QString updatePage;
  QString timeHost;
};
OnlineAddresses ReadOnlineAddresses(const DataDir& dir);

// The time service's page for a host: host + "/xdate?Etc/GMT"; "" for an
// empty host.
QString TimePageAddress(const QString& host);

}  // namespace minutor
