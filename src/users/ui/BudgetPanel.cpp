#include "users/ui/BudgetPanel.h"

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "users/Budget.h"
#include "users/BudgetProjection.h"
#include "users/UserAccounts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QVBoxLayout>

#include <cmath>

namespace minutor {

namespace {

// The control indices of the fields, as their names carry them.
constexpr std::array<int, 5> kFieldIndex = {0, 2, 3, 4, 5};

QString AmountText(double amount) { return GeneralText(amount); }

}  // namespace

BudgetPanel::BudgetPanel(Services& services, QWidget* parent) : QWidget(parent), services_(services) {
  setObjectName(QStringLiteral("Budget"));
  setWindowTitle(QStringLiteral("Budgeteinstellungen"));
  BuildControls();
  GetUsers(services_.state.ActiveUser);
  GetSounds();
  LoadBudgetOptions();
  if (chkBudget_[0]->isChecked()) {
    OnSharedClicked(true);
  } else {
    SelectBudgetUser(false);
    ShowBudget(comBudgetUser_->currentText());
  }
}

void BudgetPanel::BuildControls() {
  // The title runs into the help text: the panel's lines are counted, so
  // that it needs no scrolling at larger fonts with every budget set.
  auto* help = new QLabel(QStringLiteral("<b>Budgeteinstellungen</b>&nbsp;&nbsp; "
                                         "Hier können Sie für jeden Benutzer ein seperates Budget anlegen "
                                         "oder für alle Benutzer ein Gesamtbudget. "
                                         "Das Budget gibt an, wieviel Sie für einen bestimmten Zeitraum "
                                         "maximal ausgeben wollen. Dies hilft Ihnen bei "
                                         "der Ausgabenplanung."),
                          this);
  help->setTextFormat(Qt::RichText);
  help->setWordWrap(true);

  comBudgetUser_ = new QComboBox(this);
  comBudgetUser_->setObjectName(QStringLiteral("comBudgetUser"));
  userCaption_ = new QLabel(QStringLiteral("Benutzer:"), this);
  const char* captions[3] = {"Für alle Benutzer gilt das selbe Budget",
                             "Akustische Warnung bei Überschreitung",
                             "Visuelle Warnung bei Überschreitung (Hinweisfenster)"};
  for (int i = 0; i < 3; ++i) {
    chkBudget_[static_cast<std::size_t>(i)] = new QCheckBox(QString::fromUtf8(captions[i]), this);
    chkBudget_[static_cast<std::size_t>(i)]->setObjectName(QStringLiteral("chkBudget(%1)").arg(i));
  }
  comBudgetTon_ = new QComboBox(this);
  comBudgetTon_->setObjectName(QStringLiteral("comBudgetTon"));

  // The user and the warning sound share a row, so that the panel needs no
  // scrolling at larger fonts either.
  for (QComboBox* combo : {comBudgetUser_, comBudgetTon_}) {
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(8);
  }
  auto* top = new QGridLayout;
  top->setVerticalSpacing(2);
  top->addWidget(userCaption_, 0, 0);
  top->addWidget(comBudgetUser_, 0, 1);
  top->addWidget(new QLabel(QStringLiteral("Warnton:"), this), 0, 2);
  top->addWidget(comBudgetTon_, 0, 3);
  top->addWidget(chkBudget_[0], 1, 0, 1, 4);
  top->addWidget(new QLabel(QStringLiteral("Alarmierung:"), this), 2, 0);
  top->addWidget(chkBudget_[1], 2, 1, 1, 3);
  // The longest caption takes the whole width.
  top->addWidget(chkBudget_[2], 3, 0, 1, 4);
  top->setColumnStretch(1, 1);
  top->setColumnStretch(3, 1);

  auto* amounts = new QGroupBox(QStringLiteral("Beträge einstellen:"), this);
  auto* grid = new QGridLayout(amounts);
  grid->setVerticalSpacing(2);
  grid->setContentsMargins(6, 2, 6, 4);
  const char* rows[3] = {"Am Tag", "Im Monat", "Im u.g. Zeitraum"};
  for (int i = 0; i < 5; ++i) {
    txtBudget_[static_cast<std::size_t>(i)] = new QLineEdit(amounts);
    txtBudget_[static_cast<std::size_t>(i)]->setObjectName(
        QStringLiteral("txtBudget(%1)").arg(kFieldIndex[static_cast<std::size_t>(i)]));
  }
  for (int i = 0; i < 3; ++i) {
    auto* bar = new QScrollBar(Qt::Vertical, amounts);
    bar->setObjectName(QStringLiteral("scrlBudget(%1)").arg(kFieldIndex[static_cast<std::size_t>(i)]));
    // Negated, so that "up" raises the amount.
    bar->setRange(-9999, 0);
    bar->setFixedHeight(txtBudget_[0]->sizeHint().height());
    scrlBudget_[static_cast<std::size_t>(i)] = bar;
    QLineEdit* field = txtBudget_[static_cast<std::size_t>(i)];
    field->setMaximumWidth(70);
    grid->addWidget(new QLabel(QString::fromUtf8(rows[i]), amounts), i, 0);
    grid->addWidget(field, i, 1);
    grid->addWidget(bar, i, 2);
    grid->addWidget(new QLabel(services_.state.Waehrung + QStringLiteral(" nicht überschreiten."), amounts),
                    i, 3);
    connect(bar, &QScrollBar::valueChanged, this, [this, field](int value) {
      if (loading_) {
        return;
      }
      field->setText(QString::number(std::abs(value)));
      SaveBudget();
    });
    connect(field, &QLineEdit::textEdited, this, [bar](const QString& text) {
      const double value = -LeadingNumber(text);
      const QSignalBlocker quiet(bar);
      bar->setValue(std::abs(value) < 1.0e9 ? static_cast<int>(value) : 0);
    });
    connect(field, &QLineEdit::editingFinished, this, [this, field, bar] {
      field->setText(QString::number(std::abs(bar->value())));
      SaveBudget();
    });
  }
  auto* period = new QHBoxLayout;
  period->addWidget(new QLabel(QStringLiteral("Vom:"), amounts));
  period->addWidget(txtBudget_[3]);
  period->addWidget(new QLabel(QStringLiteral("bis zum:"), amounts));
  period->addWidget(txtBudget_[4]);
  period->addStretch(1);
  grid->addLayout(period, 3, 0, 1, 4);
  grid->setColumnStretch(3, 1);
  for (QLineEdit* date : {txtBudget_[3], txtBudget_[4]}) {
    connect(date, &QLineEdit::editingFinished, this, [this, date] {
      date->setText(NormaliseDate(ParseShortDate(date->text())));
      SaveBudget();
    });
  }

  // The three rests stand side by side, each in a column of its own, so
  // that large amounts keep within the frame: the rest, its bar, and
  // beneath in small type its projection.
  auto* current = new QGroupBox(QStringLiteral("Aktuell:"), this);
  auto* restGrid = new QGridLayout(current);
  restGrid->setContentsMargins(6, 0, 6, 0);
  restGrid->setVerticalSpacing(0);
  restGrid->setHorizontalSpacing(8);
  QFont small = current->font();
  small.setPointSizeF(small.pointSizeF() * 0.85);
  const char* restCaptions[3] = {"Tag:", "Monat:", "Definiert:"};
  const char* restNames[3] = {"lblRestTag", "lblRestMonat", "lblRestDefiniert"};
  for (int i = 0; i < 3; ++i) {
    auto k = static_cast<std::size_t>(i);
    lblRest_[k] = new QLabel(current);
    lblRest_[k]->setObjectName(QString::fromLatin1(restNames[i]));
    barRest_[k] = new QProgressBar(current);
    barRest_[k]->setRange(0, 100);
    barRest_[k]->setTextVisible(false);
    barRest_[k]->setMaximumHeight(6);
    barRest_[k]->setMinimumWidth(30);
    lblProjection_[k] = new QLabel(current);
    lblProjection_[k]->setObjectName(QStringLiteral("lblProjection(%1)").arg(i));
    lblProjection_[k]->setFont(small);
    lblProjection_[k]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* restRow = new QHBoxLayout;
    restRow->addWidget(new QLabel(QString::fromUtf8(restCaptions[i]), current));
    restRow->addStretch(1);
    restRow->addWidget(lblRest_[k]);
    restGrid->addLayout(restRow, 0, i);
    restGrid->addWidget(barRest_[k], 1, i);
    restGrid->addWidget(lblProjection_[k], 2, i);
    restGrid->setColumnStretch(i, 1);
  }

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 4, 6, 4);
  layout->setSpacing(2);
  layout->addWidget(help);
  layout->addLayout(top);
  layout->addWidget(amounts);
  layout->addWidget(current);
  layout->addStretch(1);

