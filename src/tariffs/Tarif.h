#pragma once

#include <QList>
#include <QString>

namespace minutor {

// Where a tariff file came from, told by its extension: ".tel" is made by
// hand in the editor, ".atl" is fetched by the tariff update.
enum class TarifHerkunft { Manuell, Automatisch };

// One time zone of a tariff. Zones are whole hours; their order in the file
// decides which price wins where zones overlap.
struct Tarifzone {
  quint8 Von = 0;
  quint8 Bis = 24;
  float Pfennig = 0.0f;  // per minute, hundredths of the currency unit
  bool Wochenende = false;

  friend bool operator==(const Tarifzone&, const Tarifzone&) = default;
};

// What a tariff file holds. Amounts in currency units are Grundgebuehr and
// Mindestumsatz; Volumenkosten, Gespraechsgrundgebuehr and the zones' prices
// are hundredths ("Pfennig"), whatever the currency sign.
struct Tarif {
  QString Anbieter;
  QString Tarifname;
  TarifHerkunft Herkunft = TarifHerkunft::Manuell;

  float Grundgebuehr = 0.0f;
  float Mindestumsatz = 0.0f;
  QString Region = QStringLiteral("regional");
  QString Anmeldung = QStringLiteral("nicht nötig");

  // Lines the editor doesn't show; they go back into the file as they came.
  QString Gueltigkeit = QStringLiteral("k.A.");
  QString Einwahlnummer = QStringLiteral("k.A.");
  QString Username = QStringLiteral("k.A.");
  QString Password = QStringLiteral("k.A.");
  QString Sekundengenau = QStringLiteral("Nein");
  QString Sekundenschritte = QStringLiteral("1");

  QString Takt = QStringLiteral("60/60");  // verbatim, see ParseTakt
  bool Flatrate = false;
  bool Volumenabrechnung = false;
  bool Kanalbuendelung = false;

  float Volumenkosten = 0.0f;   // per volume unit
  float Volumeneinheit = 1.0f;  // megabytes
  double Volumengrenze = 0.0;   // free megabytes a month, 0 = none
  double Freiminuten = 0.0;     // free minutes a month
  float Gespraechsgrundgebuehr = 0.0f;

  QList<Tarifzone> Zonen;

  friend bool operator==(const Tarif&, const Tarif&) = default;
};

}  // namespace minutor
