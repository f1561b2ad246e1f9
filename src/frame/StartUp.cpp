#include "frame/StartUp.h"

#include "frame/AppState.h"
#include "frame/Options.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "users/UserFile.h"

namespace minutor {

void CreateDefaultUser(const DataDir& dir) {
  if (!dir.FileExists(QStringLiteral("Benutzer/Supervisor.usr"))) {
    WriteUserFile(dir, kSupervisor, UserFile{});
  }
  if (!dir.FileExists(QStringLiteral("Benutzer/Supervisor.bdg"))) {
    WriteBudgetFile(dir, QStringLiteral("Benutzer/Supervisor.bdg"),
                    BudgetFile{0, 0, 0, QStringLiteral("1.1.2002"), QStringLiteral("31.1.2002")});
  }
}

void LoadMonitoring(const DataDir& dir, AppState& state) {
  const auto lines = dir.ReadLines(QStringLiteral("Config/Monitoring.cfg"));
  if (!lines) {
    // A file that exists but can't be read counts as off, like an empty one.
    state.MonitoringOn = !dir.FileExists(QStringLiteral("Config/Monitoring.cfg"));
    return;
  }
  state.MonitoringOn = !lines->isEmpty() && IsOne(lines->first());
}

void SaveMonitoring(const DataDir& dir, bool on) {
  dir.WriteLines(QStringLiteral("Config/Monitoring.cfg"), {PrintedNumber(on ? 1 : 0)});
}

void LoadConCheck(const DataDir& dir, AppState& state) {
  state.MethodIP = false;
  state.MethodIE = true;
  state.MethodLAN = false;
  state.MethodTAPI = false;
  state.CheckInterval = 2;
  if (const auto lines = dir.ReadLines(QStringLiteral("Config/ConCheck.cfg"))) {
    auto line = [&](qsizetype i) { return i < lines->size() ? lines->at(i) : QByteArray(); };
    state.MethodIP = IsOne(line(0));
    state.MethodIE = IsOne(line(1));
    state.MethodLAN = IsOne(line(2));
    state.MethodTAPI = IsOne(line(3));
    const double interval = LeadingNumber(line(4));
    if (interval >= 1 && interval <= 10) {
      state.CheckInterval = static_cast<int>(interval);
    }
  }
  state.IgnoredIPTable = {QString()};
  if (const auto lines = dir.ReadLines(QStringLiteral("Config/IgnoredIPs.cfg"))) {
    state.IgnoredIPTable.clear();
    for (const QString& piece : FromAnsi(lines->value(0)).split(QLatin1Char(','))) {
      state.IgnoredIPTable.append(piece.trimmed());
    }
  }
}

void RunStartSteps(const DataDir& dir, const QString& shippedDir, AppState& state) {
  dir.RemoveSaveLeftovers();
  dir.CopyShippedFiles(shippedDir);
  LoadOptions(dir, state);
  CreateDefaultUser(dir);
  state.Restfrei = QStringLiteral("-");
  state.RestfreiTarif.clear();
  LoadMonitoring(dir, state);
  LoadConCheck(dir, state);
}

}  // namespace minutor
