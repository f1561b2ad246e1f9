#include "users/UserRights.h"

#include "frame/AppState.h"
#include "users/UserFile.h"

namespace minutor {

std::optional<NavigationLocks> SetUserPreventions(const DataDir& dir, const QString& user, AppState& state) {
  if (user.isEmpty()) {
    return std::nullopt;
  }
  const auto file = ReadUserFile(dir, user);
  if (!file) {
    return std::nullopt;
  }
  NavigationLocks locks;
  locks.users = file->noUserSettings;
  locks.monitoring = file->noMonitoringSettings;
  state.NoMonitoringSettings = file->noMonitoringSettings;
  locks.budget = file->noBudgetSettings;
  // Whoever may not see the list may not edit it either.
  state.NoListEdit = file->noListEdit || file->noListView;
  state.NoDialOnBudget = file->noDialOnBudget;
  locks.lists = file->noListView;
  state.DayLimitOn = file->dayLimitOn;
  if (file->dayLimitOn) {
    state.DayLimitMinutes = static_cast<qint32>(file->dayLimitMinutes);
  }
  state.MonthLimitOn = file->monthLimitOn;
  if (file->monthLimitOn) {
    state.MonthLimitMinutes = static_cast<qint32>(file->monthLimitMinutes);
  }
  state.QuitLocked = state.NoListEdit || state.DayLimitOn || state.MonthLimitOn || state.NoDialOnBudget;
  return locks;
}

QString NavigationLabel(int index, const NavigationLocks& locks) {
  auto label = [](bool locked, const char* name) { return locked ? kLockedLabel : QString::fromUtf8(name); };
  switch (index) {
    case 1:
      return label(locks.lists, "Verbindungsliste");
    case 3:
      return label(locks.monitoring, "DFÜ");
    case 4:
      return label(locks.budget, "Budget");
    case 5:
      return label(locks.users, "Benutzer");
    case 6:
      return label(locks.monitoring, "Überwachung");
    case 8:
      return label(locks.lists, "Monatsdiagramm");
    case 9:
      return label(locks.lists, "Analyse");
    default:
      return {};
  }
}

}  // namespace minutor