  connect(comBudgetUser_, &QComboBox::activated, this, [this] {
    SelectBudgetUser(true);
    ShowBudget(comBudgetUser_->currentText());
  });
  connect(chkBudget_[0], &QCheckBox::clicked, this, &BudgetPanel::OnSharedClicked);
  connect(chkBudget_[1], &QCheckBox::clicked, this, &BudgetPanel::SaveBudgetOptions);
  connect(chkBudget_[2], &QCheckBox::clicked, this, &BudgetPanel::SaveBudgetOptions);
  connect(comBudgetTon_, &QComboBox::activated, this, &BudgetPanel::SaveBudgetOptions);
}

void BudgetPanel::GetUsers(const QString& select) {
  comBudgetUser_->clear();
  for (const QString& file : services_.dir.ListFiles(QStringLiteral("Benutzer"), QStringLiteral("*.bdg"))) {
    comBudgetUser_->addItem(file.chopped(4));
  }
  int index = -1;
  for (int i = 0; i < comBudgetUser_->count() && !select.isEmpty(); ++i) {
    if (comBudgetUser_->itemText(i).toLower() == select.toLower()) {
      index = i;
    }
  }
  comBudgetUser_->setCurrentIndex(index < 0 && comBudgetUser_->count() > 0 ? 0 : index);
  shownIndex_ = comBudgetUser_->currentIndex();
}

