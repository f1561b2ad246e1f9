#pragma once

#include "desk/LaunchedPrograms.h"
#include "metering/Meter.h"
#include "metering/MeterHooks.h"
#include "users/AlarmOutput.h"
#include "users/ConnectionAlarms.h"

#include <QHash>
#include <QTimer>
#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;

namespace minutor {

class ClockSetter;
class ConnectionServices;
class Fetcher;
class MonitoringLoop;
class TrafficSource;
struct Services;

// "Verbindungsübersicht", the panel of a running recording. It exists from
// the start of a recording to its end and shows what the meter keeps: the
// labels are the meter's texts, copied after every step of it.
class ConnectionPanel : public QWidget, private MeterHooks, private AlarmOutput {
  Q_OBJECT

 public:
  ConnectionPanel(Services& services, TrafficSource& traffic, QWidget* parent = nullptr);

  // The load of the panel: the tariff and user check first, then the boxes
  // from their files, then the start of the meter. False when the check
  // refused; monitoring is off and saved then, and the panel has no use.
  bool Load();

  // Ends the recording and writes its record. Safe inside a tick and when
  // the recording has ended already.
  void CounterStop();

  // The stop button: asks first whether monitoring may go off when it
  // started the recording.
  void StopByUser();

  // Whether the stop button may be used; not for a user without the right
  // to change monitoring.
  bool IsStopEnabled() const;

  // The monitoring box follows a change made elsewhere; nothing is saved.
  void SetMonitoringChecked(bool on);

  // What the recording asks of connection detection: which connection it
  // meters, and whether it has ended. Without it a recording ends by hand only.
  void SetDetection(MonitoringLoop* detection) { detection_ = detection; }

  // What starts the programs of a connection the program dialled itself;
  // detached processes unless set otherwise.
  void SetProgramLauncher(ProgramLauncher& launcher) { launcher_ = &launcher; }

  // Where the warnings of budgets and limits go; without it they are silent.
  void SetAlarmOutput(AlarmOutput* output) { alarmOutput_ = output; }

  // A budget was saved: the rests are read again.
  void RefreshBudget();

  // Where the tariff update search and the clock correction fetch and set
  // the clock; without them the services box stays as it is.
  void SetOnline(Fetcher* fetcher, ClockSetter* clockSetter);
  ConnectionServices* services() const { return connectionServices_; }

  bool IsRecording() const { return meter_.IsRecording(); }
  int TickCount() const { return meter_.TickCount(); }

  // The text of a label by its control name ("lblKosten"); a tag as
  // "lblStartzeit.Tag" or "lblTarifname.Tag".
  QString LabelText(const QString& controlName) const;

 signals:
  // The meter has started: the frame shows the recording.
  void recordingStarted();
  // After every tick: the frame's date and time, the small window.
  void ticked();
  void captionChanged(const QString& caption);
  // The recording has ended and its record is written: the frame shows the
  // idle state and takes the panel away once this event has ended.
  void recordingStopped();
  // The small window box: at the start when ticked, and at each click during
  // the recording.
  void smallWindowWanted(bool show);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  // What the meter asks of the panel.
  void ShowSmallWindow() override;
  void StartServices() override;
  void StartTimerStarter() override;
  void ShowCaption(const QString& caption) override;
  void RecordingStopped() override;
  void DetectConnection(DetectedConnection& connection) override;
  void LaunchPrograms() override;
  void CheckConnectionEnd() override;
  void GetTimeLimit() override;
  void GetBudget() override;
  void GetNewBudget(bool monthChanged) override;
  void CheckBudget() override;
  void CheckDayLimit() override;
  void CheckMonthLimit() override;

  void PlaySound(const QString& path) override;
  void BudgetCrossed(int kind) override;
  void ShowAlert(int kind) override;
  void ShowConStop() override;

  void BuildControls();
  QLabel* AddLabel(const QString& controlName, const QString& text = {});
  void OnTimerStarter();
  void OnTick();
  void ShowLabels();

  Services& services_;
  TrafficSource& traffic_;
  MonitoringLoop* detection_ = nullptr;
  DetachedProgramLauncher detachedLauncher_;
  ProgramLauncher* launcher_ = &detachedLauncher_;
  Meter meter_;
  ConnectionAlarms alarms_;
  AlarmOutput* alarmOutput_ = nullptr;
  QTimer timerStarter_{this};
  QTimer rsTimer_{this};
  QHash<QString, QLabel*> labels_;
  ConnectionServices* connectionServices_ = nullptr;
  QCheckBox* check1_ = nullptr;
  QCheckBox* check2_ = nullptr;
  QCheckBox* check3_ = nullptr;
  QCheckBox* chkKanalbuendelung_ = nullptr;
  QPushButton* cmdStop_ = nullptr;
};

}  // namespace minutor
