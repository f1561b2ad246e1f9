#include "tariffs/ChargeSequence.h"

#include "tariffs/TariffLines.h"
#include "tariffs/TariffPeeks.h"

namespace minutor {

namespace {

float Multiplier(bool kanalbuendelung) { return kanalbuendelung ? 2.0f : 1.0f; }

}  // namespace

ChargeSequence::ChargeSequence(DataDir dir, QString file) : dir_(std::move(dir)), file_(std::move(file)) {}

void ChargeSequence::Start(const QDateTime& moment, bool feiertagAktiv, bool kanalbuendelung) {
  const float m = Multiplier(kanalbuendelung);
  kosten_ = GetGrundgebuehrJeVerbindung(dir_, file_) * m;
  tarifpreis_ = ToSingle(GetTarifPreis(dir_, file_, moment, feiertagAktiv));
  takt_ = ParseTakt(GetActualTakt(dir_, file_));
  einheitspreis_ = UnitCost(tarifpreis_, takt_.rest);
  kosten_ = m * einheitspreis_ + kosten_;
  kostenFrei_ = kosten_;
  taktLaenge_ = takt_.first;
  sekundenImTakt_ = 0;
  letzteStunde_ = 0;
}

bool ChargeSequence::Tick(const QDateTime& moment, bool feiertagAktiv, bool kanalbuendelung, bool freeLeft) {
  const int stunde = moment.time().hour();
  if (stunde != letzteStunde_) {
    einheitspreis_ = UnitCost(GetTarifPreis(dir_, file_, moment, feiertagAktiv), takt_.rest);
    letzteStunde_ = stunde;
  }
  bool charged = false;
  if (sekundenImTakt_ >= taktLaenge_) {
    const float m = Multiplier(kanalbuendelung);
    if (freeLeft) {
      kostenFrei_ = m * einheitspreis_ + kostenFrei_;
    } else {
      kosten_ = m * einheitspreis_ + kosten_;
      charged = true;
    }
    sekundenImTakt_ = 0;
    taktLaenge_ = CutToInt16(takt_.rest);
  }
  // The unit length is a 16-bit count, and the counter is reset on reaching
  // it, so this can't overflow.
  sekundenImTakt_ = static_cast<qint16>(sekundenImTakt_ + 1);
  return charged;
}

VolumenStart StartVolumen(const DataDir& dir, const QString& file, bool kanalbuendelung) {
  VolumenStart start;
  start.Kosten = GetGrundgebuehrJeVerbindung(dir, file) * Multiplier(kanalbuendelung);
  start.Tarifpreis = GetVolumenkosten(dir, file);
  start.Einheitspreis = start.Tarifpreis / 100.0f;
  start.Takt = GetVolumeneinheit(dir, file) * 1000.0f;
  return start;
}

}  // namespace minutor
