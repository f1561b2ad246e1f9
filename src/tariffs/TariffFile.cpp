#include "tariffs/TariffFile.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/Names.h"
#include "frame/datadir/NumberText.h"
#include "tariffs/TariffLines.h"
#include "tariffs/TariffNames.h"

namespace minutor {

namespace {

using namespace tarifkey;

QString CarriedText(const QByteArray& value) {
  return value.isEmpty() ? QStringLiteral("k.A.") : FromAnsi(value);
}

QByteArray CarriedLine(QByteArrayView key, const QString& value) {
  return key.toByteArray() + (value.isEmpty() ? QByteArray("k.A.") : ToAnsi(value));
}

QByteArray Line(QByteArrayView key, const QString& value) { return key.toByteArray() + ToAnsi(value); }

QByteArray JaNein(QByteArrayView key, bool value) { return key.toByteArray() + (value ? "Ja" : "Nein"); }

QByteArray Number(QByteArrayView key, float value) { return key.toByteArray() + ToAnsi(GeneralText(value)); }

QByteArray Number(QByteArrayView key, double value) { return key.toByteArray() + ToAnsi(GeneralText(value)); }

void ReadHeadLine(const QByteArray& line, Tarif& tarif) {
  auto value = [&](QByteArrayView key) { return line.mid(key.size()); };
  if (line.startsWith(kGrundgebuehr)) {
    tarif.Grundgebuehr = ParseBetrag(value(kGrundgebuehr));
  } else if (line.startsWith(kRegion)) {
    tarif.Region = FromAnsi(value(kRegion));
  } else if (line.startsWith(kGueltigkeit)) {
    tarif.Gueltigkeit = CarriedText(value(kGueltigkeit));
  } else if (line.startsWith(kAnmeldung)) {
    tarif.Anmeldung = FromAnsi(value(kAnmeldung));
  } else if (line.startsWith(kEinwahlnummer)) {
    tarif.Einwahlnummer = CarriedText(value(kEinwahlnummer));
  } else if (line.startsWith(kUsername)) {
    tarif.Username = CarriedText(value(kUsername));
  } else if (line.startsWith(kPassword)) {
    tarif.Password = CarriedText(value(kPassword));
  } else if (line.startsWith(kFlatrate)) {
    tarif.Flatrate = IsJa(value(kFlatrate));
  } else if (line.startsWith(kVolumenabrechnung)) {
    tarif.Volumenabrechnung = IsJa(value(kVolumenabrechnung));
  } else if (line.startsWith(kVolumenkosten)) {
    tarif.Volumenkosten = ParseBetrag(value(kVolumenkosten));
  } else if (line.startsWith(kVolumeneinheit)) {
    tarif.Volumeneinheit = ParseBetrag(value(kVolumeneinheit));
  } else if (line.startsWith(kVolumengrenze)) {
    tarif.Volumengrenze = LeadingNumber(value(kVolumengrenze));
  } else if (line.startsWith(kMindestumsatz)) {
    tarif.Mindestumsatz = ParseBetrag(value(kMindestumsatz));
  } else if (line.startsWith(kFreiminuten)) {
    tarif.Freiminuten = LeadingNumber(value(kFreiminuten));
  } else if (line.startsWith(kKanalbuendelung)) {
    tarif.Kanalbuendelung = IsJa(value(kKanalbuendelung));
  } else if (line.startsWith(kTakt)) {
    tarif.Takt = FromAnsi(value(kTakt));
  } else if (line.startsWith(kSekundengenau)) {
    tarif.Sekundengenau = FromAnsi(value(kSekundengenau));
  } else if (line.startsWith(kSekundenschritte)) {
    tarif.Sekundenschritte = FromAnsi(value(kSekundenschritte));
  } else if (line.startsWith(kGespraechsgrundgebuehr)) {
    tarif.Gespraechsgrundgebuehr = ParseBetrag(value(kGespraechsgrundgebuehr));
  }
}

// The six lines of a zone, values cut out by position.
std::optional<Tarifzone> ReadZone(const QList<QByteArray>& lines, qsizetype first) {
  const QByteArray tag = ValueBehind(lines[first + 5], kWochenende.size());
  const bool weekend = EqualsLower(tag, "ja");
  if (!weekend && !EqualsLower(tag, "nein")) {
    return std::nullopt;
  }
  Tarifzone zone;
  zone.Von = RoundToByte(LeadingNumber(ValueBehind(lines[first + 1], kVon.size())));
  zone.Bis = RoundToByte(LeadingNumber(ValueBehind(lines[first + 2], kBis.size())));
  zone.Pfennig = ParseBetrag(ValueBehind(lines[first + 3], kPfennig.size()));
  zone.Wochenende = weekend;
  return zone;
}

void AppendZone(QList<QByteArray>& lines, const QString& tarifname, const Tarifzone& zone) {
  lines.append(Line(kZone, tarifname));
  lines.append(Number(kVon, static_cast<double>(zone.Von)));
  lines.append(Number(kBis, static_cast<double>(zone.Bis)));
  lines.append(Number(kPfennig, zone.Pfennig));
  lines.append(kEinheit.toByteArray() + "60");
  lines.append(JaNein(kWochenende, zone.Wochenende));
}

}  // namespace

std::optional<Tarif> ReadTarif(const DataDir& dir, const QString& file) {
  const auto lines = ReadTarifLines(dir, file);
  if (!lines) {
    return std::nullopt;
  }
  Tarif tarif;
  // A file without these lines leaves them empty, and so they are written back.
  tarif.Sekundengenau.clear();
  tarif.Sekundenschritte.clear();
  tarif.Herkunft = GetHerkunft(file);
  tarif.Anbieter = GetAnbieter(file).value_or(QString());
  tarif.Tarifname = GetTarifname(file);

  qsizetype zonesAt = -1;
  for (qsizetype i = 0; i < lines->size(); ++i) {
    const QByteArray& line = lines->at(i);
    if (zonesAt < 0 && line == kTarifzonen) {
      zonesAt = i + 1;
    }
    ReadHeadLine(line, tarif);
  }
  if (zonesAt >= 0) {
    for (qsizetype first = zonesAt; first + kZoneLines <= lines->size(); first += kZoneLines) {
      if (const auto zone = ReadZone(*lines, first)) {
        tarif.Zonen.append(*zone);
      }
    }
  }
  return tarif;
}

QList<QByteArray> TarifLines(const Tarif& tarif) {
  QList<QByteArray> lines;
  lines.append(kProviderdaten.toByteArray());
  lines.append(Line(kName, tarif.Anbieter + QStringLiteral(" - ") + tarif.Tarifname));
  lines.append(Number(kGrundgebuehr, tarif.Grundgebuehr));
  lines.append(Line(kRegion, tarif.Region));
  lines.append(CarriedLine(kGueltigkeit, tarif.Gueltigkeit));
  lines.append(Line(kAnmeldung, tarif.Anmeldung));
  lines.append(CarriedLine(kEinwahlnummer, tarif.Einwahlnummer));
  lines.append(CarriedLine(kUsername, tarif.Username));
  lines.append(CarriedLine(kPassword, tarif.Password));
  lines.append(JaNein(kFlatrate, tarif.Flatrate));
  lines.append(JaNein(kVolumenabrechnung, tarif.Volumenabrechnung));
  // The rate lookup reads these two by their place behind "Volumenabrechnung:".
  lines.append(Number(kVolumenkosten, tarif.Volumenkosten));
  lines.append(Number(kVolumeneinheit, tarif.Volumeneinheit));
  lines.append(Number(kVolumengrenze, tarif.Volumenabrechnung ? tarif.Volumengrenze : 0.0));
  lines.append(Number(kMindestumsatz, tarif.Mindestumsatz));
  lines.append(Number(kFreiminuten, tarif.Volumenabrechnung ? 0.0 : tarif.Freiminuten));
  lines.append(JaNein(kKanalbuendelung, tarif.Kanalbuendelung));
  lines.append(Line(kTakt, tarif.Takt));
  lines.append(Line(kSekundengenau, tarif.Sekundengenau));
  lines.append(Line(kSekundenschritte, tarif.Sekundenschritte));
  lines.append(Number(kGespraechsgrundgebuehr, tarif.Gespraechsgrundgebuehr));
  lines.append(QByteArray());
  lines.append(kTarifzonen.toByteArray());
  if (tarif.Zonen.isEmpty()) {
    AppendZone(lines, tarif.Tarifname, Tarifzone{0, 24, 0.0f, false});
    AppendZone(lines, tarif.Tarifname, Tarifzone{0, 24, 0.0f, true});
  } else {
    for (const Tarifzone& zone : tarif.Zonen) {
      AppendZone(lines, tarif.Tarifname, zone);
    }
  }
  return lines;
}

bool WriteTarif(const DataDir& dir, const Tarif& tarif) {
  if (tarif.Anbieter.isEmpty() || tarif.Tarifname.isEmpty() || !IsValidName(tarif.Anbieter) ||
      !IsValidName(tarif.Tarifname)) {
    return false;
  }
  if (!dir.MakeDir(QStringLiteral("Tarife"))) {
    return false;
  }
  return dir.WriteLines(TarifPfad(TelDateiname(tarif.Anbieter, tarif.Tarifname)), TarifLines(tarif));
}

QString TelDateiname(const QString& anbieter, const QString& tarifname) {
  return anbieter + QStringLiteral(" - ") + tarifname + QStringLiteral(".tel");
}

float PfennigAusBetrag(QStringView betrag) { return ParseBetrag(betrag) * 100.0f; }

}  // namespace minutor
