#include "history/TariffRepricer.h"

#include "desk/FreeAllowance.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/NumberText.h"
#include "tariffs/RateLookup.h"
#include "tariffs/TariffLines.h"
#include "tariffs/TariffPeeks.h"

#include <algorithm>
#include <cmath>

namespace minutor {

namespace {

const QString kNoAllowance = QStringLiteral("-");

QString TwoDigits(qint64 value) { return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0')); }

int MonthOf(const QDate& date) { return date.year() * 12 + date.month(); }

}  // namespace

QString DauerText(qint64 seconds) {
  return TwoDigits(seconds / 3600) + QLatin1Char(':') + TwoDigits(seconds % 3600 / 60) + QLatin1Char(':') +
         TwoDigits(seconds % 60);
}

double RecordAmount(float kosten) {
  const float shown = ParseBetrag(FixedText(kosten, 3));
  return ParseBetrag(FixedText(shown, 2));
}

TariffRepricer::TariffRepricer(const DataDir& dir, QString file) : dir_(dir), file_(std::move(file)) {
  volume_ = IsVolumentarif(dir_, file_);
  fee_ = GetGrundgebuehrJeVerbindung(dir_, file_);
  if (volume_) {
    takt_ = GetVolumeneinheit(dir_, file_) * 1000.0f;
    volumePrice_ = GetVolumenkosten(dir_, file_) / 100.0f;
  } else {
    const Takt takt = ParseTakt(GetActualTakt(dir_, file_));
    ersttakt_ = takt.first;
    takt_ = takt.rest;
  }
  freeMinutes_ = GetTarifFreiminuten(dir_, file_);
  freeTransfer_ = freeMinutes_ != 0 ? 0 : GetTarifVolumengrenze(dir_, file_) / 1000;
}

RepricedConnection TariffRepricer::Next(const PastConnection& connection) {
  const QString restfrei = Restfrei(connection);
  UseAllowance(connection);
  return volume_ ? VolumeCost(connection, restfrei) : TimeCost(connection, restfrei);
}

QString TariffRepricer::Restfrei(const PastConnection& connection) {
  if (freeMinutes_ == 0 && freeTransfer_ == 0) {
    return kNoAllowance;
  }
  const int month = MonthOf(connection.start.date());
  if (month != month_) {
    month_ = month;
    minutesLeft_ = FreeMinutesText(freeMinutes_);
    transferLeft_ = freeTransfer_;
  }
  return freeMinutes_ != 0 ? minutesLeft_ : GeneralText(transferLeft_);
}

void TariffRepricer::UseAllowance(const PastConnection& connection) {
  // Free minutes count the durations, free transfer the bytes of the
  // connections before in the month.
  if (freeMinutes_ != 0) {
    minutesLeft_ = ZeitDifferenz(minutesLeft_, DauerText(connection.seconds));
  } else if (freeTransfer_ != 0) {
    transferLeft_ -= connection.bytes / 1000000.0;
  }
}

double TariffRepricer::PriceAt(const QDateTime& moment) {
  const QTime time = moment.time();
  const bool onTheHour = time.minute() == 0 && time.second() == 0;
  // Zones are whole hours, so within an hour only its first second, which
  // belongs to both neighbouring zones, can be priced differently.
  std::optional<double>& price =
      prices_[static_cast<std::size_t>(((moment.date().dayOfWeek() - 1) * 24 + time.hour()) * 2 + onTheHour)];
  if (!price) {
    price = GetTarifPreis(dir_, file_, moment, false);
  }
  return *price;
}

RepricedConnection TariffRepricer::TimeCost(const PastConnection& connection, const QString& restfrei) {
  const qint64 ticks = std::max<qint64>(1, connection.seconds);
  const double startPrice = PriceAt(connection.start);
  // The opening unit is priced from the price held in single precision; the
  // first tick prices the hour afresh, except in hour 0, where the meter's
  // last hour already matches.
  RepricedConnection result;
  result.kosten = UnitCost(ToSingle(startPrice), takt_) + fee_;
  const float firstHourPrice = connection.start.time().hour() == 0 ? UnitCost(ToSingle(startPrice), takt_)
                                                                   : UnitCost(startPrice, takt_);

  // The charge of tick t falls when the seconds since the last charge reach
  // the length of the running unit: first after Ersttakt seconds, then every
  // Takt seconds (each tick when that is 1 or less).
  const qint64 step = std::max<qint64>(1, RoundToInt16(takt_));
  qint64 tick = std::max<qint64>(1, qint64{ersttakt_} + 1);

  // Units charged while free time is left go to the shadow cost. Free time
  // is left while ZeitDifferenz(restfrei, duration) isn't negative, that is
  // while the remaining seconds less the duration round to 0 or more.
  qint64 lastFree = 0;
  if (restfrei != kNoAllowance) {
    const double rest = ClockTextSeconds(restfrei);
    qint64 low = 1;
    qint64 high = ticks;
    while (low <= high) {
      const qint64 middle = low + (high - low) / 2;
      if (std::llround(rest - static_cast<double>(middle)) >= 0) {
        lastFree = middle;
        low = middle + 1;
      } else {
        high = middle - 1;
      }
    }
  }
  if (tick <= lastFree) {
    tick += (lastFree - tick) / step * step + step;
  }

  // A new hour is priced at its first tick, and the price holds to its last.
  while (tick <= ticks) {
    const QDateTime moment = connection.start.addSecs(tick - 1);
    const QTime time = moment.time();
    const int intoHour = time.minute() * 60 + time.second();
    const qint64 lastOfHour = std::min(ticks, tick + 3599 - intoHour);
    const bool firstHour =
        moment.date() == connection.start.date() && time.hour() == connection.start.time().hour();
    const float price = firstHour ? firstHourPrice : UnitCost(PriceAt(moment.addSecs(-intoHour)), takt_);
    for (; tick <= lastOfHour; tick += step) {
      result.kosten = price + result.kosten;
    }
  }
  result.amount = lastFree >= ticks ? 0 : RecordAmount(result.kosten);
  return result;
}

RepricedConnection TariffRepricer::VolumeCost(const PastConnection& connection, const QString& restfrei) {
  const qint64 ticks = std::max<qint64>(1, connection.seconds);
  RepricedConnection result;
  result.kosten = fee_;
  if (takt_ <= 0 || connection.bytes <= 0) {
    // A flat rate: the cost label is never set, and the carry-over is lost.
    carry_ = 0;
    return result;
  }
  const bool free =
      restfrei != kNoAllowance &&
      !FixedText(LeadingNumber(restfrei) - connection.bytes / 1000000.0, 3).startsWith(QLatin1Char('-'));
  float kostenFrei = 0;
  float einheitRest = 0;
  qint32 einheiten = 0;
  for (qint64 tick = 1; tick <= ticks; ++tick) {
    einheitRest = ToSingle(static_cast<double>(carry_) - connection.bytes / 1000.0 +
                           static_cast<double>(takt_ * static_cast<float>(einheiten)));
    if (einheitRest > 0) {
      break;
    }
    einheitRest = einheitRest + takt_;
    einheiten += 1;
    if (free) {
      kostenFrei = kostenFrei + volumePrice_;
    } else {
      result.kosten = result.kosten + volumePrice_;
    }
  }
  // The rest goes through the carry-over file's text.
  carry_ = ParseBetrag(GeneralText(einheitRest));
  result.amount = kostenFrei <= 0 ? RecordAmount(result.kosten) : 0;
  return result;
}

}  // namespace minutor
