#include "desk/OverviewFiles.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "users/UserFile.h"

namespace minutor {

namespace {
const QString kOverviewFile = QStringLiteral("Config/Overview.cfg");
const QString kUserFolder = QStringLiteral("Benutzer");
}  // namespace

std::optional<OverviewConfig> ReadOverviewConfig(const DataDir& dir) {
  const auto lines = dir.ReadLines(kOverviewFile);
  if (!lines) {
    return std::nullopt;
  }
  auto line = [&](qsizetype i) { return FromAnsi(lines->value(i)); };
  return OverviewConfig{line(0), line(1), line(2), line(3)};
}

bool WriteOverviewConfig(const DataDir& dir, const OverviewConfig& config) {
  return dir.WriteLines(kOverviewFile, {ToAnsi(config.entry), ToAnsi(config.user), ToAnsi(config.provider),
                                        ToAnsi(config.tariff)});
}

QStringList GetUserNames(const DataDir& dir) {
  QStringList names;
  for (const QString& file : dir.ListFiles(kUserFolder, QStringLiteral("*.usr"))) {
    names.append(file.left(file.size() - 4));
  }
  return names;
}

std::optional<bool> MonitoringSwitchForbidden(const DataDir& dir, const QString& user) {
  if (user.isEmpty()) {
    return std::nullopt;
  }
  const auto file = ReadUserFile(dir, user);
  if (!file) {
    return std::nullopt;
  }
  return file->noMonitoringSettings;
}

bool IsLogonLinked(const DataDir& dir) {
  const auto lines = dir.ReadLines(QStringLiteral("Config/Users.cfg"));
  return lines && !lines->isEmpty() && IsOne(lines->first());
}

}  // namespace minutor
