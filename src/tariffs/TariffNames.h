#pragma once

#include "frame/datadir/DataDir.h"
#include "tariffs/Tarif.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace minutor {

// A tariff file is named "<Anbieter> - <Tarifname>.tel" or ".atl"; the name is
// also the handle by which a tariff is passed around.

// The provider: the text before the first " -". nullopt when the name holds
// no " -": such a file belongs to no provider and shows in no list.
std::optional<QString> GetAnbieter(const QString& file);

// The tariff's name: what follows the provider and " - ", without the
// extension.
QString GetTarifname(const QString& file);

// ".atl" (compared in lower case on the last three characters) is a fetched
// tariff, anything else one made by hand.
TarifHerkunft GetHerkunft(const QString& file);

// The label of a tariff in the lists of one provider: "M" for ".tel", "A" for
// ".atl", then the file name behind the provider's length without its
// extension. Provider "Foo" and "Foo - Bar.atl" give "A - Bar"; "" for any
// other extension.
QString TarifLabel(const QString& anbieter, const QString& file);

// Back from a label to the file: provider, label without its letter, and
// ".atl" for "A" or ".tel" for "M". "" for a label with another letter.
QString GetTarifDatei(const QString& anbieter, const QString& label);

// The providers of all files in Tarife, each once, in directory order.
QStringList GetAnbieterListe(const DataDir& dir);

struct TarifEintrag {
  QString Datei;
  QString Label;
  TarifHerkunft Herkunft = TarifHerkunft::Manuell;
};

// The tariffs of one provider in directory order: every ".tel" and ".atl"
// file whose name begins with the provider's name, compared without case.
// The prefix match is kept on purpose: with providers "Foo" and "Foo Net",
// Foo's list also holds Foo Net's files, labelled "M Net - ...".
QList<TarifEintrag> GetTarifListe(const DataDir& dir, const QString& anbieter);

}  // namespace minutor
