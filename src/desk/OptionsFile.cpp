#include "desk/OptionsFile.h"

#include "detection/MonitoringLoop.h"
#include "detection/RemoteAccess.h"
#include "frame/AppState.h"
#include "frame/Options.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

#include <QDir>

#include <algorithm>

namespace minutor {

namespace {

const QString kOptionsFile = QStringLiteral("Config/Options.cfg");
const QString kDenyFile = QStringLiteral("DialUp/Deny.sec");
const QString kAutostartName = QStringLiteral("autostart/minutor.desktop");
constexpr int kLastCurrency = 11;

QByteArray Flag(bool on) { return PrintedNumber(on ? 1 : 0); }

QString ConfigHome() {
  const QString xdg = qEnvironmentVariable("XDG_CONFIG_HOME");
  if (!xdg.isEmpty() && QDir::isAbsolutePath(xdg)) {
    return xdg;
  }
  return QDir::homePath() + QStringLiteral("/.config");
}

// The Exec key takes a command line: a path with blanks or reserved
// characters goes in double quotes, and the key's value escapes once more.
QString ExecValue(const QString& executable) {
  static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
  const bool needsQuotes =
      std::any_of(executable.begin(), executable.end(), [](QChar c) { return reserved.contains(c); });
  QString command = executable;
  command.replace(QLatin1Char('%'), QStringLiteral("%%"));
  if (needsQuotes) {
    QString quoted;
    for (const QChar c : command) {
      if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') || c == QLatin1Char('\\')) {
        quoted += QLatin1Char('\\');
      }
      quoted += c;
    }
    command = QLatin1Char('"') + quoted + QLatin1Char('"');
  }
  // A desktop file's value is one line: backslash, line break, tab and
  // carriage return are written as escapes.
  QString value;
  for (const QChar c : command) {
    switch (c.unicode()) {
      case '\\':
        value += QStringLiteral("\\\\");
        break;
      case '\n':
        value += QStringLiteral("\\n");
        break;
      case '\t':
        value += QStringLiteral("\\t");
        break;
      case '\r':
        value += QStringLiteral("\\r");
        break;
      default:
        value += c;
    }
  }
  return value;
}

}  // namespace

OptionsSettings ReadOptionsSettings(const DataDir& dir) {
  OptionsSettings settings;
  const auto lines = dir.ReadLines(kOptionsFile);
  if (!lines) {
    return settings;
  }
  auto line = [&](qsizetype i) { return i < lines->size() ? lines->at(i) : QByteArray(); };
  const double currency = LeadingNumber(line(0));
  settings.currency = currency >= 0 && currency <= kLastCurrency ? static_cast<int>(currency) : 0;
  settings.samePrograms = IsOne(line(1));
  settings.hideToTray = IsOne(line(2));
  settings.startMinimized = IsOne(line(3));
  settings.autostart = IsOne(line(4));
  settings.onlyMarkedEntries = IsOne(line(5));
  return settings;
}

bool WriteOptionsSettings(const DataDir& dir, const OptionsSettings& settings) {
  return dir.WriteLines(kOptionsFile, {PrintedNumber(settings.currency), Flag(settings.samePrograms),
                                       Flag(settings.hideToTray), Flag(settings.startMinimized),
                                       Flag(settings.autostart), Flag(settings.onlyMarkedEntries)});
}

void ApplyOptionsSettings(AppState& state, const OptionsSettings& settings) {
  SetCurrency(state, settings.currency);
  state.SamePrograms = settings.samePrograms;
  state.HideToTray = settings.hideToTray;
  state.StartMinimized = settings.startMinimized;
  state.OnlyMarkedEntries = settings.onlyMarkedEntries;
}

QStringList CurrencyNames() {
  return {QStringLiteral("Euro"),
          QStringLiteral("Schweizer Franken"),
          QStringLiteral("Dollar"),
          QStringLiteral("Pfund"),
          QStringLiteral("Franc"),
          QStringLiteral("Türkische Lira"),
          QStringLiteral("Dänische Kronen"),
          QStringLiteral("Norwegische Kronen"),
          QStringLiteral("Polnische Zloty"),
          QStringLiteral("Schwedische Kronen"),
          QStringLiteral("Südafrikanische Rand"),
          QStringLiteral("Tschechische Kronen")};
}

QList<DenyEntry> ReadDenyList(const DataDir& dir) {
  QList<DenyEntry> entries;
  if (const auto lines = dir.ReadLines(kDenyFile)) {
    for (qsizetype i = 0; i < lines->size(); i += 2) {
      entries.append({FromAnsi(lines->at(i)), i + 1 < lines->size() && IsOne(lines->at(i + 1))});
    }
  }
  return entries;
}

bool WriteDenyList(const DataDir& dir, const QList<DenyEntry>& entries) {
  QList<QByteArray> lines;
  for (const DenyEntry& entry : entries) {
    lines << ToAnsi(entry.name) << Flag(entry.allowed);
  }
  return dir.WriteLines(kDenyFile, lines);
}

bool IsUnwantedConnection(Services& services, RemoteAccess& remote) {
  return services.state.OnlyMarkedEntries &&
         IsUnwantedConnection(services, remote, remote.GetRasConnections());
}

bool IsUnwantedConnection(Services& services, RemoteAccess& remote, const QList<RasConnection>& connections) {
  if (!services.state.OnlyMarkedEntries) {
    return false;
  }
  if (connections.isEmpty()) {
    return false;
  }
  const RasConnection& last = connections.last();
  if (!IsDialUpKind(last) || last.entryName == QStringLiteral("unbekannt") ||
      IsEntryAllowed(services.dir, last.entryName)) {
    return false;
  }
  remote.HangUp(last.handle);
  return true;
}

QString AutostartFile() { return ConfigHome() + QLatin1Char('/') + kAutostartName; }

bool WriteAutostartFile(const QString& executable) {
  const QString text =
      QStringLiteral("[Desktop Entry]\nType=Application\nName=Minutor\nIcon=minutor\nExec=") +
      ExecValue(executable) + QStringLiteral("\nTerminal=false\n");
  return DataDir(ConfigHome()).WriteBytes(kAutostartName, text.toUtf8());
}

bool RemoveAutostartFile() {
  const DataDir config(ConfigHome());
  return !config.FileExists(kAutostartName) || config.Remove(kAutostartName);
}

void SetAutostart(bool on, const QString& executable, Prompter& prompter) {
  if (!on) {
    RemoveAutostartFile();
    return;
  }
  if (!WriteAutostartFile(executable)) {
    prompter.Message(
        QStringLiteral("Konnte den Autostart nicht einrichten. Bitte erstellen Sie manuell einen "
                       "Link im Autostart Menü des Startmenüs."),
        Prompter::Icon::None);
  }
}

}  // namespace minutor
