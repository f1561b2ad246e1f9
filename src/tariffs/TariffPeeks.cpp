#include "tariffs/TariffPeeks.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/NumberText.h"
#include "tariffs/TariffLines.h"

namespace minutor {

namespace {

using namespace tarifkey;

// The lines of a file whose existence is tested first, as the monthly
// allowance readers do.
std::optional<QList<QByteArray>> ConfirmedLines(const DataDir& dir, const QString& file) {
  if (file.isEmpty() || !dir.FileExists(TarifPfad(file))) {
    return std::nullopt;
  }
  return ReadTarifLines(dir, file);
}

}  // namespace

bool IsVolumentarif(const DataDir& dir, const QString& file) {
  bool volume = false;
  if (const auto lines = ReadTarifLines(dir, file)) {
    for (const QByteArray& line : *lines) {
      if (line.startsWith(kVolumenabrechnung)) {
        volume = IsJa(line.mid(kVolumenabrechnung.size()));
      }
    }
  }
  return volume;
}

float GetVolumenkosten(const DataDir& dir, const QString& file) {
  float kosten = 0.0f;
  if (const auto lines = ReadTarifLines(dir, file)) {
    for (const QByteArray& line : *lines) {
      if (line.startsWith(kVolumenkosten)) {
        kosten = ParseBetrag(line.mid(kVolumenkosten.size()));
      }
    }
  }
  return kosten;
}

float GetVolumeneinheit(const DataDir& dir, const QString& file) {
  float einheit = 0.0f;
  if (const auto lines = ReadTarifLines(dir, file)) {
    for (const QByteArray& line : *lines) {
      if (StartsWithLower(line, "volumeneinheit:")) {
        einheit = ParseBetrag(line.mid(kVolumeneinheit.size()));
      }
    }
  }
  return einheit;
}

float GetGrundgebuehrJeVerbindung(const DataDir& dir, const QString& file) {
  float gebuehr = 0.0f;
  if (const auto lines = ReadTarifLines(dir, file)) {
    for (const QByteArray& line : *lines) {
      if (line.startsWith(kGespraechsgrundgebuehr)) {
        gebuehr = ParseBetrag(line.mid(kGespraechsgrundgebuehr.size())) / 100.0f;
      }
    }
  }
  return gebuehr;
}

double GetTarifFreiminuten(const DataDir& dir, const QString& file) {
  if (const auto lines = ConfirmedLines(dir, file)) {
    for (const QByteArray& line : *lines) {
      if (line.startsWith(kFreiminuten)) {
        return LeadingNumber(line.mid(kFreiminuten.size()));
      }
    }
  }
  return 0.0;
}

double GetTarifVolumengrenze(const DataDir& dir, const QString& file) {
  if (const auto lines = ConfirmedLines(dir, file)) {
    for (const QByteArray& line : *lines) {
      if (StartsWithLower(line, "volumengrenze:")) {
        return LeadingNumber(line.mid(kVolumengrenze.size())) * 1000.0;
      }
    }
  }
  return 0.0;
}

QString GetActualTakt(const DataDir& dir, const QString& file) {
  QByteArray takt;
  if (const auto lines = ReadTarifLines(dir, file)) {
    for (const QByteArray& line : *lines) {
      if (line.startsWith(kTakt)) {
        takt = line.mid(kTakt.size());
      }
    }
  }
  return FromAnsi(takt);
}

QString GetPreisEinheit(const DataDir& dir, const QString& file) {
  const QString minute = QStringLiteral("Minute");
  const auto lines = ReadTarifLines(dir, file);
  if (!lines) {
    return minute;
  }
  for (qsizetype i = 0; i < lines->size(); ++i) {
    if (EqualsLower(lines->at(i), "volumenabrechnung:ja")) {
      // Taken to be "Volumeneinheit:", two lines down in every file we write.
      if (i + 2 >= lines->size()) {
        return minute;
      }
      const float megabytes = ParseBetrag(ValueBehind(lines->at(i + 2), kVolumeneinheit.size()));
      return GeneralText(megabytes) + QStringLiteral("MB");
    }
  }
  return minute;
}

}  // namespace minutor
