#include "desk/ui/OptionsPanel.h"

#include "desk/LaunchedPrograms.h"
#include "detection/RemoteAccess.h"
#include "frame/AppState.h"
#include "frame/Options.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/ui/WrappingCheckBox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace minutor {

namespace {

const QString kDialerHelp = QStringLiteral(
    "Im Internet kursieren sogenannte Dialer Programme, die besonders von unseriösen Seiten mit "
    "pornographischem Inhalt eingesetzt werden. Teilweise geschieht das sogar nahezu unbemerkt. Diese "
    "kleinen Programme werden automatisch vom Browser heruntergeladen (kann durch bessere "
    "Sicherheitseinstellungen im Browser verhindert werden). Wenn Sie dann auf der Festplatte sind, tragen "
    "Sie zum Beispiel eine teure 0190iger Nummer als Standard Internetverbindung ein und wählen diese statt "
    "der normalen Verbindung an. Um dies zu verhindern, aktivieren Sie diese Option und lassen Sie in der "
    "nebenstehenden Liste alle Ihre normalen DFÜ Verbindungen angewählt. Dadurch werden alle Verbindungen, "
    "die nicht diese Namen tragen sofort nach dem Verbindungsaufbau wieder getrennt. Es entstehen also "
    "höchstens die Kosten für die ersten Sekunden. Die automatische Überwachung von Minutor muß dafür aktiv "
    "sein und funktionieren.");

QListWidgetItem* AddCheckedItem(QListWidget* list, const QString& text, bool checked) {
  auto* item = new QListWidgetItem(text, list);
  item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
  item->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
  return item;
}

// A list of three lines; it scrolls when it holds more.
QListWidget* ShortList(const QString& name) {
  auto* list = new QListWidget;
  list->setObjectName(name);
  list->setFixedHeight(3 * list->fontMetrics().height() + 2 * list->frameWidth());
  return list;
}

QCheckBox* AddCheck(QLayout* layout, const QString& name, const QString& text) {
  auto* box = new WrappingCheckBox(text);
  box->setObjectName(name);
  layout->addWidget(box);
  return box;
}

}  // namespace

OptionsPanel::OptionsPanel(Services& services, RemoteAccess* remote, QWidget* parent)
    : QWidget(parent), services_(services), remote_(remote) {
  setObjectName(QStringLiteral("Options"));
  BuildControls();
  Load();
}

