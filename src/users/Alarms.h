#pragma once

#include <QString>

namespace minutor {

class AlarmOutput;
class DataDir;
class RemoteAccess;
struct AppState;

// The warnings of a budget crossed during a connection, as the budget options
// ask for them: sound, then the box, then, for a user whose line is cut, the
// countdown. Without options the sound "Standard" and the box come. The cut
// hangs on the box: with the visual warning off no countdown starts.
void BudgetAlarm(const DataDir& dir, const AppState& state, int kind, AlarmOutput& output);

// The warning box's text for a budget kind.
QString AlertText(int kind);
// "Das Fenster schließt in 30s."
QString AlertCloseText(int secondsLeft);
// "Die Verbindung wird in 120 Sekunden getrennt!"
QString ConStopText(int secondsLeft);

// The text of the box that counts down to the cut.
inline const QString kConStopMessage = QStringLiteral(
    "Sie haben Ihr Budget/Zeitlimit überschritten und die automatische Verbindungstrennung wurde "
    "festgelegt.");

// Seconds the boxes count down from.
constexpr int kAlertSeconds = 30;
constexpr int kConStopSeconds = 120;

// The end of the countdown: the last of the active connections is hung up,
// whoever dialled it. False when there was none.
bool HangUpLastConnection(RemoteAccess& remote);

}  // namespace minutor
