#include "metering/ui/ConnectionPanel.h"

#include "detection/MonitoringLoop.h"
#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Services.h"
#include "frame/StartUp.h"
#include "metering/ConnectionChecks.h"
#include "metering/ConnectionSettings.h"
#include "metering/TrafficSource.h"
#include "online/ui/ConnectionServices.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace minutor {

namespace {

const QString kTagSuffix = QStringLiteral(".Tag");
const char* const kTagProperty = "Tag";

// One line of a group: its caption and the labels behind it.
struct Row {
  QString caption;
  QStringList controls;
};

}  // namespace

ConnectionPanel::ConnectionPanel(Services& services, TrafficSource& traffic, QWidget* parent)
    : QWidget(parent),
      services_(services),
      traffic_(traffic),
      meter_(services, traffic, *this),
      alarms_(services, *this) {
  setObjectName(QStringLiteral("Connection"));
  setWindowTitle(QStringLiteral("Verbindungsübersicht"));
  BuildControls();
  ShowLabels();

  timerStarter_.setSingleShot(true);
  timerStarter_.setInterval(1);
  timerStarter_.setObjectName(QStringLiteral("TimerStarter"));
  connect(&timerStarter_, &QTimer::timeout, this, &ConnectionPanel::OnTimerStarter);

  // One timer stands for RSTimer1 and RSTimer2, as only one of them runs.
  rsTimer_.setTimerType(Qt::PreciseTimer);
  rsTimer_.setInterval(1000);
  rsTimer_.setObjectName(QStringLiteral("RSTimer"));
  connect(&rsTimer_, &QTimer::timeout, this, &ConnectionPanel::OnTick);
}

QLabel* ConnectionPanel::AddLabel(const QString& controlName, const QString& text) {
  auto* label = new QLabel(text);
  label->setObjectName(controlName);
  labels_.insert(controlName, label);
  return label;
}

