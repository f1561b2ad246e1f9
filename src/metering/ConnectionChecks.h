#pragma once

#include <QString>

namespace minutor {

class DataDir;
struct Services;

// Why a recording can't start: no tariff chosen (a handle shorter than four
// characters) or no user. Empty when it can.
QString TarifCheckMessage(const QString& aktuellerTarif, const QString& activeUser);

// Before a recording starts: shows the refusal and switches monitoring off,
// saved, so that the next check doesn't bring the box again. The caller then
// closes the panel and shows the Overview with its box cleared. True when the
// recording may start.
bool TarifCheck(Services& services);

// The stop button: a recording that monitoring started can only be stopped
// by hand with monitoring off, so the user is asked whether to switch it
// off. Yes switches it off and saves that. True when the recording is to
// stop.
bool ConfirmManualStop(Services& services);

}  // namespace minutor
