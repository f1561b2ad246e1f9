#include "tariffs/PriceTexts.h"

#include "frame/datadir/NumberText.h"
#include "tariffs/RateLookup.h"
#include "tariffs/TariffPeeks.h"

namespace minutor {

namespace {

QString Amount(double currencyUnits, int decimals, const QString& waehrung) {
  return FixedText(currencyUnits, decimals) + QLatin1Char(' ') + waehrung;
}

}  // namespace

QString KatalogPreisText(const DataDir& dir, const QString& file, const QDateTime& moment, bool feiertagAktiv,
                         const QString& waehrung) {
  const double preis = IsVolumentarif(dir, file) ? GetVolumenkosten(dir, file)
                                                 : GetTarifPreis(dir, file, moment, feiertagAktiv);
  return Amount(preis / 100.0, 4, waehrung);
}

QString AktuellerPreisText(const DataDir& dir, const QString& file, const QDateTime& moment,
                           bool feiertagAktiv, const QString& waehrung) {
  return Amount(GetTarifPreis(dir, file, moment, feiertagAktiv) / 100.0, 3, waehrung) +
         QStringLiteral(" pro ") + GetPreisEinheit(dir, file);
}

QString AktuellerPreisNachFeiertagText(const DataDir& dir, const QString& file, const QDateTime& moment,
                                       bool feiertagAktiv, const QString& waehrung) {
  return Amount(GetTarifPreis(dir, file, moment, feiertagAktiv) / 100.0, 3, waehrung) +
         QStringLiteral(" pro Minute");
}

EinheitTexte ZeitEinheitTexte(float tarifpreis, float rest, float einheitspreis, const QString& waehrung) {
  if (rest == 1.0f) {
    return {QStringLiteral("60s"), Amount(tarifpreis / 100.0, 3, waehrung)};
  }
  return {GeneralText(rest) + QLatin1Char('s'), Amount(einheitspreis, 3, waehrung)};
}

EinheitTexte VolumenEinheitTexte(float taktKilobytes, float einheitspreis, const QString& waehrung) {
  return {GeneralText(taktKilobytes / 1000.0f) + QStringLiteral("MB"), Amount(einheitspreis, 3, waehrung)};
}

}  // namespace minutor
