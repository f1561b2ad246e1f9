#pragma once

#include "metering/MeterLabels.h"

#include <QDate>
#include <QDateTime>
#include <QtGlobal>

namespace minutor {

class MeterHooks;
class TrafficSource;
struct Services;

// The running values of a recording. Types are those the stored and shown
// values were always computed with: costs in single precision, summed up
// unrounded, and the second counters in 16 bits.
struct MeterFields {
  // Time tariff: price per minute at the start, hundredths. Volume tariff:
  // "Volumenkosten:".
  float Tarifpreis = 0;
  // Time tariff: seconds of every unit after the first. Volume tariff:
  // kilobytes of a unit.
  float Takt = 0;
  qint16 Ersttakt = 0;      // seconds of the first unit
  float Einheitspreis = 0;  // price of one unit in currency units
  qint16 TaktLaenge = 0;    // length of the unit now running
  qint16 Sekunden = 0;      // seconds of the duration within the hour
  qint16 Stunden = 0;       // whole hours of the duration
  qint16 SekundenImTakt = 0;
  float Kosten = 0;          // the cost that counts
  float KostenFrei = 0;      // what it would have cost; shown while free time lasts
  qint32 Einheiten = 0;      // units completed, for display in a time tariff
  float EinheitRest = 0;     // seconds or kilobytes left of the current unit
  float VolumenVortrag = 0;  // kilobytes of a paid unit carried over
  QDate LetzterTag;
  quint8 LetzteStunde = 0;
  qint64 LetzteBytes = 0;  // BytesTotal when last shown
  qint32 ConnectionHandle = 0;
  bool TimeSyncPending = false;
  bool TarifupdatePending = false;
  bool IsVolumeRecording = false;
};

// The meter of one recording: it charges the units of the tariff as the
// seconds or the bytes pass and keeps the texts of the connection panel,
// from which the record is written at the end.
//
// It is driven from outside: Counter_Start once, then TimerStarterTick as
// soon as the starting event has ended, then Tick once a second for as long
// as IsTimerEnabled, and Counter_Stop at the end. A duration is a count of
// ticks; the clock gives only the hour, the day and the start time. A tick
// reads the tariff file only when the hour has changed.
//
// Once Counter_Start returns, the caller shows the recording in the frame
// (monitoring's loop stops, the status says so); after each tick it shows the
// date and time. Everything else that happens on the way is asked of the
// hooks.
class Meter {
 public:
  Meter(Services& services, TrafficSource& traffic, MeterHooks& hooks);

  void Counter_Start();

  // The first tick, at once, and the start of the one-second ticks.
  void TimerStarterTick();

  // The one-second tick of the meter that runs: RSTimer1 for a time tariff,
  // RSTimer2 for a volume tariff. Nothing before the first tick or once
  // stopped.
  void Tick();

  // Ends the recording and writes its record (and, for a volume tariff, the
  // carry-over). Safe inside a tick: the tick runs to its end, and no tick
  // follows. A recording that isn't running isn't stopped again.
  //
  // Until then the record as it would be now is kept as a checkpoint: after
  // the first tick, once a minute and after every charged unit, and once
  // more before the record is written. The checkpoint goes when the record
  // is saved.
  void Counter_Stop();

  // Whether free time or free transfer is left, as lblRestFrei shows it.
  bool IsFreeLeft() const;

  // chkKanalbündelung: charges count twice from the next unit on. A click
  // also sets KanalbuendelungAktiv.
  bool Kanalbuendelung() const { return kanalbuendelung_; }
  void SetKanalbuendelung(bool on);

  // Check3: the small window is shown and kept up to date.
  bool KleinesFenster() const { return kleinesFenster_; }
  void SetKleinesFenster(bool on) { kleinesFenster_ = on; }

  void SetTimeSyncPending(bool pending) { fields_.TimeSyncPending = pending; }
  void SetTarifupdatePending(bool pending) { fields_.TarifupdatePending = pending; }

  // A trial run leaves the data directory as it was: Counter_Stop then
  // writes neither record nor carry-over, and the ticks no checkpoint.
  void SetWritesFiles(bool writes) { writesFiles_ = writes; }

  const MeterFields& Fields() const { return fields_; }
  const MeterLabels& Labels() const { return labels_; }

  // From Counter_Start to Counter_Stop.
  bool IsRecording() const { return recording_; }
  // Seconds between two checkpoints of a running recording at most.
  static constexpr int kCheckpointInterval = 60;

  // RSTimer1 or RSTimer2 runs: Tick wants calling once a second.
  bool IsTimerEnabled() const { return rsTimer1_ || rsTimer2_; }
  int TickCount() const { return ticks_; }

 private:
  void RSTimer1Tick();
  void RSTimer2Tick();
  void UpdateTraffic();
  void CheckDayChange(const QDate& today);
  void CountSecond();
  void SaveCheckpoint(bool atStop = false);
  void EndOfTick();

  Services& services_;
  TrafficSource& traffic_;
  MeterHooks& hooks_;
  MeterFields fields_;
  MeterLabels labels_;
  bool kanalbuendelung_ = false;
  bool kleinesFenster_ = false;
  bool timerStarter_ = false;
  bool rsTimer1_ = false;
  bool rsTimer2_ = false;
  bool recording_ = false;
  bool writesFiles_ = true;
  int ticks_ = 0;
  int lastCheckpoint_ = 0;  // tick of the last checkpoint
  float lastCharged_ = 0;   // Kosten + KostenFrei at the last checkpoint
};

}  // namespace minutor
