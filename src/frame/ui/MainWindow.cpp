#include "frame/ui/MainWindow.h"

#include "desk/SmallWindowSettings.h"
#include "desk/ui/OptionsPanel.h"
#include "desk/ui/OverviewPanel.h"
#include "desk/ui/SmallWindow.h"
#include "detection/MonitoringLoop.h"
#include "detection/RemoteAccess.h"
#include "detection/ui/ConnectionCheckPanel.h"
#include "detection/ui/DialUpPanel.h"
#include "detection/ui/StatusDialog.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/StartUp.h"
#include "frame/datadir/ClockText.h"
#include "frame/ui/SideBar.h"
#include "history/ui/ChartPanel.h"
#include "history/ui/ListPanel.h"
#include "history/ui/ReportPanel.h"
#include "metering/ui/ConnectionPanel.h"
#include "online/ui/ConnectionServices.h"
#include "tariffs/ui/TariffCataloguePanel.h"
#include "users/Budget.h"
#include "users/UserRights.h"
#include "users/ui/BudgetPanel.h"
#include "users/ui/UserPanel.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QLocale>
#include <QMenu>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QSystemTrayIcon>

namespace minutor {

namespace {

const QString kTitle = QStringLiteral("Minutor 3.3");
const QString kOverviewLabel = QStringLiteral("Übersicht");
const QString kConnectionLabel = QStringLiteral("Verbindung");
const QString kNotRecording = QStringLiteral("Aufzeichnung ist nicht aktiv");
constexpr int kListEntry = 1;
constexpr int kTarifeEntry = 2;
constexpr int kDialUpEntry = 3;
constexpr int kBudgetEntry = 4;
constexpr int kUserEntry = 5;
constexpr int kMonitoringEntry = 6;
constexpr int kOptionsEntry = 7;
constexpr int kChartEntry = 8;
constexpr int kReportEntry = 9;

bool HasPanel(int index) {
  return index == kListEntry || index == kTarifeEntry || index == kDialUpEntry || index == kMonitoringEntry ||
         index == kOptionsEntry || index == kBudgetEntry || index == kUserEntry || index == kChartEntry ||
         index == kReportEntry;
}

// A panel in its scroll area: it scrolls only when its lines don't fit at the
// width it has, and then the wheel scrolls the panel: a selection box or
// number field under the pointer changes only once the user has clicked it.
class ScrolledPanel : public QObject {
 public:
  // The parts are kept apart from the scroll area: while the area is being
  // destroyed, its fields still send events here, and the area is no longer
  // a scroll area then.
  explicit ScrolledPanel(QScrollArea* scroll)
      : QObject(scroll),
        panel_(scroll->widget()),
        viewport_(scroll->viewport()),
        scrollBar_(scroll->verticalScrollBar()) {
    QWidget* panel = scroll->widget();
    QList<QWidget*> fields;
    for (QComboBox* box : panel->findChildren<QComboBox*>()) {
      fields.append(box);
    }
    for (QAbstractSpinBox* box : panel->findChildren<QAbstractSpinBox*>()) {
      fields.append(box);
    }
    for (QWidget* field : std::as_const(fields)) {
      field->setFocusPolicy(Qt::StrongFocus);
      field->installEventFilter(this);
    }
    scroll->viewport()->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    // A scroll area keeps a panel as high as the panel is at its narrowest,
    // where wrapped lines take the most room; at the width it has, the panel
    // needs only the height for that width.
    if (watched == viewport_) {
      if (event->type() == QEvent::Resize && panel_ && panel_->hasHeightForWidth()) {
        panel_->setMinimumHeight(panel_->heightForWidth(viewport_->width()));
      }
      return false;
    }
    if (event->type() == QEvent::Wheel && scrollBar_ && !static_cast<QWidget*>(watched)->hasFocus()) {
      QCoreApplication::sendEvent(scrollBar_, event);
      return true;
    }
    return false;
  }

