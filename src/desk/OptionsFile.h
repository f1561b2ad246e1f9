#pragma once

#include <QList>
#include <QString>

namespace minutor {

class DataDir;
class Prompter;
class RemoteAccess;
struct RasConnection;
struct AppState;
struct Services;

// The six lines of "Config/Options.cfg" as the Options panel shows them.
// The start-up reader (LoadOptions) skips line 5: autostart lives in the
// desktop session's autostart folder, the line only remembers the box.
struct OptionsSettings {
  int currency = 0;  // position in the currency list
  bool samePrograms = false;
  bool hideToTray = false;
  bool startMinimized = false;
  bool autostart = false;
  bool onlyMarkedEntries = false;
};

// A missing file leaves everything off. A currency outside the list reads as
// the first one, Euro.
OptionsSettings ReadOptionsSettings(const DataDir& dir);
bool WriteOptionsSettings(const DataDir& dir, const OptionsSettings& settings);
// The values the rest of the program reads, without a look at the file.
void ApplyOptionsSettings(AppState& state, const OptionsSettings& settings);

// The currency list of the panel, by position.
QStringList CurrencyNames();

// One pair of "DialUp/Deny.sec": an entry's name and whether it may connect.
struct DenyEntry {
  QString name;
  bool allowed = false;
};

// The pairs in file order; a name without its value line at the end of the
// file reads as not allowed.
QList<DenyEntry> ReadDenyList(const DataDir& dir);
bool WriteDenyList(const DataDir& dir, const QList<DenyEntry>& entries);

// The guard against dialer programs, run when monitoring has seen a new
// connection and before the meter starts. With OnlyMarkedEntries it hangs up
// the last connection of the system if it is of a dial-up kind and Deny.sec
// doesn't allow its entry, and returns true then. A connection the system doesn't report is left alone.
bool IsUnwantedConnection(Services& services, RemoteAccess& remote);
// The same with the system's connections already at hand.
bool IsUnwantedConnection(Services& services, RemoteAccess& remote, const QList<RasConnection>& connections);

// The desktop file that starts the program with the session:
// $XDG_CONFIG_HOME/autostart/minutor.desktop, ~/.config when the variable is
// unset or not an absolute path.
QString AutostartFile();
// Writes the file so that it starts `executable`; false when it can't.
bool WriteAutostartFile(const QString& executable);
// True when the file is gone afterwards.
bool RemoveAutostartFile();
// The autostart box: writes or removes the file, and tells the user to make
// the entry by hand when the file can't be written.
void SetAutostart(bool on, const QString& executable, Prompter& prompter);

}  // namespace minutor
