#pragma once

#include "frame/datadir/DataDir.h"

#include <QDateTime>
#include <QString>

#include <array>
#include <optional>

namespace minutor {

// A connection of the history as the meter saw it.
struct PastConnection {
  QDateTime start;
  qint64 seconds = 0;  // the meter's ticks
  double bytes = 0;    // received and sent
};

struct RepricedConnection {
  float kosten = 0;   // the meter's cost at the end, free units left out
  double amount = 0;  // what the record would hold: 0 within the free allowance
};

// Prices past connections under one tariff as the meter would have charged
// them, with neither holiday nor channel bundling: fee per connection, the
// opening unit, a unit each time its length has run out at the price of the
// hour, units within the month's free time or free transfer left uncharged,
// and for a volume tariff the units of the record's bytes (counted as there
// from the first second, one unit a second at most) with the paid rest carried
// to the next connection.
//
// The meter's steps are followed unit by unit, not second by second, and the
// hourly prices are looked up once per weekday and hour, so that a long
// history prices quickly. Connections must come in the order of their start:
// the free allowance and the carry-over run on from one to the next. The
// history starts without carry-over.
class TariffRepricer {
 public:
  TariffRepricer(const DataDir& dir, QString file);

  RepricedConnection Next(const PastConnection& connection);

 private:
  RepricedConnection TimeCost(const PastConnection& connection, const QString& restfrei);
  RepricedConnection VolumeCost(const PastConnection& connection, const QString& restfrei);
  // GetTarifPreis at `moment`, asked once per weekday, hour and whether the
  // moment is the hour's first second.
  double PriceAt(const QDateTime& moment);
  // The free allowance left at the start of the connection, as Restfrei.
  QString Restfrei(const PastConnection& connection);
  void UseAllowance(const PastConnection& connection);

  const DataDir& dir_;
  QString file_;
  bool volume_ = false;
  float fee_ = 0;
  qint16 ersttakt_ = 0;
  float takt_ = 0;           // seconds, or kilobytes of a volume unit
  float volumePrice_ = 0;    // currency units a volume unit
  double freeMinutes_ = 0;   // a month
  double freeTransfer_ = 0;  // megabytes a month
  std::array<std::optional<double>, 7 * 24 * 2> prices_{};

  int month_ = -1;       // year x 12 + month of the allowance below
  QString minutesLeft_;  // clock text
  double transferLeft_ = 0;
  float carry_ = 0;  // kilobytes of the last paid volume unit
};

// The amount a record holds for a final cost: the label's three decimals,
// then the record's two.
double RecordAmount(float kosten);

// The meter's duration text of a number of seconds, "HH:MM:SS".
QString DauerText(qint64 seconds);

}  // namespace minutor
