#pragma once

#include <QString>
#include <QtGlobal>

namespace minutor {

// What DetectConnection finds out about the running connection. A connection
// that isn't found keeps these values.
struct DetectedConnection {
  QString name = QStringLiteral("unbekannt");    // lblConnectionName: the dial-up entry
  QString device = QStringLiteral("unbekannt");  // lblConnectionSpeed: the device
  qint32 handle = 0;                             // ConnectionHandle
};

// The places where the meter calls out of itself: into detection, budgets,
// launched programs, the small window and the frame. Every call is made at
// its place in the meter's steps; what isn't plugged in does nothing.
class MeterHooks {
 public:
  virtual ~MeterHooks() = default;

  // Counter_Start, step 3. May also change AktuellerTarif to the tariff of
  // the dial-up entry.
  virtual void DetectConnection(DetectedConnection& /*connection*/) {}
  // Counter_Start, step 4, only with DayLimitOn.
  virtual void GetTimeLimit() {}
  // Counter_Start, step 7, in this order.
  virtual void LaunchPrograms() {}
  virtual void GetBudget() {}
  // Counter_Start, step 11: a tariff update search or a clock correction is
  // pending and wants to run 30 seconds into the connection.
  virtual void StartServices() {}
  // Counter_Start, step 12, when Check3 is ticked.
  virtual void ShowSmallWindow() {}
  // Counter_Start, step 15: TimerStarterTick is to run once the event that
  // started the recording has ended.
  virtual void StartTimerStarter() {}

  // The ticks. A new day: the budgets of the day (and of the month when that
  // changed as well) begin afresh.
  virtual void GetNewBudget(bool /*monthChanged*/) {}
  // After the first tick, and after every charge that raised the real cost.
  virtual void CheckBudget() {}
  // Step 11, when Check3 is ticked.
  virtual void UpdateSmallWindow() {}
  // Step 12: the caption of the main window.
  virtual void ShowCaption(const QString& /*caption*/) {}
  // Step 13: may call Counter_Stop; the rest of the tick still runs.
  virtual void CheckConnectionEnd() {}
  // Step 14, with DayLimitOn and MonthLimitOn.
  virtual void CheckDayLimit() {}
  virtual void CheckMonthLimit() {}

  // Counter_Stop: the record is on disk (a loaded connection list shows it).
  virtual void ConnectionSaved() {}
  // The end of Counter_Stop: the frame shows the idle state again and takes
  // the panel away once the event that stopped the recording has ended.
  virtual void RecordingStopped() {}
};

}  // namespace minutor
