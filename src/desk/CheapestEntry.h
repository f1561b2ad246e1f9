#pragma once

#include "frame/datadir/DataDir.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

namespace minutor {

// The Overview's "Aktuell günstigster Eintrag:".
//
// Each entry, in the order given, is priced by the tariff assigned to it in
// "DialUp/<entry>.trf" (line 1 the provider, line 2 the label; a label
// beginning with "A" names a ".atl", any other a ".tel"). An entry without
// that file, with fewer than two lines, or with "[Keine Zuordnung]" in either
// line is left out. The raw price of the tariff at `moment` is compared, per
// minute or per volume unit alike; the first entry strictly below every
// earlier one, and below 640.00, wins. A tariff file that is gone prices at 0
// and so wins.
//
// The text is the entry's name, " (", the price in currency units "0.000", a
// blank, `waehrung` and ")"; empty when no entry qualifies.
QString FindCheapestEntry(const DataDir& dir, const QStringList& entries, const QDateTime& moment,
                          bool feiertagAktiv, const QString& waehrung);

// The label's text: the finder's, or "unbekannt (keine Tarife zugewiesen)".
QString CheapestEntryText(const DataDir& dir, const QStringList& entries, const QDateTime& moment,
                          bool feiertagAktiv, const QString& waehrung);

}  // namespace minutor
