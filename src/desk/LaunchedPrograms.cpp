#include "desk/LaunchedPrograms.h"

#include "detection/RemoteAccess.h"
#include "frame/AppState.h"
#include "frame/Services.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

#include <QFile>
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

namespace {

// A value's escapes (\s, \n, \t, \r, \\) as desktop entry files write them.
QString UnescapeValue(const QString& value) {
  QString text;
  for (qsizetype i = 0; i < value.size(); ++i) {
    if (value[i] != QLatin1Char('\\') || i + 1 == value.size()) {
      text += value[i];
      continue;
    }
    const QChar next = value[++i];
    if (next == QLatin1Char('s')) {
      text += QLatin1Char(' ');
    } else if (next == QLatin1Char('n')) {
      text += QLatin1Char('\n');
    } else if (next == QLatin1Char('t')) {
      text += QLatin1Char('\t');
    } else if (next == QLatin1Char('r')) {
      text += QLatin1Char('\r');
    } else if (next == QLatin1Char('\\')) {
      text += next;
    } else {
      // Not an escape of the value: it belongs to the Exec quoting ("\"").
      text += QLatin1Char('\\');
      text += next;
    }
  }
  return text;
}

// Splits an Exec line: blanks separate arguments, double quotes hold an
// argument together, and inside them a backslash makes the next character
// plain. Field codes (%f, %U, ...) go; "%%" is a percent sign.
QStringList SplitExec(const QString& exec, const QString& name, const QString& path) {
  QStringList arguments;
  QString current;
  bool inArgument = false;
  bool quoted = false;
  for (qsizetype i = 0; i < exec.size(); ++i) {
    const QChar c = exec[i];
    if (quoted) {
      if (c == QLatin1Char('"')) {
        quoted = false;
      } else if (c == QLatin1Char('\\') && i + 1 < exec.size()) {
        current += exec[++i];
      } else if (c == QLatin1Char('%') && i + 1 < exec.size() && exec[i + 1] == QLatin1Char('%')) {
        // A literal percent sign is written twice, inside quotes as well.
        current += exec[++i];
      } else {
        current += c;
      }
    } else if (c == QLatin1Char('"')) {
      quoted = true;
      inArgument = true;
    } else if (c == QLatin1Char(' ') || c == QLatin1Char('\t')) {
      if (inArgument) {
        arguments.append(current);
        current.clear();
        inArgument = false;
      }
    } else if (c == QLatin1Char('%') && i + 1 < exec.size()) {
      const QChar code = exec[++i];
      if (code == QLatin1Char('%')) {
        current += code;
        inArgument = true;
      } else if (code == QLatin1Char('c')) {
        current += name;
        inArgument = true;
      } else if (code == QLatin1Char('k')) {
        current += path;
        inArgument = true;
      }
    } else {
      current += c;
      inArgument = true;
    }
  }
  if (inArgument) {
    arguments.append(current);
  }
  return arguments;
}

}  // namespace

QStringList DesktopEntryCommand(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    return {};
  }
  bool inEntry = false;
  QString type;
  QString exec;
  QString name;
  while (!file.atEnd()) {
    const QString line = QString::fromUtf8(file.readLine(64 * 1024)).trimmed();
    if (line.startsWith(QLatin1Char('['))) {
      inEntry = line == QLatin1String("[Desktop Entry]");
      continue;
    }
    const qsizetype equals = line.indexOf(QLatin1Char('='));
    if (!inEntry || equals <= 0 || line.startsWith(QLatin1Char('#'))) {
      continue;
    }
    const QString key = line.left(equals).trimmed();
    const QString value = UnescapeValue(line.mid(equals + 1).trimmed());
    if (key == QLatin1String("Type")) {
      type = value;
    } else if (key == QLatin1String("Exec")) {
      exec = value;
    } else if (key == QLatin1String("Name")) {
      name = value;
    }
  }
  if (type != QLatin1String("Application")) {
    return {};
  }
  return SplitExec(exec, name, path);
}

bool DetachedProgramLauncher::Start(const QString& program) {
  if (program.endsWith(QStringLiteral(".desktop"), Qt::CaseInsensitive)) {
    const QStringList command = DesktopEntryCommand(program);
    return !command.isEmpty() && QProcess::startDetached(command.first(), command.mid(1));
  }
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
