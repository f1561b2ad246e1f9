#pragma once

#include <QDate>

namespace minutor {

class DataDir;

// The settings the connection panel reads when it loads and writes at each
// click of its boxes. A missing or damaged file reads as off.

// Whether the automatic tariff update search is due in this connection:
// switched on in "Config/Autoupdate.cfg" and the last update (line 2 of
// "Config/Update.cfg", today when that is too short to be a date) at least
// the interval ago, which is 7 days at the least. A last update in the future
// makes it due.
bool LoadAutoupdateState(const DataDir& dir, const QDate& today);

// The clock correction box, line 1 of "Config/Timesync.cfg".
bool LoadTimesyncState(const DataDir& dir);
void SaveTimesyncState(const DataDir& dir, bool on);

// The small window box, line 1 of "Config/Smallwindow.cfg".
bool LoadSmallWindowState(const DataDir& dir);
void SaveSmallWindowState(const DataDir& dir, bool on);

}  // namespace minutor