void ConnectionPanel::BuildControls() {
  auto group = [this](const QString& title, const QList<Row>& rows) {
    auto* box = new QGroupBox(title);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(6, 2, 6, 2);
    grid->setVerticalSpacing(1);
    for (int r = 0; r < rows.size(); ++r) {
      grid->addWidget(new QLabel(rows[r].caption), r, 0);
      for (int c = 0; c < rows[r].controls.size(); ++c) {
        grid->addWidget(AddLabel(rows[r].controls[c]), r, c + 1);
      }
    }
    grid->setColumnStretch(1, 1);
    return box;
  };

  auto* connection = group(QStringLiteral("Daten der aktuellen Verbindung"),
                           {{QStringLiteral("Verbindungsname:"), {QStringLiteral("lblConnectionName")}},
                            {QStringLiteral("Startzeit:"), {QStringLiteral("lblStartzeit")}},
                            {QStringLiteral("Dauer:"), {QStringLiteral("lblDauer")}},
                            {QStringLiteral("Gerät:"), {QStringLiteral("lblConnectionSpeed")}}});
  auto* costs = group(QStringLiteral("Zeit und Gebühren:"),
                      {{QStringLiteral("Kosten:"), {QStringLiteral("lblKosten")}},
                       {QStringLiteral("Einheiten:"), {QStringLiteral("lblEinheiten")}}});
  auto* traffic = group(
      QStringLiteral("Transfervolumen:"),
      {{QStringLiteral("Empfangen:"), {QStringLiteral("lblBytesIn"), QStringLiteral("lblBytesInPerSecond")}},
       {QStringLiteral("Gesendet:"), {QStringLiteral("lblBytesOut"), QStringLiteral("lblBytesOutPerSecond")}},
       {QStringLiteral("Gesamt:"),
        {QStringLiteral("lblBytesInOut"), QStringLiteral("lblBytesInOutPerSecond")}}});
  auto* tariff = group(
      QStringLiteral("Aktueller Tarif:"),
      {{QStringLiteral("Tarifname:"), {QStringLiteral("lblTarifname")}},
       {QStringLiteral("Kosten:"), {QStringLiteral("lblEuroProMinute"), QStringLiteral("lblEinheit")}}});
  // The caption of the free allowance is the meter's: time or transfer.
  auto* tariffGrid = static_cast<QGridLayout*>(tariff->layout());
  // Tariff names are long ("Funkwelle - Tag und Nacht"): the name takes the
  // whole row and breaks onto a second line rather than being cut.
  QLabel* tariffName = labels_.value(QStringLiteral("lblTarifname"));
  tariffGrid->removeWidget(tariffName);
  tariffGrid->addWidget(tariffName, 0, 1, 1, 2);
  tariffName->setWordWrap(true);
  tariffGrid->itemAtPosition(0, 0)->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  tariffGrid->addWidget(AddLabel(QStringLiteral("lblRestFreiCaption")), 2, 0);
  tariffGrid->addWidget(AddLabel(QStringLiteral("lblRestFrei")), 2, 1);

  auto* budget =
      group(QStringLiteral("Budget"), {{QStringLiteral("Benutzer:"), {QStringLiteral("lblBenutzer")}}});
  auto* rests = group(QStringLiteral("Restbeträge:"),
                      {{QStringLiteral("Tag:"), {QStringLiteral("lblRestTag")}},
                       {QStringLiteral("Monat:"), {QStringLiteral("lblRestMonat")}},
                       {QStringLiteral("Definiert:"), {QStringLiteral("lblRestDefiniert")}}});
  static_cast<QGridLayout*>(budget->layout())->addWidget(rests, 1, 0, 1, 2);

  // The services' texts are long: each stands under its caption.
  auto* services = new QGroupBox(QStringLiteral("Services"));
  auto* serviceRows = new QVBoxLayout(services);
  serviceRows->setContentsMargins(6, 2, 6, 2);
  serviceRows->setSpacing(1);
  serviceRows->addWidget(new QLabel(QStringLiteral("Updates:")));
  serviceRows->addWidget(
      AddLabel(QStringLiteral("lblTarifupdates"), QStringLiteral("Keine Tarife gefunden.")));
  serviceRows->addWidget(
      AddLabel(QStringLiteral("lblProgrammupdates"), QStringLiteral("Kein Programmupd. gefunden.")));
  serviceRows->addWidget(AddLabel(QStringLiteral("Label1"), QStringLiteral("Zeitsynchronisierung:")));
  serviceRows->addWidget(
      AddLabel(QStringLiteral("lblTimeSync"), QStringLiteral("Uhrzeit wird nicht korrigiert.")));
  check1_ = new QCheckBox(QStringLiteral("&Automatisch"));
  check1_->setObjectName(QStringLiteral("Check1"));
  serviceRows->addWidget(check1_);

  cmdStop_ = new QPushButton(QStringLiteral("Aufzeichnung &stoppen"));
  cmdStop_->setObjectName(QStringLiteral("cmdStop"));
  chkKanalbuendelung_ = new QCheckBox(QStringLiteral("Kanalbünd. (Kosten doppelt)"));
  chkKanalbuendelung_->setObjectName(QStringLiteral("chkKanalbündelung"));
  check2_ = new QCheckBox(QStringLiteral("Über&wachung"));
  check2_->setObjectName(QStringLiteral("Check2"));
  check3_ = new QCheckBox(QStringLiteral("Kleines &Fenster zeigen"));
  check3_->setObjectName(QStringLiteral("Check3"));

  auto* body = new QFrame;
  body->setObjectName(QStringLiteral("wndConnection"));
  body->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  auto* grid = new QGridLayout(body);
  grid->addWidget(connection, 0, 0);
  grid->addWidget(costs, 1, 0);
  grid->addWidget(traffic, 2, 0);
  grid->addWidget(tariff, 0, 1);
  grid->addWidget(budget, 1, 1);
  grid->addWidget(services, 2, 1);
  // The panel has little room beside the side bar: the controls stand in
  // two columns under the groups.
  auto* left = new QVBoxLayout;
  left->addWidget(cmdStop_);
  left->addWidget(chkKanalbuendelung_);
  auto* right = new QVBoxLayout;
  right->addWidget(check2_);
  right->addWidget(check3_);
  grid->addLayout(left, 3, 0);
  grid->addLayout(right, 3, 1);
  grid->setContentsMargins(4, 4, 4, 4);
  grid->setSpacing(4);
  grid->setRowStretch(4, 1);
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->addWidget(body);

  // Only the user's clicks save: filling a box from its file doesn't.
  connect(check1_, &QCheckBox::clicked, this, [this](bool on) {
    SaveTimesyncState(services_.dir, on);
    if (!on) {
      meter_.SetTimeSyncPending(false);
    }
  });
  connect(check2_, &QCheckBox::clicked, this, [this](bool on) {
    services_.state.MonitoringOn = on;
    SaveMonitoring(services_.dir, on);
  });
  connect(check3_, &QCheckBox::clicked, this, [this](bool on) {
    SaveSmallWindowState(services_.dir, on);
    meter_.SetKleinesFenster(on);
    if (meter_.IsRecording()) {
      emit smallWindowWanted(on);
    }
  });
  connect(chkKanalbuendelung_, &QCheckBox::clicked, this, [this](bool on) { meter_.SetKanalbuendelung(on); });
  connect(cmdStop_, &QPushButton::clicked, this, &ConnectionPanel::StopByUser);

  connectionServices_ = new ConnectionServices(
      services_, meter_,
      {labels_.value(QStringLiteral("lblTarifupdates")), labels_.value(QStringLiteral("lblProgrammupdates")),
       labels_.value(QStringLiteral("lblTimeSync")), labels_.value(QStringLiteral("Label1"))},
      this);
}

