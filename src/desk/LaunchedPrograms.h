#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace minutor {

class DataDir;
struct AppState;
struct Services;

// One line pair of a program list: the program's path and whether it starts.
struct ProgramListEntry {
  QString path;
  bool checked = false;
};

// The program list in use: "DialUp/General.prg" with SamePrograms, else
// "DialUp/<entry>.prg". Empty when the entry can't name a file.
QString ProgramListFile(const AppState& state, const QString& entry);

// The pairs in file order. A path without its flag line at the end of the
// file reads as unchecked.
QList<ProgramListEntry> ReadProgramList(const DataDir& dir, const QString& file);
// Nothing is written when `file` is empty.
bool WriteProgramList(const DataDir& dir, const QString& file, const QList<ProgramListEntry>& entries);

// What starts a program. False when it couldn't.
class ProgramLauncher {
 public:
  virtual ~ProgramLauncher() = default;
  virtual bool Start(const QString& program) = 0;
};

// The command line of a desktop entry file (".desktop", as the desktop menu
// has them): its Exec line split into program and arguments, with the
// file-name and URL placeholders dropped, since nothing is opened with it.
// Empty when the file isn't an application entry or has no Exec line.
QStringList DesktopEntryCommand(const QString& path);

// Starts the program as a process of its own, in the program's folder, and
// doesn't wait for it or end it later. A desktop entry file starts the
// application it describes.
class DetachedProgramLauncher final : public ProgramLauncher {
 public:
  bool Start(const QString& program) override;
};

// The programs of the list for the connection, in file order, when the
// program dialled the connection itself. A program that doesn't start is
// passed over. Gives how many started.
int LaunchPrograms(const Services& services, const QString& connectionName, ProgramLauncher& launcher);

}  // namespace minutor
