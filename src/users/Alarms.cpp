#include "users/Alarms.h"

#include "detection/RemoteAccess.h"
#include "frame/AppState.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/Names.h"
#include "users/AlarmOutput.h"
#include "users/Budget.h"

namespace minutor {

namespace {

void PlayWarning(const DataDir& dir, const QString& name, AlarmOutput& output) {
  // A name that leaves the folder plays nothing.
  if (!name.isEmpty() && IsValidName(name)) {
    output.PlaySound(dir.Resolve(QStringLiteral("Sounds/") + name + QStringLiteral(".wav")));
  }
}

}  // namespace

void BudgetAlarm(const DataDir& dir, const AppState& state, int kind, AlarmOutput& output) {
  const BudgetOptions options =
      ReadBudgetOptions(dir).value_or(BudgetOptions{false, true, true, QStringLiteral("Standard")});
  if (options.sound) {
    PlayWarning(dir, options.soundName, output);
  }
  if (options.visual) {
    output.ShowAlert(kind);
    if (state.NoDialOnBudget) {
      output.ShowConStop();
    }
  }
}

QString AlertText(int kind) {
  const char* what = kind == 1 ? "Tagesbudget" : kind == 2 ? "Monatsbudget" : "definiertes Budget";
  return QStringLiteral("Sie überschreiten nun Ihr ") + QString::fromUtf8(what) +
         QStringLiteral(". Diese Warnung können Sie in den Budgeteinstellungen deaktivieren.");
}

QString AlertCloseText(int secondsLeft) {
  return QStringLiteral("Das Fenster schließt in ") + QString::number(secondsLeft) + QStringLiteral("s.");
}

QString ConStopText(int secondsLeft) {
  return QStringLiteral("Die Verbindung wird in ") + QString::number(secondsLeft) +
         QStringLiteral(" Sekunden getrennt!");
}

bool HangUpLastConnection(RemoteAccess& remote) {
  const QList<RasConnection> connections = remote.GetRasConnections();
  if (connections.isEmpty()) {
    return false;
  }
  remote.HangUp(connections.last().handle);
  return true;
}

}  // namespace minutor
