#pragma once

#include "frame/datadir/DataDir.h"
#include "tariffs/Tarif.h"
#include "tariffs/TariffNames.h"  // IWYU pragma: export
#include "tariffs/TariffPeeks.h"  // IWYU pragma: export

#include <QString>

#include <optional>

namespace minutor {

// Reads `Tarife/<file>` whole. The head is scanned by keys (the last line of
// a key wins, keys compared byte for byte); after "[Tarifzonen]" every group
// of six lines is a zone, whatever keys those lines carry, so a stray line
// among the zones shifts all zones behind it. A last group of fewer than six
// lines is no zone, and a zone whose "Wochenende:" is neither "ja" nor "nein"
// in any case is left out, as the editor does. Provider, tariff name and
// origin come from the file name. nullopt when the file can't be read.
std::optional<Tarif> ReadTarif(const DataDir& dir, const QString& file);

// Writes `Tarife/<Anbieter> - <Tarifname>.tel` as the editor does, making the
// folder when it is missing and replacing a file of that name. The lines the
// editor doesn't show are written as they are, an empty one of the first four
// as "k.A."; a tariff without zones gets a free whole-day zone for each day
// class. False when a name is empty or no valid file name, or the write fails.
bool WriteTarif(const DataDir& dir, const Tarif& tarif);

// The lines WriteTarif writes, without their line ends.
QList<QByteArray> TarifLines(const Tarif& tarif);

// "<Anbieter> - <Tarifname>.tel", the file the editor writes.
QString TelDateiname(const QString& anbieter, const QString& tarifname);

// An amount typed in currency units as the hundredths the file holds: the
// amount through ParseBetrag, times 100 in single precision. "0,12" is 12.
float PfennigAusBetrag(QStringView betrag);

}  // namespace minutor