void ConnectionPanel::SetOnline(Fetcher* fetcher, ClockSetter* clockSetter) {
  connectionServices_->SetOnline(fetcher, clockSetter);
}

void ConnectionPanel::StartServices() { connectionServices_->Start(); }

bool ConnectionPanel::Load() {
  if (!TarifCheck(services_)) {
    return false;
  }
  check2_->setChecked(services_.state.MonitoringOn);
  meter_.SetTarifupdatePending(LoadAutoupdateState(services_.dir, services_.clock.Now().date()));
  const bool timeSync = LoadTimesyncState(services_.dir);
  check1_->setChecked(timeSync);
  if (timeSync) {
    labels_.value(QStringLiteral("lblTimeSync"))->setText(QStringLiteral("Uhrzeit wird korrigiert..."));
    meter_.SetTimeSyncPending(true);
  }
  const bool smallWindow = LoadSmallWindowState(services_.dir);
  check3_->setChecked(smallWindow);
  meter_.SetKleinesFenster(smallWindow);

  alarms_.LoadTimeLeft();
  meter_.Counter_Start();
  chkKanalbuendelung_->setChecked(meter_.Kanalbuendelung());
  ShowLabels();
  emit recordingStarted();
  return true;
}

void ConnectionPanel::CounterStop() { meter_.Counter_Stop(); }

void ConnectionPanel::StopByUser() {
  if (!ConfirmManualStop(services_)) {
    return;
  }
  check2_->setChecked(services_.state.MonitoringOn);
  CounterStop();
}

bool ConnectionPanel::IsStopEnabled() const { return cmdStop_->isEnabled(); }

void ConnectionPanel::SetMonitoringChecked(bool on) { check2_->setChecked(on); }

QString ConnectionPanel::LabelText(const QString& controlName) const {
  if (controlName.endsWith(kTagSuffix)) {
    const QLabel* label = labels_.value(controlName.chopped(kTagSuffix.size()));
    return label ? label->property(kTagProperty).toString() : QString();
  }
  const QLabel* label = labels_.value(controlName);
  return label ? label->text() : QString();
}

void ConnectionPanel::showEvent(QShowEvent* event) {
  const bool mayChange = !services_.state.NoMonitoringSettings;
  check2_->setEnabled(mayChange);
  cmdStop_->setEnabled(mayChange);
  check2_->setChecked(services_.state.MonitoringOn);
  QWidget::showEvent(event);
}