void BudgetPanel::GetSounds() {
  for (const QString& file : services_.dir.ListFiles(QStringLiteral("Sounds"), QStringLiteral("*.wav"))) {
    comBudgetTon_->addItem(file.chopped(4));
  }
}

void BudgetPanel::LoadBudgetOptions() {
  optionsLoading_ = true;
  if (const auto options = ReadBudgetOptions(services_.dir)) {
    chkBudget_[0]->setChecked(options->shared);
    chkBudget_[1]->setChecked(options->sound);
    chkBudget_[2]->setChecked(options->visual);
    comBudgetTon_->setCurrentIndex(comBudgetTon_->findText(options->soundName));
  }
  optionsLoading_ = false;
  if (comBudgetTon_->currentIndex() < 0 && comBudgetTon_->count() > 0) {
    comBudgetTon_->setCurrentIndex(0);
  }
}

void BudgetPanel::SaveBudgetOptions() {
  if (optionsLoading_) {
    return;
  }
  WriteBudgetOptions(services_.dir, {chkBudget_[0]->isChecked(), chkBudget_[1]->isChecked(),
                                     chkBudget_[2]->isChecked(), comBudgetTon_->currentText()});
}

void BudgetPanel::ShowFields(const QStringList& values) {
  loading_ = true;
  for (int i = 0; i < 5; ++i) {
    txtBudget_[static_cast<std::size_t>(i)]->setText(values.value(i));
  }
  for (int i = 0; i < 3; ++i) {
    const double amount = LeadingNumber(values.value(i));
    scrlBudget_[static_cast<std::size_t>(i)]->setValue(std::abs(amount) < 1.0e9 ? -static_cast<int>(amount)
                                                                                : 0);
  }
  loading_ = false;
}

void BudgetPanel::LoadBudget() {
  const BudgetFile budget =
      ReadBudgetFile(services_.dir, kSharedBudgetFile).value_or(DefaultBudget(BudgetDates::Year2001));
  ShowFields({AmountText(budget.perDay), AmountText(budget.perMonth), AmountText(budget.perPeriod),
              NormaliseDate(ParseShortDate(budget.periodFrom)),
              NormaliseDate(ParseShortDate(budget.periodTo))});
}

