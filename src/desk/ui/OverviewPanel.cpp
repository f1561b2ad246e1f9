#include "desk/ui/OverviewPanel.h"

#include "detection/RemoteAccess.h"
#include "detection/ui/StatusDialog.h"
#include "frame/AppState.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/Names.h"
#include "frame/datadir/NoteFile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace minutor {

namespace {

// Colours come as Windows numbers, blue in the high byte: 128 is dark red.
QColor FromBgr(int value) { return QColor(value & 0xff, (value >> 8) & 0xff, (value >> 16) & 0xff); }

// Refills a list only when its entries changed, so that a choice in the list
// doesn't rebuild the list it was made in. Setting the selection here runs no
// handler: those answer only to the user's own choice.
void ShowList(QComboBox* combo, const QStringList& items, int index) {
  QStringList shown;
  for (int i = 0; i < combo->count(); ++i) {
    shown.append(combo->itemText(i));
  }
  if (shown != items) {
    combo->clear();
    combo->addItems(items);
  }
  combo->setCurrentIndex(index);
}

QLabel* Caption(const QString& text, QWidget* parent) { return new QLabel(text, parent); }

}  // namespace

OverviewPanel::OverviewPanel(Services& services, QWidget* parent)
    : QWidget(parent), services_(services), selection_(services, GetLogonName()) {
  setObjectName(QStringLiteral("Overview"));
  setWindowTitle(QStringLiteral("Übersicht"));
  BuildControls();
  LoadNote();
  selection_.Load(ReadOverviewConfig(services_.dir).value_or(OverviewConfig{}));
  ShowSelection();
}

