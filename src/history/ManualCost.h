#pragma once

#include "tariffs/Tarif.h"

#include <QDate>
#include <QList>
#include <QString>

#include <optional>

namespace minutor {

class DataDir;

// The estimate of a past connection's cost that manual entry makes. It steps
// through the connection one charging step at a time and prices each step by
// a zone table of its own reading; it is much simpler than the live rate
// lookup and gives other results, which users know from the dialog.

// The zones of a tariff file in file order, and the step length in seconds
// (the number behind the "/" of "Takt:").
struct TarifZones {
  QList<Tarifzone> zones;
  qint16 takt = 0;
};

// A file that can't be read gives no zones and step 0.
TarifZones LoadTarifZones(const DataDir& dir, const QString& fileName);

// hours x 3600 + minutes x 60 + seconds of a clock text; a missing part
// counts 0.
qint64 DurationToSeconds(QStringView text);

// The price of one step beginning at `timeOfDay` (a fraction of the day,
// noon is 0.5) on `date`. The fraction is compared with the zones' whole
// hours as it stands, so only zones that start at hour 0 ever match; the
// last matching zone of the day's kind wins, and none gives 0.
float GetZoneRate(const TarifZones& zones, double timeOfDay, const QDate& date);

struct ManualCost {
  float cost = 0;               // hundredths
  std::optional<qint64> units;  // steps, unless the step is one second
};

// The estimate for a connection of `seconds` from `date` and `start` (the
// dialog's texts) with a tariff file. nullopt when date or start can't be
// read, or when the connection is too long to step through (the field then
// keeps its value).
std::optional<ManualCost> ComputeManualCost(const DataDir& dir, const QString& tariffFile,
                                            const QString& date, const QString& start, qint64 seconds);

}  // namespace minutor
