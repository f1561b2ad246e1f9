#pragma once

#include "frame/datadir/DataDir.h"

#include <QDateTime>
#include <QString>

namespace minutor {

// The price of `Tarife/<file>` at `moment`, in hundredths of the currency
// unit: per minute for a time tariff, per volume unit for a volume tariff.
//
// A volume tariff has one price at all hours: the line after
// "Volumenabrechnung:Ja" (any case) is taken as "Volumenkosten:", by its
// place, and its value read from the 15th character.
//
// A time tariff's zones are all looked at, in file order, and the last zone
// that applies wins. A zone applies between its hours, both ends included to
// the second (hour 24 is 00:00:00 as a start and 23:59:59 as an end); equal
// ends mean the whole day, and a zone ending before it starts never applies.
// A "Wochenende:Ja" zone applies on Saturdays, Sundays and when
// `feiertagAktiv`; a "Wochenende:Nein" zone on Monday to Friday, holiday or
// not, so that on a holiday the later of the two zones in the file decides.
//
// No zone, no file or an empty name: 0. A line that can't be read or a price
// that can't be converted ends the lookup with the price found so far.
double GetTarifPreis(const DataDir& dir, const QString& file, const QDateTime& moment, bool feiertagAktiv);

// The charging unit of "Takt:", such as "60/60" or "60 / 1". `first` is the
// whole text's leading number, rounded: the seconds before the second unit
// begins. `rest` is the leading number behind the first "/", or of the whole
// text without one: the length of every unit, the first included as to its
// price.
struct Takt {
  qint16 first = 0;
  float rest = 0.0f;
};

Takt ParseTakt(QStringView text);

// The price of one unit in currency units: price per minute x rest / 60 / 100.
// The first unit costs the same, however long `first` is.
float UnitCost(double tarifpreis, float rest);

}  // namespace minutor
