#include "desk/LaunchedPrograms.h"

#include "detection/RemoteAccess.h"
#include "frame/AppState.h"
#include "frame/Services.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

#include <QFileInfo>
#include <QProcess>

namespace minutor {

QString ProgramListFile(const AppState& state, const QString& entry) {
  if (state.SamePrograms) {
    return QStringLiteral("DialUp/General.prg");
  }
  if (!IsUsableEntryName(entry)) {
    return {};
  }
  return QStringLiteral("DialUp/") + entry + QStringLiteral(".prg");
}

QList<ProgramListEntry> ReadProgramList(const DataDir& dir, const QString& file) {
  QList<ProgramListEntry> entries;
  if (file.isEmpty()) {
    return entries;
  }
  if (const auto lines = dir.ReadLines(file)) {
    for (qsizetype i = 0; i < lines->size(); i += 2) {
      entries.append({FromAnsi(lines->at(i)), i + 1 < lines->size() && IsOne(lines->at(i + 1))});
    }
  }
  return entries;
}

bool WriteProgramList(const DataDir& dir, const QString& file, const QList<ProgramListEntry>& entries) {
  if (file.isEmpty()) {
    return false;
  }
  // Config is made as well: the settings folder is expected beside every list.
  dir.MakeDir(QStringLiteral("Config"));
  QList<QByteArray> lines;
  for (const ProgramListEntry& entry : entries) {
    lines << ToAnsi(entry.path) << PrintedNumber(entry.checked ? 1 : 0);
  }
  return dir.WriteLines(file, lines);
}

bool DetachedProgramLauncher::Start(const QString& program) {
  return QProcess::startDetached(program, {}, QFileInfo(program).absolutePath());
}

int LaunchPrograms(const Services& services, const QString& connectionName, ProgramLauncher& launcher) {
  if (!services.state.DialedByProgram) {
    return 0;
  }
  int started = 0;
  const QString file = ProgramListFile(services.state, connectionName);
  for (const ProgramListEntry& entry : ReadProgramList(services.dir, file)) {
    if (entry.checked && launcher.Start(entry.path)) {
      ++started;
    }
  }
  return started;
}

}  // namespace minutor
