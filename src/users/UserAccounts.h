#pragma once

#include "users/UserFile.h"

#include <QString>

#include <optional>

namespace minutor {

class DataDir;
struct Services;

// Which defaults a budget file gets: 2001 for a user made by hand and for a
// budget file the Budget panel rebuilds, 2002 for "Supervisor" and for a user
// whose file was lost.
enum class BudgetDates { Year2001, Year2002 };
BudgetFile DefaultBudget(BudgetDates dates);

// Writes "<name>.usr" with the defaults and "<name>.bdg" with no amounts.
bool CreateUserFiles(const DataDir& dir, const QString& name, BudgetDates dates);

// "Benutzer hinzufügen": asks for a name until it is free or the user gives
// up. Returns the new user, or "" when nothing was made.
QString NewUser(Services& services);

// "Benutzer löschen": "Supervisor" is refused, anyone else removed with both
// files after a question. The records of the user stay. True when deleted.
bool DeleteUser(Services& services, const QString& name);

// The user the program starts with: line 2 of "Config/Overview.cfg", else
// "Supervisor". Returns the user whose password the Login box must ask for,
// or nothing when no question is put: the desktop login decides, the user has
// no password, or the user's file can't be read.
std::optional<QString> CheckUser(const DataDir& dir);

// The last active user, as the Overview wrote it; "Supervisor" without a file.
QString LastActiveUser(const DataDir& dir);

// The Login box's OK: the chosen user's stored password equals the typed one
// exactly. An empty field is right for a user without a password.
bool PasswordMatches(const DataDir& dir, const QString& name, const QString& typed);

// The question put before another user is shown in a panel: true when the
// user has no password or gave the right one. Cancel and an empty answer
// end the choice silently, a wrong one after "Falsches Passwort!".
bool AskUserPassword(Services& services, const QString& name);

// The user file behind the User panel's selection. A missing file is made
// again with the defaults (and its budget file with it), and the user is told.
UserFile LoadOrRebuildUser(Services& services, const QString& name);

}  // namespace minutor