void BudgetPanel::SelectBudgetUser(bool ask) {
  const QString name = comBudgetUser_->currentText();
  if (name.isEmpty()) {
    return;
  }
  if (ask && isVisible() && comBudgetUser_->currentIndex() != shownIndex_ &&
      !AskUserPassword(services_, name)) {
    comBudgetUser_->setCurrentIndex(shownIndex_);
    return;
  }
  shownIndex_ = comBudgetUser_->currentIndex();
  const QString file = QStringLiteral("Benutzer/") + name + QStringLiteral(".bdg");
  const auto budget = ReadBudgetFile(services_.dir, file);
  if (budget) {
    ShowFields({AmountText(budget->perDay), AmountText(budget->perMonth), AmountText(budget->perPeriod),
                NormaliseDate(ParseShortDate(budget->periodFrom)),
                NormaliseDate(ParseShortDate(budget->periodTo))});
    SetActivated(true);
    return;
  }
  const BudgetFile fresh = DefaultBudget(BudgetDates::Year2001);
  WriteBudgetFile(services_.dir, file, fresh);
  ShowFields(
      {QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0"), fresh.periodFrom, fresh.periodTo});
  services_.prompter.Message(
      QStringLiteral("Die Speicherdatei dieses Benutzers wurde gelöscht oder beschädigt. "
                     "Sie wurde neu angelegt, die Angaben müssen allerdings neu eingestellt "
                     "werden."),
      Prompter::Icon::Warning);
}

void BudgetPanel::SaveBudget() {
  if (loading_) {
    return;
  }
  QList<QByteArray> lines;
  for (QLineEdit* field : txtBudget_) {
    lines.append(ToAnsi(field->text()));
  }
  const QString user = comBudgetUser_->currentText();
  if (chkBudget_[0]->isChecked()) {
    services_.dir.WriteLines(kSharedBudgetFile, lines);
  } else if (!user.isEmpty()) {
    services_.dir.WriteLines(QStringLiteral("Benutzer/") + user + QStringLiteral(".bdg"), lines);
  } else {
    return;
  }
  ShowBudget(user);
  emit budgetSaved();
}

void BudgetPanel::ShowBudget(const QString& user) {
  const QString& waehrung = services_.state.Waehrung;
  for (std::size_t i = 0; i < 3; ++i) {
    lblRest_[i]->setText(QStringLiteral("0.00 ") + waehrung);
    barRest_[i]->setValue(100);
    ShowProjection(i, {});
  }
  const bool shared = chkBudget_[0]->isChecked();
  if (user.isEmpty() && !shared) {
    return;
  }
  const QDate today = services_.clock.Now().date();
  const auto budget = GetBudget(services_.dir, shared ? QString() : user, today);
  if (!budget) {
    services_.prompter.Message(kBudgetFilesDamaged, Prompter::Icon::Warning);
    return;
  }
  const auto projections = ProjectBudgets(*budget, today);
  for (std::size_t i = 0; i < 3; ++i) {
    const BudgetPanelLine line = BudgetPanelShows(budget->amounts[i], budget->rests[i], waehrung);
    lblRest_[i]->setText(line.text);
    barRest_[i]->setValue(line.bar);
    ShowProjection(i, BudgetProjectionShows(projections[i], waehrung));
  }
}

void BudgetPanel::ShowProjection(std::size_t index, const BudgetProjectionLine& line) {
  lblProjection_[index]->setText(line.Text());
  // The rule is told wherever the pointer rests on the budget's line.
  for (QWidget* part :
       std::initializer_list<QWidget*>{lblProjection_[index], lblRest_[index], barRest_[index]}) {
    part->setToolTip(line.toolTip);
  }
}

void BudgetPanel::SetActivated(bool on) {
  for (QLineEdit* field : txtBudget_) {
    field->setEnabled(on);
  }
  for (QScrollBar* bar : scrlBudget_) {
    bar->setEnabled(on);
  }
}

void BudgetPanel::OnSharedClicked(bool on) {
  comBudgetUser_->setEnabled(!on);
  userCaption_->setEnabled(!on);
  if (on) {
    LoadBudget();
    SetActivated(true);
    SaveBudgetOptions();
    ShowBudget({});
    return;
  }
  SetActivated(false);
  SelectBudgetUser(false);
  SaveBudgetOptions();
  ShowBudget(comBudgetUser_->currentText());
}

}  // namespace minutor
