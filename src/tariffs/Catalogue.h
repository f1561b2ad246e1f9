#pragma once

#include "frame/datadir/DataDir.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace minutor {

// A provider of the catalogue with its tariff files, first those made by
// hand, then the fetched ones. Files are taken by the beginning of their name,
// so a provider whose name begins another's also holds the other's files.
struct KatalogAnbieter {
  QString name;
  QStringList tel;
  QStringList atl;
};

// GetTarife: the providers of "Tarife" in the order of their files, each
// once, with their tariffs.
QList<KatalogAnbieter> GetKatalog(const DataDir& dir);

// The details box of a tariff; the captions of price and free allowance
// depend on whether it is billed by volume.
struct KatalogDetails {
  QString tarif;  // names with their first "&" doubled, for captions
  QString anbieter;
  QString preisCaption = QStringLiteral("Kosten/Min (jetzt):");
  QString preis;
  QString taktung;
  QString freiCaption = QStringLiteral("Freiminuten:");
  QString frei;
  QString anmeldung;
  QString verfuegbarkeit;
  QString grundgebuehr;
  QString mindestumsatz;
  QString gespraechsgebuehr;
  QString kanalbuendelung;
  QString flatrate;
};

// ShowTarif: the details of `Tarife/<file>`, read line by line; nullopt
// when the file can't be read (gone since the list was made).
std::optional<KatalogDetails> GetKatalogDetails(const DataDir& dir, const QString& file,
                                                const QDateTime& moment, bool feiertagAktiv,
                                                const QString& waehrung);

// The text with its first "&" doubled, so that a caption shows it.
QString DoubleFirstAmpersand(QString text);

}  // namespace minutor