void OptionsPanel::BuildControls() {
  auto* currencyRow = new QHBoxLayout;
  currency_ = new QComboBox;
  currency_->setObjectName(QStringLiteral("Combo1_0"));
  currency_->addItems(CurrencyNames());
  example_ = new QLabel;
  example_->setObjectName(QStringLiteral("Label1"));
  currencyRow->addWidget(new QLabel(QStringLiteral("Währung:")));
  currencyRow->addWidget(currency_);
  currencyRow->addWidget(example_, 1);

  auto* startBox = new QGroupBox(QStringLiteral("Start"));
  auto* startLayout = new QVBoxLayout(startBox);
  hideToTray_ = AddCheck(startLayout, QStringLiteral("Check2_0"),
                         QStringLiteral("Beim Minimieren nur ein Symbol neben der Uhr zeigen"));
  startMinimized_ = AddCheck(startLayout, QStringLiteral("Check2_1"), QStringLiteral("Minimiert starten"));
  autostart_ = AddCheck(startLayout, QStringLiteral("Check2_2"),
                        QStringLiteral("Minutor beim Hochfahren automatisch mitstarten"));

  auto* programsBox = new QGroupBox(QStringLiteral("Programme starten"));
  auto* programsLayout = new QVBoxLayout(programsBox);
  auto* programsText = new QLabel(
      QStringLiteral("Minutor kann bei Aufbau einer DFÜ Verbindung automatisch andere Programme starten. "
                     "Wählen Sie die entsprechende Verbindung aus und ordnen Sie ihr die zu startenden "
                     "Programme zu. (Gilt nur für von Minutor aufgebaute Verbindungen)"));
  programsText->setWordWrap(true);
  programsLayout->addWidget(programsText);
  auto* choice = new QHBoxLayout;
  samePrograms_ = AddCheck(choice, QStringLiteral("Check1"),
                           QStringLiteral("Für alle Verbindungen die selben Programme"));
  entry_ = new QComboBox;
  entry_->setObjectName(QStringLiteral("Combo1_1"));
  choice->addWidget(entry_, 1);
  programsLayout->addLayout(choice);
  programs_ = ShortList(QStringLiteral("List1"));
  add_ = new QPushButton(QStringLiteral("Programm hinzufügen"));
  add_->setObjectName(QStringLiteral("Command1"));
  remove_ = new QPushButton(QStringLiteral("Programm entfernen"));
  remove_->setObjectName(QStringLiteral("Command2"));
  auto* buttons = new QVBoxLayout;
  buttons->addWidget(add_);
  buttons->addWidget(remove_);
  buttons->addStretch(1);
  auto* list = new QHBoxLayout;
  list->addWidget(programs_, 1);
  list->addLayout(buttons);
  programsLayout->addLayout(list, 1);

  auto* guardBox = new QGroupBox(QStringLiteral("Dialer-Schutz"));
  auto* guardLayout = new QVBoxLayout(guardBox);
  onlyMarked_ = new WrappingCheckBox(QStringLiteral("Nur die markierten DFÜ Einträge zulassen:"));
  onlyMarked_->setObjectName(QStringLiteral("Check2_3"));
  guardLayout->addWidget(onlyMarked_);
  guardList_ = ShortList(QStringLiteral("List2"));
  auto* more = new QLabel(QStringLiteral("<a href=\"mehr\">&gt;&gt; mehr</a>"));
  more->setObjectName(QStringLiteral("Label3"));
  auto* guardRow = new QHBoxLayout;
  guardRow->addWidget(guardList_, 1);
  guardRow->addWidget(more, 0, Qt::AlignBottom);
  guardLayout->addLayout(guardRow);

  // The settings of the program side by side, the programs it starts below
  // them: the window shows everything without scrolling.
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(4, 4, 4, 4);
  grid->setSpacing(4);
  for (QLayout* inner : {startBox->layout(), programsBox->layout(), guardBox->layout()}) {
    inner->setContentsMargins(6, 4, 6, 4);
    inner->setSpacing(3);
  }
  grid->addLayout(currencyRow, 0, 0, 1, 2);
  grid->addWidget(startBox, 1, 0);
  grid->addWidget(guardBox, 1, 1);
  grid->addWidget(programsBox, 2, 0, 1, 2);
  grid->setColumnStretch(0, 3);
  grid->setColumnStretch(1, 2);
  grid->setRowStretch(2, 1);

  connect(currency_, &QComboBox::currentIndexChanged, this, [this] {
    ShowExample();
    SaveOptions();
  });
  for (QCheckBox* box : {hideToTray_, startMinimized_}) {
    connect(box, &QCheckBox::clicked, this, &OptionsPanel::SaveOptions);
  }
  connect(autostart_, &QCheckBox::clicked, this, &OptionsPanel::OnAutostartClicked);
  connect(onlyMarked_, &QCheckBox::clicked, this, [this] {
    ShowGuardList();
    SaveOptions();
  });
  connect(samePrograms_, &QCheckBox::clicked, this, &OptionsPanel::OnSameProgramsClicked);
  connect(entry_, &QComboBox::currentIndexChanged, this, &OptionsPanel::LoadPrograms);
  connect(programs_, &QListWidget::itemChanged, this, &OptionsPanel::SavePrograms);
  connect(guardList_, &QListWidget::itemChanged, this, &OptionsPanel::SaveDenyList);
  connect(add_, &QPushButton::clicked, this, &OptionsPanel::OnAddClicked);
  connect(remove_, &QPushButton::clicked, this, &OptionsPanel::OnRemoveClicked);
  connect(more, &QLabel::linkActivated, this,
          [this] { services_.prompter.Message(kDialerHelp, Prompter::Icon::Information); });
}

