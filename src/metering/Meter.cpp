#include "metering/Meter.h"

#include "desk/FreeAllowance.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/NumberText.h"
#include "metering/MeterHooks.h"
#include "metering/Prerun.h"
#include "metering/RecordingCheckpoint.h"
#include "metering/TrafficSource.h"
#include "tariffs/PriceTexts.h"
#include "tariffs/RateLookup.h"
#include "tariffs/TariffLines.h"
#include "tariffs/TariffPeeks.h"

#include <QLocale>

#include <algorithm>
#include <limits>

namespace minutor {

namespace {

const QString kNoAllowance = QStringLiteral("-");

QString TwoDigits(int value) { return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0')); }

// A byte count in the form "#,###,##0 Bytes", with the locale's separators.
QString BytesText(double bytes) { return QLocale().toString(bytes, 'f', 0) + QStringLiteral(" Bytes"); }

// A rate in kilobytes per second, "0.0"; the label holds no unit.
QString RateText(float bytesPerSecond) { return FixedText(static_cast<double>(bytesPerSecond) / 1000.0, 1); }

// The total as LetzteBytes keeps it. 64 bits, as the kernel counts: a long
// connection passes 2 GiB, and after a reset the labels must wait for the
// whole of the former total.
qint64 WholeBytes(double value) {
  constexpr double low = -0x1p63;
  constexpr double high = 0x1p63;
  if (value >= high) {
    return std::numeric_limits<qint64>::max();
  }
  return value >= low ? static_cast<qint64>(value) : std::numeric_limits<qint64>::min();
}

}  // namespace

Meter::Meter(Services& services, TrafficSource& traffic, MeterHooks& hooks)
    : services_(services), traffic_(traffic), hooks_(hooks) {}

void Meter::SetKanalbuendelung(bool on) {
  kanalbuendelung_ = on;
  services_.state.KanalbuendelungAktiv = on;
}

bool Meter::IsFreeLeft() const {
  return services_.state.Restfrei != kNoAllowance && !labels_.lblRestFrei.startsWith(QLatin1Char('-'));
}

void Meter::Counter_Start() {
  AppState& state = services_.state;
  const DataDir& dir = services_.dir;
  const QDateTime now = services_.clock.Now();
  MeterFields& f = fields_;

  kanalbuendelung_ = state.KanalbuendelungAktiv;

  DetectedConnection connection{labels_.lblConnectionName, labels_.lblConnectionSpeed, f.ConnectionHandle};
  hooks_.DetectConnection(connection);
  labels_.lblConnectionName = connection.name;
  labels_.lblConnectionSpeed = connection.device;
  f.ConnectionHandle = connection.handle;

  if (state.DayLimitOn) {
    // The month limit alone doesn't ask for the time left; it never did.
    hooks_.GetTimeLimit();
  }

  const QString tarif = state.AktuellerTarif;
  // The entry's tariff replaces the one chosen on the Overview, and so must
  // its allowance: another tariff's free minutes would bill a paid
  // connection as free.
  if (state.RestfreiTarif != tarif) {
    state.Restfrei = ComputeFreeAllowance(dir, tarif, now.date()).restfrei;
    state.RestfreiTarif = tarif;
  }
  // With channel bundling the fee per connection counts twice.
  f.Kosten = GetGrundgebuehrJeVerbindung(dir, tarif) * static_cast<float>(kanalbuendelung_ + 1);
  f.KostenFrei = 0;
  f.Einheiten = 0;
  f.EinheitRest = 0;
  f.VolumenVortrag = 0;
  f.LetzteStunde = 0;
  f.LetzteBytes = 0;
  f.LetzterTag = now.date();

  hooks_.LaunchPrograms();
  hooks_.GetBudget();

  EinheitTexte texte;
  if (!IsVolumentarif(dir, tarif)) {
    f.Tarifpreis = ToSingle(GetTarifPreis(dir, tarif, now, state.FeiertagAktiv));
    const minutor::Takt takt = ParseTakt(GetActualTakt(dir, tarif));
    f.Ersttakt = takt.first;
    f.Takt = takt.rest;
    f.Einheitspreis = UnitCost(f.Tarifpreis, f.Takt);
    // One unit of the following length is charged at once, however long the
    // first unit runs: with 60/1 the first minute costs one second's price.
    f.Kosten = static_cast<float>(kanalbuendelung_ + 1) * f.Einheitspreis + f.Kosten;
    f.KostenFrei = f.Kosten;
    f.TaktLaenge = f.Ersttakt;
    f.EinheitRest = f.Ersttakt;
    texte = ZeitEinheitTexte(f.Tarifpreis, f.Takt, f.Einheitspreis, state.Waehrung);
    labels_.lblRestFreiCaption = QStringLiteral("Restfreizeit:");
    f.IsVolumeRecording = false;
  } else {
    f.Tarifpreis = GetVolumenkosten(dir, tarif);
    f.Takt = GetVolumeneinheit(dir, tarif) * 1000.0f;
    f.Einheitspreis = f.Tarifpreis / 100.0f;
    if (f.Takt > 0) {
      f.VolumenVortrag = LoadPrerun(dir, tarif);
    }
    texte = VolumenEinheitTexte(f.Takt, f.Einheitspreis, state.Waehrung);
    labels_.lblRestFreiCaption = QStringLiteral("Restfreitransfer:");
    f.IsVolumeRecording = true;
  }
  labels_.lblEinheit = texte.lblEinheit;
  labels_.lblEuroProMinute = texte.lblEuroProMinute;

  state.RecordingActive = true;
  recording_ = true;
  if (f.TarifupdatePending || f.TimeSyncPending) {
    hooks_.StartServices();
  }
  if (kleinesFenster_) {
    hooks_.ShowSmallWindow();
  }

  labels_.lblStartzeit = LongTimeText(now.time());
  labels_.lblStartzeitTag = now.date().toString(QStringLiteral("ddMMyyyy"));
  labels_.lblTarifname = tarif.chopped(std::min<qsizetype>(4, tarif.size()));
  labels_.lblTarifnameTag = tarif;
  labels_.lblBenutzer = state.ActiveUser;

  timerStarter_ = true;
  hooks_.StartTimerStarter();
}

void Meter::TimerStarterTick() {
  if (!timerStarter_) {
    return;
  }
  timerStarter_ = false;
  // The timer is running before its first tick, so that a stop within that
  // tick leaves it stopped.
  if (!fields_.IsVolumeRecording) {
    rsTimer1_ = true;
    RSTimer1Tick();
  } else {
    rsTimer2_ = true;
    RSTimer2Tick();
  }
  hooks_.CheckBudget();
}

void Meter::Tick() {
  if (rsTimer1_) {
    RSTimer1Tick();
  } else if (rsTimer2_) {
    RSTimer2Tick();
  }
}

void Meter::RSTimer1Tick() {
  const AppState& state = services_.state;
  MeterFields& f = fields_;
  const QDateTime now = services_.clock.Now();
  ++ticks_;

  UpdateTraffic();
  CheckDayChange(now.date());

  // Zones begin on whole hours, so a new hour is the one moment at which
  // the price can change. The unit now running is charged at the new price;
  // the price shown and the length of the units stay as they were.
  if (f.LetzteStunde != now.time().hour()) {
    f.Einheitspreis =
        UnitCost(GetTarifPreis(services_.dir, state.AktuellerTarif, now, state.FeiertagAktiv), f.Takt);
    f.LetzteStunde = static_cast<quint8>(now.time().hour());
  }

  CountSecond();
  labels_.lblRestFrei = state.Restfrei != kNoAllowance ? ZeitDifferenz(state.Restfrei, labels_.lblDauer)
                                                       : QStringLiteral("keine");

  if (f.SekundenImTakt >= f.TaktLaenge) {
    const float bundling = static_cast<float>(kanalbuendelung_ + 1);
    if (IsFreeLeft()) {
      f.KostenFrei = bundling * f.Einheitspreis + f.KostenFrei;
    } else {
      f.Kosten = bundling * f.Einheitspreis + f.Kosten;
      hooks_.CheckBudget();
    }
    f.SekundenImTakt = 0;
    f.TaktLaenge = RoundToInt16(f.Takt);
  }

  const QString blankWaehrung = QLatin1Char(' ') + state.Waehrung;
  labels_.lblKosten =
      IsFreeLeft() ? QStringLiteral("0 (") + FixedText(f.KostenFrei, 3) + blankWaehrung + QLatin1Char(')')
                   : FixedText(f.Kosten, 3) + blankWaehrung;

  f.SekundenImTakt = static_cast<qint16>(f.SekundenImTakt + 1);

  // The units shown count down on their own; they don't follow the charges.
  if (f.TaktLaenge <= 1) {
    labels_.lblEinheiten = QStringLiteral("sek.genau");
  } else {
    f.EinheitRest = f.EinheitRest - 1;
    if (f.EinheitRest == 0) {
      f.Einheiten += 1;
      f.EinheitRest = f.Takt;
    }
    labels_.lblEinheiten = QString::number(f.Einheiten + 1) + QStringLiteral(" (") +
                           GeneralText(f.EinheitRest) + QStringLiteral("s)");
  }

  SaveCheckpoint();
  EndOfTick();
}

void Meter::RSTimer2Tick() {
  const AppState& state = services_.state;
  MeterFields& f = fields_;
  ++ticks_;

  UpdateTraffic();
  CheckDayChange(services_.clock.Now().date());
  CountSecond();

  labels_.lblRestFrei =
      state.Restfrei != kNoAllowance
          ? FixedText(LeadingNumber(state.Restfrei) - state.BytesTotal / 1000000.0, 3) + QStringLiteral("MB")
          : QStringLiteral("keiner");

  if (f.Takt <= 0 || state.BytesTotal <= 0) {
    labels_.lblEinheiten = QStringLiteral("Flatrate");
  } else {
    // Decimal kilobytes. At most one unit a tick: traffic of several units
    // in one second is charged over the following ticks.
    f.EinheitRest = ToSingle(static_cast<double>(f.VolumenVortrag) - state.BytesTotal / 1000.0 +
                             static_cast<double>(f.Takt * static_cast<float>(f.Einheiten)));
    if (f.EinheitRest <= 0) {
      f.EinheitRest = f.EinheitRest + f.Takt;
      f.Einheiten += 1;
      // Channel bundling doesn't double a volume unit.
      if (IsFreeLeft()) {
        f.KostenFrei = f.KostenFrei + f.Einheitspreis;
      } else {
        f.Kosten = f.Kosten + f.Einheitspreis;
        hooks_.CheckBudget();
      }
    }
    const QString blankWaehrung = QLatin1Char(' ') + state.Waehrung;
    labels_.lblKosten = f.KostenFrei <= 0 ? FixedText(f.Kosten, 3) + blankWaehrung
                                          : QStringLiteral("0 (") + FixedText(f.KostenFrei, 3) +
                                                blankWaehrung + QLatin1Char(')');
    labels_.lblEinheiten = f.Einheitspreis <= 0 ? QStringLiteral("0")
                                                : QString::number(f.Einheiten) + QStringLiteral(" (") +
                                                      FixedText(f.EinheitRest, 0) + QStringLiteral("KB)");
  }

  SaveCheckpoint();
  EndOfTick();
}

void Meter::Counter_Stop() {
  if (!recording_) {
    return;
  }
  AppState& state = services_.state;
  state.DialedByProgram = false;
  // A stop before the first tick leaves nothing to start.
  timerStarter_ = false;
  rsTimer1_ = false;
  // The checkpoint holds the final values while the record is written: a
  // crash in between still leaves the whole connection.
  SaveCheckpoint(true);
  const bool saved = writesFiles_ && SaveConnection(services_.dir, labels_.Record(), services_.prompter) !=
                                         SaveResult::Failed;
  if (saved) {
    hooks_.ConnectionSaved();
  }
  if (rsTimer2_) {
    if (writesFiles_) {
      SavePrerun(services_.dir, state.AktuellerTarif, fields_.EinheitRest);
    }
    rsTimer2_ = false;
  }
  // A record that couldn't be written stays in the checkpoint, and the next
  // start saves it.
  if (saved) {
    RemoveCheckpoint(services_.dir);
  }
  state.RecordingActive = false;
  recording_ = false;
  hooks_.RecordingStopped();
}

void Meter::UpdateTraffic() {
  AppState& s = services_.state;
  // One source on this system, always asked. A connection it can't count (no
  // interface known, or gone) reads as zero bytes: the labels say "unbekannt"
  // and a volume tariff is a flat rate, or, after traffic, they stand still.
  const TrafficCount count = traffic_.Read(fields_.ConnectionHandle).value_or(TrafficCount{});
  // The rate is the difference to the last tick, a tick being a second.
  s.BytesInPerSecond = static_cast<float>(count.received - s.BytesIn);
  s.BytesOutPerSecond = static_cast<float>(count.sent - s.BytesOut);
  s.BytesTotalPerSecond = s.BytesInPerSecond + s.BytesOutPerSecond;
  s.BytesIn = count.received;
  s.BytesOut = count.sent;
  s.BytesTotal = count.received + count.sent;
  // A counter that fell back (a reset) leaves the labels standing until it
  // has caught up again.
  if (static_cast<double>(fields_.LetzteBytes) > s.BytesTotal) {
    return;
  }
  fields_.LetzteBytes = WholeBytes(s.BytesTotal);
  if (s.BytesTotal == 0) {
    labels_.lblBytesIn = labels_.lblBytesOut = labels_.lblBytesInOut = QStringLiteral("unbekannt");
    labels_.lblBytesInPerSecond = labels_.lblBytesOutPerSecond = labels_.lblBytesInOutPerSecond =
        QStringLiteral("0.0");
    return;
  }
  labels_.lblBytesIn = BytesText(s.BytesIn);
  labels_.lblBytesOut = BytesText(s.BytesOut);
  labels_.lblBytesInOut = BytesText(s.BytesTotal);
  labels_.lblBytesInPerSecond = RateText(s.BytesInPerSecond);
  labels_.lblBytesOutPerSecond = RateText(s.BytesOutPerSecond);
  labels_.lblBytesInOutPerSecond = RateText(s.BytesTotalPerSecond);
}

void Meter::CheckDayChange(const QDate& today) {
  if (fields_.LetzterTag == today) {
    return;
  }
  const QDate& last = fields_.LetzterTag;
  hooks_.GetNewBudget(last.month() != today.month() || last.year() != today.year());
  fields_.LetzterTag = today;
}

void Meter::CountSecond() {
  MeterFields& f = fields_;
  f.Sekunden = static_cast<qint16>(f.Sekunden + 1);
  if (f.Sekunden == 3600) {
    f.Sekunden = 0;
    f.Stunden = static_cast<qint16>(f.Stunden + 1);
  }
  labels_.lblDauer = TwoDigits(f.Stunden) + QLatin1Char(':') + TwoDigits(f.Sekunden / 60) + QLatin1Char(':') +
                     TwoDigits(f.Sekunden % 60);
}

void Meter::SaveCheckpoint(bool atStop) {
  if (!writesFiles_ || !recording_) {
    return;
  }
  const float charged = fields_.Kosten + fields_.KostenFrei;
  const bool due = lastCheckpoint_ == 0 || ticks_ - lastCheckpoint_ >= kCheckpointInterval ||
                   charged != lastCharged_ || atStop;
  if (!due) {
    return;
  }
  lastCheckpoint_ = ticks_;
  lastCharged_ = charged;
  const std::optional<float> carryOver =
      fields_.IsVolumeRecording ? std::optional<float>(fields_.EinheitRest) : std::nullopt;
  minutor::SaveCheckpoint(services_.dir, labels_.Record(), carryOver);
}

void Meter::EndOfTick() {
  const AppState& state = services_.state;
  if (kleinesFenster_) {
    hooks_.UpdateSmallWindow();
  }
  hooks_.ShowCaption(labels_.Caption());
  hooks_.CheckConnectionEnd();
  if (state.DayLimitOn) {
    hooks_.CheckDayLimit();
  }
  if (state.MonthLimitOn) {
    hooks_.CheckMonthLimit();
  }
}

}  // namespace minutor