void ConnectionPanel::ShowSmallWindow() { emit smallWindowWanted(true); }

void ConnectionPanel::StartTimerStarter() { timerStarter_.start(); }

void ConnectionPanel::ShowCaption(const QString& caption) { emit captionChanged(caption); }

void ConnectionPanel::DetectConnection(DetectedConnection& connection) {
  QString interfaceName;
  if (detection_ != nullptr) {
    detection_->DetectConnection(connection, &interfaceName);
  }
  traffic_.SetInterface(interfaceName);
}

void ConnectionPanel::LaunchPrograms() {
  minutor::LaunchPrograms(services_, meter_.Labels().lblConnectionName, *launcher_);
}

void ConnectionPanel::CheckConnectionEnd() {
  if (detection_ != nullptr && detection_->ConnectionEnded()) {
    meter_.Counter_Stop();
  }
}

void ConnectionPanel::GetTimeLimit() { alarms_.GetTimeLimit(); }

void ConnectionPanel::GetBudget() { alarms_.GetBudget(); }

void ConnectionPanel::RefreshBudget() {
  alarms_.GetBudget();
  ShowLabels();
}

void ConnectionPanel::GetNewBudget(bool monthChanged) { alarms_.GetNewBudget(monthChanged); }

void ConnectionPanel::CheckBudget() { alarms_.CheckBudget(static_cast<double>(meter_.Fields().Kosten)); }

void ConnectionPanel::CheckDayLimit() { alarms_.CheckDayLimit(meter_.Labels().lblDauer); }

void ConnectionPanel::CheckMonthLimit() { alarms_.CheckMonthLimit(meter_.Labels().lblDauer); }

void ConnectionPanel::PlaySound(const QString& path) {
  if (alarmOutput_ != nullptr) {
    alarmOutput_->PlaySound(path);
  }
}

void ConnectionPanel::BudgetCrossed(int kind) {
  if (alarmOutput_ != nullptr) {
    alarmOutput_->BudgetCrossed(kind);
  }
}

void ConnectionPanel::ShowAlert(int kind) {
  if (alarmOutput_ != nullptr) {
    alarmOutput_->ShowAlert(kind);
  }
}

void ConnectionPanel::ShowConStop() {
  if (alarmOutput_ != nullptr) {
    alarmOutput_->ShowConStop();
  }
}

void ConnectionPanel::RecordingStopped() {
  timerStarter_.stop();
  rsTimer_.stop();
  ShowLabels();
  emit recordingStopped();
}

void ConnectionPanel::OnTimerStarter() {
  meter_.TimerStarterTick();
  ShowLabels();
  if (meter_.IsTimerEnabled()) {
    rsTimer_.start();
  }
  emit ticked();
}

void ConnectionPanel::OnTick() {
  meter_.Tick();
  ShowLabels();
  if (!meter_.IsTimerEnabled()) {
    rsTimer_.stop();
  }
  emit ticked();
}

void ConnectionPanel::ShowLabels() {
  const MeterLabels& texts = meter_.Labels();
  for (const QString& name : MeterLabels::ControlNames()) {
    if (QLabel* label = labels_.value(name)) {
      label->setText(texts.Text(name));
    }
  }
  labels_.value(QStringLiteral("lblStartzeit"))->setProperty(kTagProperty, texts.lblStartzeitTag);
  labels_.value(QStringLiteral("lblTarifname"))->setProperty(kTagProperty, texts.lblTarifnameTag);
  for (int kind = 1; kind <= 3; ++kind) {
    const ConnectionAlarms::RestLabel& rest = alarms_.Label(kind);
    QLabel* label = labels_.value(ConnectionAlarms::kLabelNames[static_cast<std::size_t>(kind - 1)]);
    label->setText(rest.text);
    // Colours are Windows numbers, blue in the high byte.
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText,
                     QColor(rest.colour & 0xff, (rest.colour >> 8) & 0xff, (rest.colour >> 16) & 0xff));
    label->setPalette(palette);
    label->setProperty(kTagProperty, rest.tag);
  }
}

}  // namespace minutor
