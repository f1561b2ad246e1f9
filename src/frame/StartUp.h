#pragma once

#include <QString>

namespace minutor {

class DataDir;
struct AppState;

// Makes "Benutzer/Supervisor.usr" and "Benutzer/Supervisor.bdg" with their
// defaults where they are missing; files that exist are left alone.
void CreateDefaultUser(const DataDir& dir);

// Monitoring is on without "Config/Monitoring.cfg"; in a file that exists
// only the value 1 means on.
void LoadMonitoring(const DataDir& dir, AppState& state);

// Writes the monitoring switch as line 1 of "Config/Monitoring.cfg".
void SaveMonitoring(const DataDir& dir, bool on);

// The detection methods and the interval from "Config/ConCheck.cfg", and the
// addresses to ignore from "Config/IgnoredIPs.cfg".
void LoadConCheck(const DataDir& dir, AppState& state);

// The steps of a start that need no window, in their order: the leftovers
// of saves a crash cut short go, the shipped files the data directory lacks
// come, then the options, the default user, the free allowance reset,
// monitoring and the detection settings.
void RunStartSteps(const DataDir& dir, const QString& shippedDir, AppState& state);

}  // namespace minutor
