#pragma once

#include "metering/ConnectionRecord.h"

#include <QString>

#include <optional>

namespace minutor {

class DataDir;
class Prompter;

// The running recording's last known state, kept in the data directory so
// that a crash, a kill or a power cut doesn't lose the connection: the lines
// its record would hold now, and for a volume tariff the carry-over.
inline const QString kCheckpointFile = QStringLiteral("Aufzeichnung.dat");

// Replaces the checkpoint with the record the labels make now. `carryOver` is
// what is left of the paid volume unit; none for a time tariff.
bool SaveCheckpoint(const DataDir& dir, const RecordLabels& labels, std::optional<float> carryOver);

void RemoveCheckpoint(const DataDir& dir);

// At the start: a checkpoint left behind becomes the record of the connection
// it was taken from, as far as it went, with its carry-over, and the user is
// told. A record of that connection that the stop had written already is
// kept as it is. A checkpoint that can't be saved stays for the next start.
void RecoverCheckpoint(const DataDir& dir, Prompter& prompter);

}  // namespace minutor
