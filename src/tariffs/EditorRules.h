#pragma once

#include "tariffs/Tarif.h"

#include <QString>
#include <QStringList>

namespace minutor {

// The rules of the tariff editor's fields, apart from its widgets.

// Clean-up on leaving a field. An amount: the amount read with comma or
// point, in the general text. A whole number: the whole part of the leading
// number. The charging unit: "first / rest" with whole numbers, where a first
// of 0 gives "60 / 60" and a missing or zero rest gives " / 60".
QString BereinigeBetrag(QStringView text);
QString BereinigeGanzzahl(QStringView text);
QString BereinigeTakt(QStringView text);

// A zone as the zone list shows and keeps it. The hours stand at characters
// 6-7 and 14-15 and the price from character 25 on, and are cut out from
// there again when the tariff is saved.
QString ZonenEintrag(int von, int bis, const QString& kosten, bool wochenende);
Tarifzone ZoneAusEintrag(const QString& eintrag);

// Why a tariff can't be saved, or "" when it can: a provider or tariff name
// that is empty or no valid file name; zones of working days alone.
QString TarifFehler(const QString& anbieter, const QString& tarifname, const QStringList& zonen,
                    bool volumenabrechnung);

}  // namespace minutor
