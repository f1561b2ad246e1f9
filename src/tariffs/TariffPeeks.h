#pragma once

#include "frame/datadir/DataDir.h"

#include <QString>

namespace minutor {

// Single values read straight from `Tarife/<file>` at each use, so that an
// edited file counts from its next read. A file that can't be read, or a key
// that isn't there, gives 0, false or "" (GetPreisEinheit: "Minute").

// "Volumenabrechnung:" with the value "ja" in any case, blanks around it
// allowed; the last such line decides.
bool IsVolumentarif(const DataDir& dir, const QString& file);

// "Volumenkosten:", hundredths of the currency unit per volume unit.
float GetVolumenkosten(const DataDir& dir, const QString& file);

// "Volumeneinheit:" with the key in any case; megabytes.
float GetVolumeneinheit(const DataDir& dir, const QString& file);

// "Gesprächsgrundgebühr:" divided by 100: the fee per connection in currency
// units.
float GetGrundgebuehrJeVerbindung(const DataDir& dir, const QString& file);

// "Freiminuten:", the first such line; minutes a month.
double GetTarifFreiminuten(const DataDir& dir, const QString& file);

// "Volumengrenze:" with the key in any case, the first such line, times 1000:
// free kilobytes a month.
double GetTarifVolumengrenze(const DataDir& dir, const QString& file);

// The text behind "Takt:"; the last such line decides.
QString GetActualTakt(const DataDir& dir, const QString& file);

// What a price is per: "Minute", or for a volume tariff the size of a volume
// unit such as "1MB". The size is read by its place, the second line behind
// "Volumenabrechnung:Ja", from its 16th character, whatever its key.
QString GetPreisEinheit(const DataDir& dir, const QString& file);

}  // namespace minutor
