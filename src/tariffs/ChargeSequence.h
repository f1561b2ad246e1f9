#pragma once

#include "frame/datadir/DataDir.h"
#include "tariffs/RateLookup.h"

#include <QDateTime>
#include <QString>

namespace minutor {

// The charging of a time tariff over one connection, driven by the meter once
// a second. Costs are single-precision sums in currency units, unrounded;
// with channel bundling every charge counts twice.
class ChargeSequence {
 public:
  ChargeSequence(DataDir dir, QString file);

  // The start of recording: the fee per connection, then at once the price of
  // one unit, whatever the length of the first unit. The shadow total starts
  // with the same amount.
  void Start(const QDateTime& moment, bool feiertagAktiv, bool kanalbuendelung);

  // One second, before it is counted. On a new hour the unit price is read
  // anew from the file; once the running unit is full, one unit is charged,
  // to the shadow total while free time is left, else to the total. True when
  // a unit went to the total: budgets are checked then.
  bool Tick(const QDateTime& moment, bool feiertagAktiv, bool kanalbuendelung, bool freeLeft);

  float Kosten() const { return kosten_; }
  float KostenFrei() const { return kostenFrei_; }
  // The price per minute at the start, hundredths; it stays as it was when
  // the hour changes, only the unit price follows the new hour.
  float Tarifpreis() const { return tarifpreis_; }
  float Einheitspreis() const { return einheitspreis_; }
  const minutor::Takt& Takt() const { return takt_; }
  qint16 TaktLaenge() const { return taktLaenge_; }
  qint16 SekundenImTakt() const { return sekundenImTakt_; }

 private:
  DataDir dir_;
  QString file_;
  minutor::Takt takt_;
  float tarifpreis_ = 0.0f;
  float einheitspreis_ = 0.0f;
  float kosten_ = 0.0f;
  float kostenFrei_ = 0.0f;
  qint16 taktLaenge_ = 0;
  qint16 sekundenImTakt_ = 0;
  // Starts at 0, so the first tick reads the price again unless it falls
  // into hour 0.
  int letzteStunde_ = 0;
};

// What a volume tariff's meter starts with. Units are charged by the meter as
// the traffic passes them, once each, bundling or not.
struct VolumenStart {
  float Kosten = 0.0f;         // the fee per connection, doubled with bundling
  float Tarifpreis = 0.0f;     // "Volumenkosten:", hundredths per unit
  float Einheitspreis = 0.0f;  // currency units per unit
  float Takt = 0.0f;           // kilobytes per unit

  // A unit of no size: nothing is charged and the meter shows "Flatrate".
  bool IsFlatrate() const { return !(Takt > 0.0f); }
};

VolumenStart StartVolumen(const DataDir& dir, const QString& file, bool kanalbuendelung);

}  // namespace minutor
