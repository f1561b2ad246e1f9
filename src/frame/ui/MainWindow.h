#pragma once

#include "desk/ui/OverviewPanel.h"
#include "desk/ui/SmallWindow.h"
#include "frame/ui/FittingText.h"
#include "metering/ui/ConnectionPanel.h"
#include "online/platform/NetworkFetcher.h"
#include "online/platform/TimedatedClockSetter.h"
#include "users/ui/AlarmBoxes.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QMainWindow>
#include <QMap>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>

#include <array>

class QMenu;

namespace minutor {

class BusServices;
class MonitoringLoop;
class RemoteAccess;
class SideBar;
class TapiLine;
class TrafficSource;
struct Services;

// The frame of the program: a window of fixed size with the side bar, the
// three status fields, the client area that shows one panel at a time, and
// the tray symbol while the window is hidden.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow(Services& services, TrafficSource& traffic, QWidget* parent = nullptr);
  ~MainWindow() override;

  // Window size in logical pixels: 8865 x 6735 twips.
  static constexpr int kWidth = 591;
  static constexpr int kHeight = 449;

  // How a close came about, as the shutdown asks it.
  enum class UnloadMode { WindowClose = 0, ByProgram = 1, SessionEnd = 2 };

  // Connection detection: the loop that the checks run, and what the
  // monitoring panel needs of the system. Without it, recordings start and
  // end by hand only.
  struct Detection {
    MonitoringLoop* loop = nullptr;
    RemoteAccess* remote = nullptr;
    const BusServices* bus = nullptr;
    TapiLine* tapi = nullptr;
  };
  void SetDetection(const Detection& detection);

  // The steps of the start that need the window: the side bar is off while
  // it runs, the status line and the hour are set, the window is centred and
  // shown (or minimised), the Overview comes up, monitoring's loop starts.
  void Start();

  // Half the screen less half the window, in both directions.
  void CenterOnScreen();

  // Closes the window as the given cause would; the shutdown steps run.
  void CloseFor(UnloadMode mode);

  // Whether a panel is open, asked by its name ("Overview", "Connection",
  // "SmallWindow", ...).
  bool IsFormLoaded(const QString& name) const;
  // True when a panel other than the recording's is open.
  bool AnyPanelLoaded() const;
  // Hides the recording's panel if it is open and closes every other panel.
  void HideWindows();

  // Applies the rights of the active user: the side bar's locked entries, the
  // flags, the status line and the quit lock, which also takes the window
  // out of the task bar.
  void ApplyUserPreventions();

  // The manual start, from the Overview's button or the tray.
  void StartManualRecording();
  // A connection was noticed: the recording starts unless the guard cuts
  // the line; its panel comes to the front only from the Overview.
  void StartConnection();
  // The manual stop, as the recording panel's stop button does it.
  void StopManualRecording();

  // The tray menu as it would open now.
  QMenu* BuildTrayMenu();
  // A click on the tray symbol: the left button restores the window, a
  // double click of the middle one starts or stops a recording.
  void OnTrayEvent(QSystemTrayIcon::ActivationReason reason);

  SideBar* sideBar() const { return sideBar_; }
  QLabel* statusField(int index) const { return status_[static_cast<std::size_t>(index)]; }
  OverviewPanel* overview() const { return overview_; }
  QWidget* sidePanel(int index) const { return sidePanels_.value(index); }
  ConnectionPanel* connection() const { return connection_; }
  SmallWindow* smallWindow() const { return smallWindow_; }
  QSystemTrayIcon* trayIcon() const { return tray_; }
  AlarmBoxes& alarms() { return alarms_; }
  bool IsOnlineCheckActive() const { return onlineCheck_.isActive(); }

 signals:
  // The shutdown has run to its end and the window is closed.
  void closed();

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  Services& services_;
  TrafficSource& traffic_;
  SideBar* sideBar_ = nullptr;
  QWidget* client_ = nullptr;
  std::array<FittingLabel*, 3> status_{};
  QPointer<OverviewPanel> overview_;
  QPointer<ConnectionPanel> connection_;
  QPointer<SmallWindow> smallWindow_;
  QMap<int, QPointer<QWidget>> sidePanels_;  // by side-bar entry
  NetworkFetcher fetcher_;
  TimedatedClockSetter clockSetter_;
  Detection detection_;
  AlarmBoxes alarms_{this};
  QSystemTrayIcon* tray_ = nullptr;
  QMenu* trayMenu_ = nullptr;
  QTimer onlineCheck_;
  QElapsedTimer lastMiddleClick_;
  int lastHour_ = 0;
  UnloadMode unloadMode_ = UnloadMode::WindowClose;
  bool shutDown_ = false;

  // The last steps of the shutdown, once: the small window and the tray
  // symbol go, and the program may end.
  void ShutDown();
  void OnEntryClicked(int index);
  bool LoadConnectionPanel();
  QWidget* CreateSidePanel(int index);
  void ShowInClient(QWidget* panel);
  void ShowOverview();
  void ShowDateTime();
  void OnlineCheckTick();

  void OnRecordingStarted();
  void OnRecordingTicked();
  void OnRecordingStopped();
  void CounterStopper();
  void ShowSmallWindow(bool show);

  void AddSysTrayIcon();
  void KillSysTrayIcon();
  void RestoreFromTray();
  void OnTrayMiddleDoubleClick();
  void SetMonitoring(bool on);
};

}  // namespace minutor
