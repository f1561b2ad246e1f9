#pragma once

#include <QString>

#include <optional>

namespace minutor {

class DataDir;
struct AppState;

// The side-bar entries a user's rights shut: "Benutzer" (5), "DFÜ" and
// "Überwachung" (3, 6), "Budget" (4), and the list with its evaluations
// (1, 8, 9).
struct NavigationLocks {
  bool users = false;
  bool monitoring = false;
  bool budget = false;
  bool lists = false;
};

// Applies the rights of `user` to the program's flags, the quit lock last:
// a user with a limit or a list lock can't quit, one who is only shut out of
// panels can. The seconds left of a limit aren't recomputed here; that
// happens when a connection starts. Nothing changes and nullopt comes back
// when the name is empty or the user has no file: the rights of the user
// before stay in force.
std::optional<NavigationLocks> SetUserPreventions(const DataDir& dir, const QString& user, AppState& state);

// The caption of side-bar entry `index` under the locks: "[Gesperrt]" or its
// own name; empty for entries no right shuts.
QString NavigationLabel(int index, const NavigationLocks& locks);

inline const QString kLockedLabel = QStringLiteral("[Gesperrt]");

}  // namespace minutor