void OverviewPanel::BuildControls() {
  auto* einwahl = new QGroupBox(QStringLiteral("Einwahl (DFÜ)"), this);
  comDFUe_ = new QComboBox(einwahl);
  comDFUe_->setObjectName(QStringLiteral("comDFÜ"));
  Command1_ = new QPushButton(QStringLiteral("Ausgewählten DFÜ Eintrag wählen"), einwahl);
  Command1_->setObjectName(QStringLiteral("Command1"));
  lblOverview10_ = new FittingLabel(einwahl);
  lblOverview10_->setObjectName(QStringLiteral("lblOverview(10)"));
  auto* einwahlGrid = new QGridLayout(einwahl);
  // The button stands beside the entry box; the box gives up its width to it
  // and shows long entry names cut.
  comDFUe_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  comDFUe_->setMinimumContentsLength(3);
  einwahlGrid->addWidget(Caption(QStringLiteral("DFÜ Eintrag:"), einwahl), 0, 0);
  einwahlGrid->addWidget(comDFUe_, 0, 1);
  einwahlGrid->addWidget(Command1_, 0, 2);
  // A long text of the cheapest entry is set smaller, and beyond that cut;
  // its tooltip holds it whole.
  lblOverview10_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* cheapestRow = new QHBoxLayout;
  cheapestRow->addWidget(Caption(QStringLiteral("Aktuell günstigster Eintrag:"), einwahl));
  cheapestRow->addWidget(lblOverview10_, 1);
  einwahlGrid->addLayout(cheapestRow, 1, 0, 1, 3);
  einwahlGrid->setColumnStretch(1, 1);

  auto* tarif = new QGroupBox(QStringLiteral("Tarif"), this);
  comAnbieter_ = new QComboBox(tarif);
  comAnbieter_->setObjectName(QStringLiteral("comAnbieter"));
  comTarif_ = new QComboBox(tarif);
  comTarif_->setObjectName(QStringLiteral("comTarif"));
  comTarif_->setToolTip(
      QStringLiteral("M = manuell hinzugefügter Tarif, A = durch Autoupdate hinzugefügter Tarif"));
  lblOverview0_ = new QLabel(tarif);
  lblOverview0_->setObjectName(QStringLiteral("lblOverview(0)"));
  Label1_36_ = new QLabel(tarif);
  Label1_36_->setObjectName(QStringLiteral("Label1(36)"));
  lblOverview1_ = new QLabel(tarif);
  lblOverview1_->setObjectName(QStringLiteral("lblOverview(1)"));
  barOverview1_ = new QProgressBar(tarif);
  barOverview1_->setObjectName(QStringLiteral("barOverview(1)"));
  barOverview1_->setRange(0, 1000);
  barOverview1_->setTextVisible(false);
  barOverview1_->setMaximumHeight(12);
  barOverview1_->setMinimumWidth(30);
  lblOverview9_ = new QLabel(tarif);
  lblOverview9_->setObjectName(QStringLiteral("lblOverview(9)"));

  auto* tarifGrid = new QGridLayout(tarif);
  // Provider and tariff share a row; a long tariff name shows cut in the box
  // and whole in its opened list.
  for (QComboBox* combo : {comAnbieter_, comTarif_}) {
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(6);
  }
  auto* choiceRow = new QHBoxLayout;
  choiceRow->addWidget(Caption(QStringLiteral("Anbieter:"), tarif));
  choiceRow->addWidget(comAnbieter_, 2);
  choiceRow->addWidget(Caption(QStringLiteral("Tarif:"), tarif));
  choiceRow->addWidget(comTarif_, 3);
  tarifGrid->addLayout(choiceRow, 0, 0, 1, 3);
  tarifGrid->addWidget(Caption(QStringLiteral("Aktueller Preis:"), tarif), 1, 0);
  tarifGrid->addWidget(lblOverview0_, 1, 1, 1, 2);
  // The allowance, its bar and its share stand in one row, so that the
  // panel keeps room for the budget at any font size.
  auto* allowanceRow = new QHBoxLayout;
  allowanceRow->addWidget(lblOverview1_);
  allowanceRow->addWidget(barOverview1_, 1);
  allowanceRow->addWidget(lblOverview9_);
  tarifGrid->addWidget(Label1_36_, 2, 0);
  tarifGrid->addLayout(allowanceRow, 2, 1, 1, 2);
  tarifGrid->setColumnStretch(1, 1);

  auto* benutzer = new QGroupBox(QStringLiteral("Benutzer und Budget"), this);
  comOverviewUser_ = new QComboBox(benutzer);
  comOverviewUser_->setObjectName(QStringLiteral("comOverviewUser"));
  lblPeriod_ = new QLabel(benutzer);
  lblPeriod_->setObjectName(QStringLiteral("lblZeitraum"));
  auto* benutzerGrid = new QGridLayout(benutzer);
  // The user and the defined period share the first row, whatever the width
  // of the captions below.
  comOverviewUser_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  comOverviewUser_->setMinimumContentsLength(6);
  comOverviewUser_->setMinimumWidth(90);
  auto* userRow = new QHBoxLayout;
  userRow->addWidget(Caption(QStringLiteral("Benutzer:"), benutzer));
  userRow->addWidget(comOverviewUser_);
  userRow->addStretch(1);
  userRow->addWidget(lblPeriod_);
  benutzerGrid->addLayout(userRow, 0, 0, 1, 5);
  const char* budgetCaptions[3] = {"Heute:", "Dieser Monat:", "Definierter Zeitraum:"};
  // The projection of a rest stands small at the row's end: the day it
  // lasts until and what is left per day, or at a large font only the day;
  // the row's tooltip tells it whole.
  QFont small = benutzer->font();
  small.setPointSizeF(small.pointSizeF() * 0.85);
  for (int i = 0; i < 3; ++i) {
    const auto k = static_cast<std::size_t>(i);
    lblBudgetRest_[k] = new QLabel(benutzer);
    lblBudgetRest_[k]->setObjectName(QStringLiteral("lblOverview(%1)").arg(i + 2));
    barBudget_[k] = new QProgressBar(benutzer);
    barBudget_[k]->setObjectName(QStringLiteral("barOverview(%1)").arg(i + 2));
    barBudget_[k]->setRange(0, 100);
    barBudget_[k]->setTextVisible(false);
    barBudget_[k]->setMaximumHeight(12);
    barBudget_[k]->setMinimumWidth(30);
    lblBudgetPercent_[k] = new QLabel(benutzer);
    lblBudgetPercent_[k]->setObjectName(QStringLiteral("lblOverview(%1)").arg(i + 6));
    lblBudgetProjection_[k] = new ShorteningLabel(benutzer);
    lblBudgetProjection_[k]->setObjectName(QStringLiteral("lblProjection(%1)").arg(i));
    lblBudgetProjection_[k]->setFont(small);
    benutzerGrid->addWidget(Caption(QString::fromUtf8(budgetCaptions[i]), benutzer), i + 1, 0);
    benutzerGrid->addWidget(lblBudgetRest_[k], i + 1, 1, Qt::AlignRight);
    benutzerGrid->addWidget(barBudget_[k], i + 1, 2);
    benutzerGrid->addWidget(lblBudgetPercent_[k], i + 1, 3, Qt::AlignRight);
    benutzerGrid->addWidget(lblBudgetProjection_[k], i + 1, 4);
  }
  benutzerGrid->setColumnStretch(2, 1);
  benutzerGrid->setVerticalSpacing(1);

  Check1_ = new QCheckBox(QStringLiteral("Überwachung"), this);
  Check1_->setObjectName(QStringLiteral("Check1"));
  chkFeiertag_ = new QCheckBox(QStringLiteral("Feiertag"), this);
  chkFeiertag_->setObjectName(QStringLiteral("chkFeiertag"));
  chkKanalbuendelung_ = new QCheckBox(QStringLiteral("Kanalbündelung (Kosten doppelt zählen)"), this);
  chkKanalbuendelung_->setObjectName(QStringLiteral("chkKanalbündelung"));
  cmdStart_ = new QPushButton(QStringLiteral("Aufzeichnung manuell starten"), this);
  cmdStart_->setObjectName(QStringLiteral("cmdStart"));

  auto* switches = new QGridLayout;
  switches->addWidget(Check1_, 0, 0);
  switches->addWidget(chkFeiertag_, 0, 1);
  switches->addWidget(cmdStart_, 0, 2, Qt::AlignRight);
  switches->addWidget(chkKanalbuendelung_, 1, 0, 1, 3);
  switches->setColumnStretch(2, 1);
  switches->setVerticalSpacing(0);

  auto* notizen = new QGroupBox(QStringLiteral("Notizen"), this);
  Notiz_ = new QPlainTextEdit(notizen);
  Notiz_->setObjectName(QStringLiteral("Notiz"));
  auto* notizLayout = new QVBoxLayout(notizen);
  notizLayout->addWidget(Notiz_);
  // The window keeps its size at any font: the note gives up its height
  // first, so that the rows above keep theirs.
  Notiz_->setMinimumHeight(Notiz_->fontMetrics().lineSpacing() * 2);
  notizen->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);

  // The frame gives the panel about 470 x 400 pixels; the groups keep tight.
  for (QGroupBox* group : {einwahl, tarif, benutzer, notizen}) {
    group->layout()->setContentsMargins(4, 2, 4, 2);
    group->layout()->setSpacing(2);
    if (auto* grid = qobject_cast<QGridLayout*>(group->layout())) {
      grid->setHorizontalSpacing(4);
    }
  }
  for (QGroupBox* group : {einwahl, tarif, benutzer}) {
    group->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  }
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 2, 4, 2);
  layout->setSpacing(2);
  layout->addWidget(einwahl);
  layout->addWidget(tarif);
  layout->addWidget(benutzer);
  layout->addLayout(switches);
  layout->addWidget(notizen, 1);

  connect(comDFUe_, &QComboBox::activated, this, &OverviewPanel::OnEntryChosen);
  connect(Command1_, &QPushButton::clicked, this, &OverviewPanel::OnDialClicked);
  connect(comAnbieter_, &QComboBox::activated, this, &OverviewPanel::OnProviderChosen);
  connect(comTarif_, &QComboBox::activated, this, &OverviewPanel::OnTariffChosen);
  connect(comOverviewUser_, &QComboBox::activated, this, &OverviewPanel::OnUserChosen);
  connect(Check1_, &QCheckBox::clicked, this, &OverviewPanel::OnMonitoringClicked);
  connect(chkFeiertag_, &QCheckBox::clicked, this, &OverviewPanel::OnHolidayClicked);
  connect(chkKanalbuendelung_, &QCheckBox::clicked, this,
          [this](bool on) { selection_.SetChannelBundling(on); });
  connect(cmdStart_, &QPushButton::clicked, this, [this] {
    // By hand the tariff chosen here counts, not the one of a detected entry.
    services_.state.DetectionSource = 0;
    emit startRequested();
  });
  connect(Notiz_, &QPlainTextEdit::textChanged, this, &OverviewPanel::OnNoteChanged);
}

