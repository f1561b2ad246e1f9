#include "tariffs/RateLookup.h"

#include "frame/datadir/NumberText.h"
#include "tariffs/TariffLines.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace minutor {

namespace {

using namespace tarifkey;

constexpr qint64 kSecondsPerHour = 3600;
constexpr qint64 kLastSecondOfDay = 24 * kSecondsPerHour - 1;

// Zone hours are whole; anything far outside the day is kept outside it.
qint64 WholeHour(double hours) {
  if (std::isnan(hours)) {
    return 0;
  }
  return static_cast<qint64>(std::nearbyint(std::clamp(hours, -1000.0, 1000.0)));
}

qint64 ZoneStart(double hours) {
  const qint64 hour = WholeHour(hours);
  return hour == 24 ? 0 : hour * kSecondsPerHour;
}

qint64 ZoneEnd(double hours) {
  const qint64 hour = WholeHour(hours);
  return hour == 24 ? kLastSecondOfDay : hour * kSecondsPerHour;
}

// Unlike every other amount in a tariff file, the zone price goes through the
// locale's own number conversion, which refuses anything but a plain number.
// The files this program writes hold the locale's decimal sign and fetched
// ones may hold a point, so both signs count as decimal marks here.
std::optional<double> ConvertPfennig(const QByteArray& text) {
  QByteArray number = TrimBlanks(text);
  number.replace(',', '.');
  bool ok = false;
  const double value = number.toDouble(&ok);
  if (!ok || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

qint64 SecondOfDay(const QDateTime& moment) {
  const QTime time = moment.time();
  return time.isValid() ? time.hour() * kSecondsPerHour + time.minute() * 60 + time.second() : 0;
}

}  // namespace

double GetTarifPreis(const DataDir& dir, const QString& file, const QDateTime& moment, bool feiertagAktiv) {
  if (file.isEmpty() || !dir.FileExists(TarifPfad(file))) {
    return 0.0;
  }
  const auto read = ReadTarifLines(dir, file);
  if (!read) {
    return 0.0;
  }
  const QList<QByteArray>& lines = *read;

  qsizetype zonesAt = -1;
  for (qsizetype i = 0; i < lines.size(); ++i) {
    if (EqualsLower(lines[i], "volumenabrechnung:ja")) {
      if (i + 1 >= lines.size()) {
        return 0.0;
      }
      return ParseBetrag(ValueBehind(lines[i + 1], kVolumenkosten.size()));
    }
    if (lines[i] == kTarifzonen) {
      zonesAt = i + 1;
      break;
    }
  }
  if (zonesAt < 0) {
    return 0.0;
  }

  const qint64 now = SecondOfDay(moment);
  const int dow = moment.date().dayOfWeek();  // Monday = 1
  double preis = 0.0;
  // No early exit: a later zone overrides an earlier one, which is how a
  // full hour falls to the zone that starts there, and how a holiday zone
  // standing behind a working-day zone takes over.
  for (qsizetype first = zonesAt; first + kZoneLines <= lines.size(); first += kZoneLines) {
    const qint64 von = ZoneStart(LeadingNumber(ValueBehind(lines[first + 1], kVon.size())));
    const qint64 bis = ZoneEnd(LeadingNumber(ValueBehind(lines[first + 2], kBis.size())));
    const bool inForce = von == bis || (von <= now && now <= bis);
    if (!inForce) {
      continue;
    }
    const QByteArray tag = ValueBehind(lines[first + 5], kWochenende.size());
    const bool applies = (tag == "Ja" && (feiertagAktiv || dow > 5)) || (tag == "Nein" && dow < 6);
    if (!applies) {
      continue;
    }
    const auto pfennig = ConvertPfennig(ValueBehind(lines[first + 3], kPfennig.size()));
    if (!pfennig) {
      return preis;
    }
    preis = *pfennig;
  }
  return preis;
}

Takt ParseTakt(QStringView text) {
  Takt takt;
  takt.first = RoundToInt16(LeadingNumber(text));
  const qsizetype slash = text.indexOf(QLatin1Char('/'));
  takt.rest = ToSingle(LeadingNumber(slash < 0 ? text : text.mid(slash + 1)));
  return takt;
}

float UnitCost(double tarifpreis, float rest) { return ToSingle(tarifpreis * rest / 60.0 / 100.0); }

}  // namespace minutor
