#pragma once

#include "frame/datadir/DataDir.h"

#include <QDateTime>
#include <QString>

namespace minutor {

// The price texts the panels show. Prices are hundredths in the files and
// currency units on screen, followed by a blank and the currency sign.

// Catalogue details, "Kosten/Min (jetzt):" or for a volume tariff
// "Kosten/Tkt (jetzt):": the price now, or a volume unit's price, "0.0000".
QString KatalogPreisText(const DataDir& dir, const QString& file, const QDateTime& moment, bool feiertagAktiv,
                         const QString& waehrung);

// Overview, "Aktueller Preis:" after a tariff was chosen: "0.000", then
// " pro " and what the price is per ("Minute" or "1MB").
QString AktuellerPreisText(const DataDir& dir, const QString& file, const QDateTime& moment,
                           bool feiertagAktiv, const QString& waehrung);

// The same line redrawn after the holiday box was clicked. This redraw has
// always ended in " pro Minute", also for a volume tariff, and stays so.
QString AktuellerPreisNachFeiertagText(const DataDir& dir, const QString& file, const QDateTime& moment,
                                       bool feiertagAktiv, const QString& waehrung);

// The two labels of the running connection's price, `lblEinheit` and
// `lblEuroProMinute`.
struct EinheitTexte {
  QString lblEinheit;
  QString lblEuroProMinute;
};

// Time tariff: the unit in seconds and a unit's price; for units of one
// second "60s" and the price per minute, which reads better than a
// thousandth per second.
EinheitTexte ZeitEinheitTexte(float tarifpreis, float rest, float einheitspreis, const QString& waehrung);

// Volume tariff: the unit in megabytes (`taktKilobytes` / 1000) and its price.
EinheitTexte VolumenEinheitTexte(float taktKilobytes, float einheitspreis, const QString& waehrung);

}  // namespace minutor