void OverviewPanel::LoadNote() {
  noteLoading_ = true;
  bool whole = true;
  Notiz_->setPlainText(minutor::LoadNote(services_.dir, &whole));
  // Only the beginning of a huge note is shown; saving it would cut off the
  // rest, so such a note is not edited here.
  Notiz_->setReadOnly(!whole);
  Notiz_->setToolTip(whole ? QString()
                           : QStringLiteral("Die Notiz ist zu lang, um sie hier zu bearbeiten; gezeigt wird "
                                            "nur ihr Anfang."));
  noteLoading_ = false;
}

void OverviewPanel::SetRemoteAccess(RemoteAccess* remote) {
  remote_ = remote;
  if (remote_ != nullptr) {
    selection_.SetEntries(GetDFUe(*remote_));
    ShowSelection();
  }
}

void OverviewPanel::SetMonitoringChecked(bool on) {
  // The caller has set the flag and written the file; the box only follows.
  services_.state.MonitoringOn = on;
  Check1_->setChecked(on);
}

void OverviewPanel::Refresh() {
  selection_.Load(selection_.Current());
  ShowSelection();
}

void OverviewPanel::ShowSelection() {
  const AppState& state = services_.state;
  ShowList(comDFUe_, selection_.Entries(), selection_.EntryIndex());
  lblOverview10_->SetText(selection_.CheapestText());
  lblOverview10_->setToolTip(selection_.CheapestText());
  ShowList(comAnbieter_, selection_.Providers(), selection_.ProviderIndex());
  QStringList labels;
  for (const TarifEintrag& tarif : selection_.Tariffs()) {
    labels.append(tarif.Label);
  }
  ShowList(comTarif_, labels, selection_.TariffIndex());
  ShowList(comOverviewUser_, selection_.Users(), selection_.UserIndex());

  lblOverview0_->setText(selection_.PriceText());
  const FreeAllowance& allowance = selection_.Allowance();
  Label1_36_->setText(allowance.caption);
  lblOverview1_->setText(allowance.text);
  QPalette palette = lblOverview1_->palette();
  palette.setColor(QPalette::WindowText, FromBgr(static_cast<int>(allowance.colour)));
  lblOverview1_->setPalette(palette);
  barOverview1_->setVisible(allowance.barVisible);
  barOverview1_->setValue(std::clamp(qRound(allowance.percent * 10), 0, 1000));
  lblOverview9_->setVisible(allowance.barVisible);
  lblOverview9_->setText(allowance.percentText);

  const auto& budget = selection_.Budget();
  for (std::size_t i = 0; i < 3; ++i) {
    lblBudgetRest_[i]->setText(budget ? (*budget)[i].rest : QStringLiteral("0.00 ") + state.Waehrung);
    lblBudgetPercent_[i]->setText(budget ? (*budget)[i].percent : QString());
    barBudget_[i]->setValue(budget ? (*budget)[i].bar : 0);
    const BudgetProjectionLine& projection = selection_.Projections()[i];
    // A used-up rest says so itself; the row has no room to repeat it.
    lblBudgetProjection_[i]->SetTexts(
        projection.until.isEmpty() ? QStringList() : QStringList{projection.Text(), projection.until});
    // The rule and what is left per day are told wherever the pointer
    // rests on the budget's row.
    for (QWidget* part : std::initializer_list<QWidget*>{lblBudgetProjection_[i], lblBudgetRest_[i],
                                                         barBudget_[i], lblBudgetPercent_[i]}) {
      part->setToolTip(projection.toolTip);
    }
  }
  lblPeriod_->setText(selection_.PeriodText());

  Check1_->setEnabled(!selection_.MonitoringLocked());
  Check1_->setChecked(state.MonitoringOn);
  chkFeiertag_->setChecked(state.FeiertagAktiv);
  chkKanalbuendelung_->setChecked(state.KanalbuendelungAktiv);
}