void OptionsPanel::Load() {
  loading_ = true;
  const OptionsSettings settings = ReadOptionsSettings(services_.dir);
  currency_->setCurrentIndex(settings.currency);
  samePrograms_->setChecked(settings.samePrograms);
  hideToTray_->setChecked(settings.hideToTray);
  startMinimized_->setChecked(settings.startMinimized);
  autostart_->setChecked(settings.autostart);
  onlyMarked_->setChecked(settings.onlyMarkedEntries);

  const QStringList entries = remote_ != nullptr ? GetDFUe(*remote_) : QStringList();
  entry_->clear();
  entry_->addItems(entries);
  entry_->setEnabled(!settings.samePrograms);

  const QList<DenyEntry> deny = ReadDenyList(services_.dir);
  guardList_->clear();
  for (const QString& name : entries) {
    const bool allowed = std::any_of(deny.begin(), deny.end(), [&](const DenyEntry& e) {
      return e.allowed && e.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    AddCheckedItem(guardList_, name, allowed);
  }
  ShowExample();
  ShowGuardList();
  loading_ = false;
  LoadPrograms();
}

void OptionsPanel::LoadPrograms() {
  const bool wasLoading = loading_;
  loading_ = true;
  programs_->clear();
  for (const ProgramListEntry& program :
       ReadProgramList(services_.dir, ProgramListFile(services_.state, entry_->currentText()))) {
    AddCheckedItem(programs_, program.path, program.checked);
  }
  loading_ = wasLoading;
}

void OptionsPanel::ShowExample() {
  example_->setText(QStringLiteral("Beispiel: 0,00 ") + CurrencySign(currency_->currentIndex()));
}

void OptionsPanel::ShowGuardList() { guardList_->setEnabled(onlyMarked_->isChecked()); }

void OptionsPanel::SaveOptions() {
  if (loading_) {
    return;
  }
  OptionsSettings settings;
  settings.currency = qMax(0, currency_->currentIndex());
  settings.samePrograms = samePrograms_->isChecked();
  settings.hideToTray = hideToTray_->isChecked();
  settings.startMinimized = startMinimized_->isChecked();
  settings.autostart = autostart_->isChecked();
  settings.onlyMarkedEntries = onlyMarked_->isChecked();
  WriteOptionsSettings(services_.dir, settings);
  ApplyOptionsSettings(services_.state, settings);
}

void OptionsPanel::SavePrograms() {
  if (loading_) {
    return;
  }
  QList<ProgramListEntry> list;
  for (int i = 0; i < programs_->count(); ++i) {
    const QListWidgetItem* item = programs_->item(i);
    list.append({item->text(), item->checkState() == Qt::Checked});
  }
  WriteProgramList(services_.dir, ProgramListFile(services_.state, entry_->currentText()), list);
}

void OptionsPanel::SaveDenyList() {
  if (loading_) {
    return;
  }
  QList<DenyEntry> list;
  for (int i = 0; i < guardList_->count(); ++i) {
    const QListWidgetItem* item = guardList_->item(i);
    list.append({item->text(), item->checkState() == Qt::Checked});
  }
  WriteDenyList(services_.dir, list);
}

void OptionsPanel::OnAutostartClicked(bool on) {
  SaveOptions();
  SetAutostart(on, QCoreApplication::applicationFilePath(), services_.prompter);
}

// The list on show stays and is written to the list the box now selects, as
// any change of the list is.
void OptionsPanel::OnSameProgramsClicked() {
  entry_->setEnabled(!samePrograms_->isChecked());
  SaveOptions();
  SavePrograms();
}

void OptionsPanel::AddProgram(const QString& path) {
  if (path.isEmpty()) {
    return;
  }
  loading_ = true;
  AddCheckedItem(programs_, path, true);
  loading_ = false;
  SavePrograms();
}

void OptionsPanel::OnAddClicked() {
  AddProgram(QFileDialog::getOpenFileName(
      this, QStringLiteral("Programm suchen..."), QDir::rootPath(),
      QStringLiteral(
          "Programmdateien (*);;Anwendungen (*.desktop);;Batch Dateien (*.sh);;Alle Dateien (*)")));
}

void OptionsPanel::OnRemoveClicked() {
  delete programs_->currentItem();
  SavePrograms();
}

}  // namespace minutor
