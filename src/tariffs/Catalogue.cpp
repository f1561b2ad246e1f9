#include "tariffs/Catalogue.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/NumberText.h"
#include "tariffs/PriceTexts.h"
#include "tariffs/TariffLines.h"
#include "tariffs/TariffNames.h"

namespace minutor {

namespace {

QStringList FilesOf(const QStringList& files, const QString& anbieter, const QString& extension) {
  QStringList matching;
  for (const QString& file : files) {
    if (file.startsWith(anbieter, Qt::CaseInsensitive) && file.endsWith(extension, Qt::CaseInsensitive)) {
      matching.append(file);
    }
  }
  return matching;
}

QString Amount(double value, int decimals, const QString& waehrung) {
  return FixedText(value, decimals) + QLatin1Char(' ') + waehrung;
}

}  // namespace

QList<KatalogAnbieter> GetKatalog(const DataDir& dir) {
  const QStringList files = dir.ListFiles(QStringLiteral("Tarife"));
  QStringList names;
  for (const QString& file : files) {
    const auto anbieter = GetAnbieter(file);
    if (anbieter && !names.contains(*anbieter)) {
      names.append(*anbieter);
    }
  }
  QList<KatalogAnbieter> katalog;
  for (const QString& name : names) {
    katalog.append(
        {name, FilesOf(files, name, QStringLiteral(".tel")), FilesOf(files, name, QStringLiteral(".atl"))});
  }
  return katalog;
}

std::optional<KatalogDetails> GetKatalogDetails(const DataDir& dir, const QString& file,
                                                const QDateTime& moment, bool feiertagAktiv,
                                                const QString& waehrung) {
  const auto lines = ReadTarifLines(dir, file);
  if (!lines) {
    return std::nullopt;
  }
  using namespace tarifkey;
  KatalogDetails d;
  d.tarif = DoubleFirstAmpersand(GetTarifname(file));
  d.anbieter = DoubleFirstAmpersand(GetAnbieter(file).value_or(QString()));
  bool volumen = false;
  for (const QByteArray& line : *lines) {
    auto value = [&line](QByteArrayView key) { return FromAnsi(ValueBehind(line, key.size())); };
    if (line.startsWith(kVolumenabrechnung)) {
      volumen = value(kVolumenabrechnung).toLower() == QLatin1String("ja");
      d.preisCaption =
          volumen ? QStringLiteral("Kosten/Tkt (jetzt):") : QStringLiteral("Kosten/Min (jetzt):");
      d.freiCaption = volumen ? QStringLiteral("Freitransfer:") : QStringLiteral("Freiminuten:");
    } else if (line.startsWith(kTakt) && !volumen) {
      d.taktung = value(kTakt);
    } else if (line.startsWith(kVolumeneinheit) && volumen) {
      d.taktung = value(kVolumeneinheit) + QStringLiteral(" MB");
    } else if (line.startsWith(kVolumengrenze) && volumen) {
      const QString grenze = value(kVolumengrenze);
      d.frei = grenze == QLatin1String("0") ? QStringLiteral("unbegrenzt") : grenze;
    } else if (line.startsWith(kFreiminuten) && !volumen) {
      d.frei = value(kFreiminuten);
    } else if (line.startsWith(kVolumenkosten) && volumen) {
      d.preis = KatalogPreisText(dir, file, moment, feiertagAktiv, waehrung);
    } else if (line.startsWith(kAnmeldung)) {
      d.anmeldung = value(kAnmeldung);
    } else if (line.startsWith(kRegion)) {
      d.verfuegbarkeit = value(kRegion) == QLatin1String("bundesweit") ? QStringLiteral("bundesweit")
                                                                       : QStringLiteral("regional");
    } else if (line.startsWith(kGrundgebuehr)) {
      d.grundgebuehr = Amount(ParseBetrag(value(kGrundgebuehr)), 2, waehrung);
    } else if (line.startsWith(kMindestumsatz)) {
      d.mindestumsatz = Amount(ParseBetrag(value(kMindestumsatz)), 2, waehrung);
    } else if (line.startsWith(kGespraechsgrundgebuehr)) {
      d.gespraechsgebuehr = Amount(ParseBetrag(value(kGespraechsgrundgebuehr)) / 100.0, 3, waehrung);
    } else if (line.startsWith(kKanalbuendelung)) {
      d.kanalbuendelung = value(kKanalbuendelung);
    } else if (line.startsWith(kFlatrate)) {
      d.flatrate = value(kFlatrate);
    }
  }
  if (!volumen) {
    d.preis = KatalogPreisText(dir, file, moment, feiertagAktiv, waehrung);
  }
  return d;
}

QString DoubleFirstAmpersand(QString text) {
  const auto amp = text.indexOf(QLatin1Char('&'));
  if (amp >= 0) {
    text.insert(amp, QLatin1Char('&'));
  }
  return text;
}

}  // namespace minutor
