#include "history/ManualCost.h"

#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"

#include <QTime>

#include <algorithm>
#include <limits>

namespace minutor {

namespace {

constexpr int kSecondsPerDay = 86400;

// More steps than a connection of years at one-second steps; a duration
// beyond it is a typing slip, not a connection.
constexpr qint64 kMaxSteps = 100'000'000;

quint8 HourOf(const QByteArray& line, int from) {
  const double value = LeadingNumber(line.mid(from));
  return value >= 0 && value <= 255 ? static_cast<quint8>(value) : 0;
}

std::optional<int> SecondsOfDay(const QString& text) {
  const QStringList parts = text.trimmed().split(QLatin1Char(':'));
  if (parts.size() < 2 || parts.size() > 3) {
    return std::nullopt;
  }
  bool hourOk = false;
  bool minuteOk = false;
  bool secondOk = parts.size() == 2;
  const int hour = parts[0].trimmed().toInt(&hourOk);
  const int minute = parts[1].trimmed().toInt(&minuteOk);
  const int second = parts.size() == 3 ? parts[2].trimmed().toInt(&secondOk) : 0;
  if (!hourOk || !minuteOk || !secondOk || !QTime::isValid(hour, minute, second)) {
    return std::nullopt;
  }
  return hour * 3600 + minute * 60 + second;
}

}  // namespace

TarifZones LoadTarifZones(const DataDir& dir, const QString& fileName) {
  TarifZones result;
  const auto lines = dir.ReadLines(QStringLiteral("Tarife/") + fileName);
  if (!lines) {
    return result;
  }
  qsizetype i = 0;
  for (; i < lines->size() && lines->at(i) != "[Tarifzonen]"; ++i) {
    const QByteArray& line = lines->at(i);
    if (line.startsWith("Takt:")) {
      const double takt = LeadingNumber(line.mid(line.indexOf('/') + 1));
      result.takt = static_cast<qint16>(std::clamp(takt, 0.0, double(std::numeric_limits<qint16>::max())));
    }
  }
  // Six lines a zone: Zone, Von, Bis, Pfennig, Einheit, Wochenende. The rate
  // is always per minute, whatever "Einheit:" says.
  for (i += 1; i + 5 < lines->size(); i += 6) {
    Tarifzone zone;
    zone.Von = HourOf(lines->at(i + 1), 4);
    zone.Bis = HourOf(lines->at(i + 2), 4);
    zone.Pfennig = ParseBetrag(lines->at(i + 3).mid(8));
    zone.Wochenende = FromAnsi(lines->at(i + 5).mid(11)).toLower() == QLatin1String("ja");
    result.zones.append(zone);
  }
  return result;
}

qint64 DurationToSeconds(QStringView text) {
  const auto first = text.indexOf(QLatin1Char(':'));
  const auto second = first < 0 ? -1 : text.indexOf(QLatin1Char(':'), first + 1);
  const double hours = LeadingNumber(first < 0 ? text : text.left(first));
  const double minutes = first < 0 ? 0 : LeadingNumber(text.mid(first + 1));
  const double seconds = second < 0 ? 0 : LeadingNumber(text.mid(second + 1));
  return static_cast<qint64>(hours) * 3600 + static_cast<qint64>(minutes) * 60 + static_cast<qint64>(seconds);
}

float GetZoneRate(const TarifZones& zones, double timeOfDay, const QDate& date) {
  float stepCost = 0;
  const bool weekend = date.dayOfWeek() > 5;
  for (const Tarifzone& zone : zones.zones) {
    if (zone.Wochenende != weekend) {
      continue;
    }
    if (zone.Von <= timeOfDay && zone.Bis >= timeOfDay) {
      stepCost = zone.Pfennig / 60.0F * static_cast<float>(zones.takt);
    }
  }
  return stepCost;
}

std::optional<ManualCost> ComputeManualCost(const DataDir& dir, const QString& tariffFile,
                                            const QString& date, const QString& start, qint64 seconds) {
  const TarifZones zones = LoadTarifZones(dir, tariffFile);
  if (zones.takt <= 0) {
    return ManualCost{};
  }
  const QDate startDate = ParseShortDate(date);
  const std::optional<int> startSecond = SecondsOfDay(start);
  if (!startDate.isValid() || !startSecond || seconds / zones.takt > kMaxSteps) {
    return std::nullopt;
  }
  ManualCost result;
  qint64 units = 0;
  QDate day = startDate;
  qint64 second = *startSecond;
  for (qint64 elapsed = 0; elapsed < seconds; elapsed += zones.takt) {
    result.cost += GetZoneRate(zones, static_cast<double>(second) / kSecondsPerDay, day);
    ++units;
    second += zones.takt;
    if (second >= kSecondsPerDay) {
      day = day.addDays(second / kSecondsPerDay);
      second %= kSecondsPerDay;
    }
  }
  if (zones.takt > 1) {
    result.units = units;
  }
  return result;
}

}  // namespace minutor