void OverviewPanel::OnEntryChosen(int index) {
  selection_.ChooseEntry(index);
  ShowSelection();
}

void OverviewPanel::OnDialClicked() {
  if (const QString refusal = selection_.DialRefusal(); !refusal.isEmpty()) {
    services_.prompter.Message(refusal, Prompter::Icon::Information);
    return;
  }
  if (remote_ == nullptr || selection_.Entry().isEmpty()) {
    return;
  }
  StatusDialog::DialWithProgress(*remote_, services_, selection_.Entry(), this);
}

void OverviewPanel::OnProviderChosen(int index) {
  selection_.ChooseProvider(index);
  ShowSelection();
}

void OverviewPanel::OnTariffChosen(int index) {
  selection_.ChooseTariff(index);
  ShowSelection();
}

void OverviewPanel::OnUserChosen(int index) {
  const bool taken = selection_.ChooseUser(index, isVisible());
  ShowSelection();
  if (taken) {
    emit activeUserChanged(services_.state.ActiveUser);
  }
}

void OverviewPanel::OnHolidayClicked(bool on) {
  selection_.SetHoliday(on, isVisible());
  lblOverview0_->setText(selection_.PriceText());
}

void OverviewPanel::OnMonitoringClicked(bool on) { selection_.SetMonitoring(on); }

void OverviewPanel::OnNoteChanged() {
  if (!noteLoading_) {
    SaveNote(services_.dir, Notiz_->toPlainText());
  }
}

}  // namespace minutor
