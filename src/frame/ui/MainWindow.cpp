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

#include <QAbstractSpinBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLocale>
#include <QMenu>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QStyle>
#include <QSystemTrayIcon>

namespace minutor {

namespace {

const QString kTitle = QStringLiteral("Minutor 3.3");
const QString kOverviewLabel = QStringLiteral("Übersicht");
const QString kConnectionLabel = QStringLiteral("Verbindung");
const QString kLocked = QStringLiteral("[Gesperrt]");
const QString kNotRecording = QStringLiteral("Aufzeichnung ist nicht aktiv");
constexpr int kListEntry = 1;
constexpr int kTarifeEntry = 2;
constexpr int kDialUpEntry = 3;
constexpr int kMonitoringEntry = 6;
constexpr int kOptionsEntry = 7;
constexpr int kChartEntry = 8;
constexpr int kReportEntry = 9;

bool HasPanel(int index) {
  return index == kListEntry || index == kTarifeEntry || index == kDialUpEntry || index == kMonitoringEntry ||
         index == kOptionsEntry || index == kChartEntry || index == kReportEntry;
}

// In a panel that scrolls, the wheel scrolls the panel: a selection box or
// number field under the pointer changes only once the user has clicked it.
class WheelScrollsPanel : public QObject {
 public:
  explicit WheelScrollsPanel(QScrollArea* scroll) : QObject(scroll), scroll_(scroll) {
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
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Wheel && !static_cast<QWidget*>(watched)->hasFocus()) {
      QCoreApplication::sendEvent(scroll_->verticalScrollBar(), event);
      return true;
    }
    return false;
  }

 private:
  QScrollArea* scroll_;
};

}  // namespace

MainWindow::MainWindow(Services& services, TrafficSource& traffic, QWidget* parent)
    : QMainWindow(parent), services_(services), traffic_(traffic) {
  setObjectName(QStringLiteral("Form1"));
  setWindowTitle(kTitle);
  setWindowIcon(QIcon::fromTheme(QStringLiteral("minutor"), style()->standardIcon(QStyle::SP_ComputerIcon)));
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

  for (QLabel*& field : status_) {
    field = new QLabel(this);
    field->setFrameShape(QFrame::Panel);
    field->setFrameShadow(QFrame::Sunken);
  }
  statusBar()->addWidget(status_[0], 3);
  statusBar()->addWidget(status_[1], 2);
  statusBar()->addWidget(status_[2], 2);
  statusBar()->setSizeGripEnabled(false);
  status_[1]->setText(kNotRecording);
  status_[2]->setText(QStringLiteral("Aktiver Benutzer: ") + services_.state.ActiveUser);

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
  sideBar_->SetAllEnabled(true);
  onlineCheck_.start();
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
  new WheelScrollsPanel(scroll);
  return scroll;
}

void MainWindow::OnEntryClicked(int index) {
  const QString label = sideBar_->Label(index);
  if (label == kLocked) {
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
    connect(overview_, &OverviewPanel::activeUserChanged, this, [this](const QString& name) {
      status_[2]->setText(QStringLiteral("Aktiver Benutzer: ") + name);
    });
  }
  ShowInClient(overview_);
}

void MainWindow::ShowDateTime() {
  const QDateTime now = services_.clock.Now();
  status_[0]->setText(QLocale().toString(now.date(), QStringLiteral("d. MMMM yyyy")) + QStringLiteral(" - ") +
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
  status_[1]->setText(QStringLiteral("Aufzeichnung aktiv"));
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
  status_[1]->setText(kNotRecording);
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
      showNormal();
      raise();
      activateWindow();
    });
    connect(smallWindow_, &SmallWindow::minimizeRequested, this, [this] {
      showMinimized();
      if (smallWindow_) {
        smallWindow_->showMinimized();
      }
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
  if (smallWindow_ && (smallWindow_->windowState() & Qt::WindowMinimized)) {
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
  const int mode = static_cast<int>(unloadMode_);
  if (services_.state.QuitLocked) {
    if (mode != 2) {
      event->ignore();
      services_.prompter.Message(QStringLiteral("Minutor kann nicht beendet werden, da diesem Benutzer "
                                                "Zugriffsbeschränkungen zugeteilt wurden."),
                                 Prompter::Icon::Warning);
    }
    return;
  }
  if (connection_ && mode < 2) {
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
  delete smallWindow_;
  KillSysTrayIcon();
  event->accept();
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
          QLatin1Char('"') + entry + QStringLiteral("\" wählen"), this,
          [this, remote, entry] { StatusDialog::DialWithProgress(*remote, services_, entry, this); });
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
    connect(tray_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
      switch (reason) {
        case QSystemTrayIcon::DoubleClick:
        case QSystemTrayIcon::Trigger:
          // Desktops that speak the StatusNotifierItem protocol report no
          // double click, so a single click restores as well.
          RestoreFromTray();
          break;
        case QSystemTrayIcon::MiddleClick:
          OnTrayMiddleClick();
          break;
        default:
          break;
      }
    });
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

void MainWindow::OnTrayMiddleClick() {
  if (services_.state.RecordingActive) {
    if (connection_ && connection_->IsStopEnabled()) {
      StopManualRecording();
    }
    return;
  }
  StartManualRecording();
}

}  // namespace minutor