 private:
  QPointer<QWidget> panel_;
  QPointer<QWidget> viewport_;
  QPointer<QScrollBar> scrollBar_;
};

}  // namespace

MainWindow::MainWindow(Services& services, TrafficSource& traffic, QWidget* parent)
    : QMainWindow(parent), services_(services), traffic_(traffic) {
  setObjectName(QStringLiteral("Form1"));
  setWindowTitle(kTitle);
  setWindowIcon(QIcon::fromTheme(QStringLiteral("minutor"), QIcon(QStringLiteral(":/icons/minutor.svg"))));
  setWindowFlag(Qt::WindowMaximizeButtonHint, false);
  setFixedSize(kWidth, kHeight);

  auto* central = new QWidget(this);
  auto* layout = new QHBoxLayout(central);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  sideBar_ = new SideBar(central);
  sideBar_->setFixedWidth(112);
  client_ = new QWidget(central);
  client_->setObjectName(QStringLiteral("Picture2"));
  auto* clientLayout = new QHBoxLayout(client_);
  clientLayout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(sideBar_);
  layout->addWidget(client_, 1);
  setCentralWidget(central);
  connect(sideBar_, &SideBar::entryClicked, this, &MainWindow::OnEntryClicked);

  // Entries whose panel comes later stay disabled until it exists.
  for (int index = 1; index < SideBar::kEntries; ++index) {
    sideBar_->SetEntryEnabled(index, HasPanel(index));
  }

  for (FittingLabel*& field : status_) {
    field = new FittingLabel(this);
    field->setFrameShape(QFrame::Panel);
    field->setFrameShadow(QFrame::Sunken);
  }
  statusBar()->addWidget(status_[0], 3);
  statusBar()->addWidget(status_[1], 2);
  statusBar()->addWidget(status_[2], 2);
  statusBar()->setSizeGripEnabled(false);
  status_[1]->SetText(kNotRecording);
  status_[2]->SetText(QStringLiteral("Aktiver Benutzer: ") + services_.state.ActiveUser);

  connect(&onlineCheck_, &QTimer::timeout, this, &MainWindow::OnlineCheckTick);
}

MainWindow::~MainWindow() { delete smallWindow_; }

void MainWindow::Start() {
  sideBar_->SetAllEnabled(false);
  ShowDateTime();
  lastHour_ = services_.clock.Now().time().hour();
  onlineCheck_.setInterval(services_.state.CheckInterval * 1000);
  if (services_.state.StartMinimized) {
    showMinimized();
  } else {
    show();
  }
  // Centred once shown, when the size of the window's frame is known.
  CenterOnScreen();
  ShowOverview();
  ApplyUserPreventions();
  sideBar_->SetAllEnabled(true);
  onlineCheck_.start();
}

void MainWindow::ApplyUserPreventions() {
  status_[2]->SetText(QStringLiteral("Aktiver Benutzer: ") + services_.state.ActiveUser);
  const bool wasLocked = services_.state.QuitLocked;
  const auto locks = SetUserPreventions(services_.dir, services_.state.ActiveUser, services_.state);
  if (!locks) {
    return;
  }
  for (int index = 1; index < SideBar::kEntries; ++index) {
    const QString label = NavigationLabel(index, *locks);
    if (!label.isEmpty()) {
      sideBar_->SetLabel(index, label);
    }
  }
  // A window manager leaves tool windows out of the task bar. Changing the
  // kind of window hides it, so a shown window is shown again.
  if (services_.state.QuitLocked != wasLocked) {
    const bool shown = isVisible();
    setWindowFlag(Qt::Tool, services_.state.QuitLocked);
    if (shown) {
      show();
    }
  }
}

void MainWindow::CenterOnScreen() {
  const QScreen* screen = this->screen() != nullptr ? this->screen() : QGuiApplication::primaryScreen();
  if (screen == nullptr) {
    return;
  }
  const QRect area = screen->geometry();
  move(area.left() + area.width() / 2 - frameGeometry().width() / 2,
       area.top() + area.height() / 2 - frameGeometry().height() / 2);
}

void MainWindow::CloseFor(UnloadMode mode) {
  unloadMode_ = mode;
  close();
  unloadMode_ = UnloadMode::WindowClose;
  // A close already under way, its question still open, takes no second
  // one; the end of the session doesn't wait for the answer.
  if (mode == UnloadMode::SessionEnd && !shutDown_) {
    if (connection_) {
      connection_->CounterStop();
    }
    hide();
    ShutDown();
  }
}

bool MainWindow::IsFormLoaded(const QString& name) const {
  for (const QPointer<QWidget>& panel : sidePanels_) {
    if (panel && panel->objectName() == name) {
      return true;
    }
  }
  if (name == QLatin1String("Overview")) {
    return !overview_.isNull();
  }
  if (name == QLatin1String("Connection")) {
    return !connection_.isNull();
  }
  if (name == QLatin1String("SmallWindow")) {
    return !smallWindow_.isNull();
  }
  return false;
}

bool MainWindow::AnyPanelLoaded() const {
  if (overview_) {
    return true;
  }
  for (const QPointer<QWidget>& panel : sidePanels_) {
    if (panel) {
      return true;
    }
  }
  return false;
}

void MainWindow::HideWindows() {
  if (connection_) {
    connection_->hide();
  }
  delete overview_;
  for (const QPointer<QWidget>& panel : sidePanels_) {
    delete panel;
  }
  sidePanels_.clear();
}

QWidget* MainWindow::CreateSidePanel(int index) {
  QWidget* panel = nullptr;
  if (index == kListEntry) {
    panel = new ListPanel(services_, detection_.remote);
  } else if (index == kTarifeEntry) {
    auto* catalogue = new TariffCataloguePanel(services_, fetcher_);
    connect(catalogue, &TariffCataloguePanel::tariffsDownloaded, this, [this] {
      if (connection_) {
        connection_->services()->ShowDownloaded();
      }
    });
    connect(catalogue, &TariffCataloguePanel::newerRevisionFound, this, [this] {
      if (connection_) {
        connection_->services()->ShowNewerRevision();
      }
    });
    panel = catalogue;
  } else if (index == kDialUpEntry) {
    panel = new DialUpPanel(services_, detection_.remote);
  } else if (index == kMonitoringEntry) {
    auto* monitoring = new ConnectionCheckPanel(services_);
    monitoring->SetPlatform(detection_.bus, detection_.tapi);
    connect(monitoring, &ConnectionCheckPanel::intervalChanged, this,
            [this](int milliseconds) { onlineCheck_.setInterval(milliseconds); });
    panel = monitoring;
  } else if (index == kOptionsEntry) {
    panel = new OptionsPanel(services_, detection_.remote);
  } else if (index == kChartEntry) {
    panel = new ChartPanel(services_);
  } else if (index == kReportEntry) {
    panel = new ReportPanel(services_);
  } else if (index == kUserEntry) {
    auto* users = new UserPanel(services_);
    connect(users, &UserPanel::rightsChanged, this, &MainWindow::ApplyUserPreventions);
    panel = users;
  } else if (index == kBudgetEntry) {
    auto* budget = new BudgetPanel(services_);
    connect(budget, &BudgetPanel::budgetSaved, this, [this] {
      if (connection_) {
        connection_->RefreshBudget();
      }
    });
    panel = budget;
  } else {
    return nullptr;
  }
  // Panels with long texts may be larger than the frame, which keeps its
  // size: they scroll.
  auto* scroll = new QScrollArea(client_);
  scroll->setObjectName(panel->objectName());
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidget(panel);
  new ScrolledPanel(scroll);
  return scroll;
}

void MainWindow::OnEntryClicked(int index) {
  const QString label = sideBar_->Label(index);
  if (label == kLockedLabel) {
    return;
  }
  if (index == 0 && label == kConnectionLabel) {
    if (connection_) {
      HideWindows();
      ShowInClient(connection_);
    }
    return;
  }
  if (index == 0) {
    if (overview_) {
      return;
    }
    HideWindows();
    ShowOverview();
    return;
  }
  if (sidePanels_.value(index)) {
    return;
  }
  HideWindows();
  if (QWidget* panel = CreateSidePanel(index)) {
    sidePanels_.insert(index, panel);
    ShowInClient(panel);
  }
}

void MainWindow::ShowInClient(QWidget* panel) {
  if (client_->layout()->indexOf(panel) < 0) {
    client_->layout()->addWidget(panel);
  }
  panel->show();
}

void MainWindow::SetDetection(const Detection& detection) {
  detection_ = detection;
  alarms_.SetRemoteAccess(detection_.remote);
  // The Overview made at start learns its entries now.
  if (overview_) {
    overview_->SetRemoteAccess(detection_.remote);
  }
}

void MainWindow::ShowOverview() {
  if (!overview_) {
    overview_ = new OverviewPanel(services_, client_);
    overview_->SetRemoteAccess(detection_.remote);
    connect(overview_, &OverviewPanel::startRequested, this, &MainWindow::StartManualRecording);
    connect(overview_, &OverviewPanel::activeUserChanged, this, &MainWindow::ApplyUserPreventions);
  }
  ShowInClient(overview_);
}

void MainWindow::ShowDateTime() {
  const QDateTime now = services_.clock.Now();
  status_[0]->SetText(QLocale().toString(now.date(), QStringLiteral("d. MMMM yyyy")) + QStringLiteral(" - ") +
                      LongTimeText(now.time()));
}

void MainWindow::OnlineCheckTick() {
  const int hour = services_.clock.Now().time().hour();
  if (hour != lastHour_) {
    lastHour_ = hour;
    // The shown price follows the tariff's zones.
    if (overview_) {
      overview_->Refresh();
    }
  }
  ShowDateTime();
  if (detection_.loop != nullptr && !connection_) {
    detection_.loop->Check([this] { StartConnection(); });
  }
}

void MainWindow::StartManualRecording() {
  if (connection_) {
    return;
  }
  services_.state.DetectionSource = 0;
  if (LoadConnectionPanel()) {
    if (overview_) {
      ShowInClient(connection_);
    }
    delete overview_;
  }
}

void MainWindow::StartConnection() {
  if (connection_ || (detection_.loop != nullptr && detection_.loop->CheckAllowedEntry())) {
    return;
  }
  if (LoadConnectionPanel() && overview_) {
    ShowInClient(connection_);
    delete overview_;
  }
}

bool MainWindow::LoadConnectionPanel() {
  connection_ = new ConnectionPanel(services_, traffic_, client_);
  connection_->SetDetection(detection_.loop);
  connection_->SetAlarmOutput(&alarms_);
  connection_->SetOnline(&fetcher_, &clockSetter_);
  connect(connection_->services(), &ConnectionServices::tariffsDownloaded, this, [this] {
    if (auto* scroll = qobject_cast<QScrollArea*>(sidePanels_.value(kTarifeEntry).data())) {
      static_cast<TariffCataloguePanel*>(scroll->widget())->GetTarife();
    }
  });
  connection_->hide();
  connect(connection_, &ConnectionPanel::recordingStarted, this, &MainWindow::OnRecordingStarted);
  connect(connection_, &ConnectionPanel::ticked, this, &MainWindow::OnRecordingTicked);
  connect(connection_, &ConnectionPanel::captionChanged, this, &QWidget::setWindowTitle);
  connect(connection_, &ConnectionPanel::recordingStopped, this, &MainWindow::OnRecordingStopped);
  connect(connection_, &ConnectionPanel::smallWindowWanted, this, &MainWindow::ShowSmallWindow);
  if (!connection_->Load()) {
    delete connection_;
    if (overview_) {
      overview_->SetMonitoringChecked(false);
    }
    HideWindows();
    ShowOverview();
    return false;
  }
  return true;
}

void MainWindow::StopManualRecording() {
  if (connection_) {
    connection_->StopByUser();
  }
}

void MainWindow::OnRecordingStarted() {
  onlineCheck_.stop();
  status_[1]->SetText(QStringLiteral("Aufzeichnung aktiv"));
  sideBar_->SetLabel(0, kConnectionLabel);
}

void MainWindow::OnRecordingTicked() {
  ShowDateTime();
  if (smallWindow_ && connection_) {
    smallWindow_->UpdateSmallWindow(
        connection_->LabelText(QStringLiteral("lblDauer")),
        connection_->LabelText(QStringLiteral("lblKosten")),
        SmallWindowVolumeText(services_.state.BytesTotal),
        SmallWindowRateText(connection_->LabelText(QStringLiteral("lblBytesInOutPerSecond"))));
  }
}

void MainWindow::OnRecordingStopped() {
  setWindowTitle(kTitle);
  status_[1]->SetText(kNotRecording);
  sideBar_->SetLabel(0, kOverviewLabel);
  // An open list shows the record just written.
  if (QWidget* list = sidePanels_.value(kListEntry)) {
    if (auto* panel = list->findChild<ListPanel*>()) {
      panel->GetConnections();
    }
  }
  // The panel is taken away once the event that stopped it has ended.
  QTimer::singleShot(1, this, &MainWindow::CounterStopper);
}

void MainWindow::CounterStopper() {
  delete smallWindow_;
  if (connection_) {
    connection_->hide();
    connection_->deleteLater();
    connection_ = nullptr;
  }
  onlineCheck_.start();
  if (!AnyPanelLoaded()) {
    ShowOverview();
  }
}

void MainWindow::ShowSmallWindow(bool show) {
  if (!show) {
    delete smallWindow_;
    return;
  }
  if (!smallWindow_) {
    smallWindow_ = new SmallWindow(services_);
    connect(smallWindow_, &SmallWindow::restoreRequested, this, [this] {
      RestoreFromTray();
      raise();
      activateWindow();
    });
    // A tool window has no place in the task bar to be minimised to: it
    // hides, and comes back with the main window.
    connect(smallWindow_, &SmallWindow::minimizeRequested, this, [this] {
      if (smallWindow_) {
        smallWindow_->hide();
      }
      showMinimized();
    });
  }
  smallWindow_->Initialise();
  OnRecordingTicked();
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::WindowStateChange) {
    return;
  }
  if (smallWindow_ && !(windowState() & Qt::WindowMinimized) &&
      (smallWindow_->isHidden() || (smallWindow_->windowState() & Qt::WindowMinimized))) {
    smallWindow_->showNormal();
  }
  if (isVisible() && (windowState() & Qt::WindowMaximized)) {
    setWindowState(windowState() & ~Qt::WindowMaximized);
    setFixedSize(kWidth, kHeight);
  }
  // Without a tray on the desktop (GNOME without its extension) a hidden
  // window could never be brought back: it stays minimised in the task bar.
  if ((windowState() & Qt::WindowMinimized) && services_.state.HideToTray &&
      QSystemTrayIcon::isSystemTrayAvailable()) {
    AddSysTrayIcon();
    QTimer::singleShot(0, this, &QWidget::hide);
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  // The end of the session ends the program, whoever is logged on, and
  // keeps the running recording as a stop would.
  const bool sessionEnd = unloadMode_ == UnloadMode::SessionEnd;
  if (services_.state.QuitLocked && !sessionEnd) {
    event->ignore();
    services_.prompter.Message(QStringLiteral("Minutor kann nicht beendet werden, da diesem Benutzer "
                                              "Zugriffsbeschränkungen zugeteilt wurden."),
                               Prompter::Icon::Warning);
    return;
  }
  if (connection_ && sessionEnd) {
    connection_->CounterStop();
  } else if (connection_) {
    const Prompter::Answer answer = services_.prompter.Ask(
        QStringLiteral(
            "Es wird gerade eine Verbindung aufgezeichnet. Sollen die ermittelten Daten gespeichert "
            "werden?"),
        QStringLiteral("Beenden"), true);
    if (answer == Prompter::Answer::Cancel) {
      event->ignore();
      return;
    }
    if (answer == Prompter::Answer::Yes && connection_) {
      connection_->CounterStop();
    }
  }
  event->accept();
  ShutDown();
}

void MainWindow::ShutDown() {
  if (shutDown_) {
    return;
  }
  shutDown_ = true;
  delete smallWindow_;
  KillSysTrayIcon();
  emit closed();
}

QMenu* MainWindow::BuildTrayMenu() {
  if (trayMenu_ == nullptr) {
    trayMenu_ = new QMenu(this);
  }
  trayMenu_->clear();
  trayMenu_->addAction(QStringLiteral("&Beenden"), this, [this] { CloseFor(UnloadMode::ByProgram); });
  trayMenu_->addSeparator();
  const bool on = services_.state.MonitoringOn;
  QAction* monitoring =
      trayMenu_->addAction(on ? QStringLiteral("Über&wachung") : QStringLiteral("Überwachung"));
  monitoring->setCheckable(true);
  monitoring->setChecked(on);
  monitoring->setEnabled(!services_.state.NoMonitoringSettings);
  connect(monitoring, &QAction::triggered, this, [this] { SetMonitoring(!services_.state.MonitoringOn); });
  RemoteAccess* remote = detection_.remote;
  if (connection_) {
    trayMenu_->addAction(QStringLiteral("Aufzeichnung &stoppen"), this, &MainWindow::StopManualRecording);
    if (remote != nullptr) {
      trayMenu_->addSeparator();
      trayMenu_->addAction(QStringLiteral("Verbindung trennen"), this, [remote] {
        const QList<RasConnection> connections = remote->GetRasConnections();
        if (!connections.isEmpty()) {
          remote->HangUp(connections.last().handle);
        }
      });
    }
  } else {
    trayMenu_->addAction(QStringLiteral("Aufzeichnung &starten"), this, &MainWindow::StartManualRecording);
    const QStringList entries = remote != nullptr ? GetDFUe(*remote) : QStringList();
    if (!entries.isEmpty()) {
      trayMenu_->addSeparator();
    }
    for (const QString& entry : entries) {
      trayMenu_->addAction(
          QLatin1Char('"') + entry + QStringLiteral("\" wählen"), this, [this, remote, entry] {
            // Only the budget is asked here; the time limits strike while the line is up.
            if (services_.state.NoDialOnBudget &&
                IsBudgetExceeded(services_.dir, services_.state.ActiveUser, services_.clock.Now().date())) {
              services_.prompter.Message(
                  QStringLiteral("Das Einwählen wurde Ihnen in den Benutzereinstellungen verboten."),
                  Prompter::Icon::Information);
              return;
            }
            StatusDialog::DialWithProgress(*remote, services_, entry, this);
          });
    }
  }
  return trayMenu_;
}

void MainWindow::SetMonitoring(bool on) {
  services_.state.MonitoringOn = on;
  SaveMonitoring(services_.dir, on);
  if (overview_) {
    overview_->SetMonitoringChecked(on);
  }
  if (connection_) {
    connection_->SetMonitoringChecked(on);
  }
}

void MainWindow::AddSysTrayIcon() {
  if (tray_ == nullptr) {
    tray_ = new QSystemTrayIcon(windowIcon(), this);
    tray_->setToolTip(kTitle);
    tray_->setContextMenu(BuildTrayMenu());
    // The menu is made anew each time it opens.
    connect(trayMenu_, &QMenu::aboutToShow, this, &MainWindow::BuildTrayMenu);
    connect(tray_, &QSystemTrayIcon::activated, this, &MainWindow::OnTrayEvent);
  }
  tray_->show();
}

void MainWindow::KillSysTrayIcon() {
  if (tray_ != nullptr) {
    tray_->hide();
  }
}

void MainWindow::RestoreFromTray() {
  show();
  setWindowState(windowState() & ~Qt::WindowMinimized);
  showNormal();
  KillSysTrayIcon();
}

void MainWindow::OnTrayEvent(QSystemTrayIcon::ActivationReason reason) {
  switch (reason) {
    case QSystemTrayIcon::DoubleClick:
    case QSystemTrayIcon::Trigger:
      // Desktops that speak the StatusNotifierItem protocol report no double
      // click, so a single click restores as well.
      RestoreFromTray();
      break;
    case QSystemTrayIcon::MiddleClick:
      // The middle button's double click is made of two clicks here: no
      // desktop reports it as one, and a single click must not start a
      // recording by accident.
      if (lastMiddleClick_.isValid() && !lastMiddleClick_.hasExpired(QApplication::doubleClickInterval())) {
        lastMiddleClick_.invalidate();
        OnTrayMiddleDoubleClick();
      } else {
        lastMiddleClick_.start();
      }
      break;
    default:
      break;
  }
}

void MainWindow::OnTrayMiddleDoubleClick() {
  if (services_.state.RecordingActive) {
    if (connection_ && connection_->IsStopEnabled()) {
      StopManualRecording();
    }
    return;
  }
  // As a connection that monitoring noticed: the guard has its say.
  services_.state.DetectionSource = 0;
  StartConnection();
}

}  // namespace minutor
