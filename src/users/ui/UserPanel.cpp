#include "users/ui/UserPanel.h"

#include "desk/OverviewFiles.h"
#include "frame/AppState.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "users/UserAccounts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace minutor {

namespace {

const char* const kCaptions[9] = {
    "Zugriff auf Benutzereinstellungen verbieten",
    "Zugriff auf Überwachung / DFÜ Einstellungen verbieten",
    "Zugriff auf Budgeteinstellungen verbieten",
    "Kann keine Listeneinträge erstellen, löschen o. ändern",
    "Einwahl bei Überschreitung des Budgets verbieten",
    "Benutzerauswahl mit Windows Logon verknüpfen",
    "Zugriff auf Listenansicht und Auswertungen verbieten",
    "Einwahl bei mehr als",
    "Einwahl bei mehr als",
};

// The switch of each box in the user file; box 5 is the installation's.
bool UserFile::*const kRights[9] = {
    &UserFile::noUserSettings, &UserFile::noMonitoringSettings, &UserFile::noBudgetSettings,
    &UserFile::noListEdit,     &UserFile::noDialOnBudget,       nullptr,
    &UserFile::noListView,     &UserFile::dayLimitOn,           &UserFile::monthLimitOn};

const QString kHelp = QStringLiteral(
    "Die automatische Trennung bei den letzen beiden Zugriffseinschränkungen kann nicht abgebrochen werden. "
    "Der "
    "jeweilige Benutzer erhält 2 Minuten Zeit bevor die Verbindung getrennt wird, um die aktuelle Tätigkeit "
    "noch "
    "abzuschließen. Es kann allerdings vorkommen, daß längere Downloads durch die automatische Trennung "
    "abgebrochen werden. Deshalb sollten Sie den jeweils eingeschränkten Benutzer über sein "
    "Zeit-/Budgetlimit "
    "informieren. Für durch die automatische Trennung abgebrochene Vorgänge wird kein Schadensersatz "
    "geleistet!\r\n\r\nWenn Sie die Benutzerauswahl mit dem Windows Logon verknüpfen, wird beim Start von "
    "Minutor automatisch der Benutzer gewählt, der sich bei Windows eingeloggt hat. Eine Passwortabfrage "
    "findet "
    "dann nicht statt. Voraussetzung dafür ist, daß die entsprechenden Benutzernamen in Minutor identisch zu "
    "den "
    "Login Namen von Windows sind.");

}  // namespace

UserPanel::UserPanel(Services& services, QWidget* parent) : QWidget(parent), services_(services) {
  setObjectName(QStringLiteral("User"));
  setWindowTitle(QStringLiteral("Benutzereinstellungen"));
  BuildControls();
  filling_ = true;
  chkUser_[5]->setChecked(IsLogonLinked(services_.dir));
  filling_ = false;
  GetUsers(services_.state.ActiveUser);
  SelectUser();
}

void UserPanel::BuildControls() {
  auto* title = new QLabel(QStringLiteral("Benutzereinstellungen"), this);
  QFont bold = title->font();
  bold.setBold(true);
  title->setFont(bold);
  auto* intro = new QLabel(QStringLiteral("Jedem Benutzer können Zugriffseinschränkungen zugeordnet werden, "
                                          "z.B. zur Kindersicherung."),
                           this);
  intro->setWordWrap(true);

  comUser_ = new QComboBox(this);
  comUser_->setObjectName(QStringLiteral("comUser"));
  auto* add = new QPushButton(QStringLiteral("Benutzer hinzufügen"), this);
  add->setObjectName(QStringLiteral("cmdUser(0)"));
  auto* remove = new QPushButton(QStringLiteral("Benutzer löschen"), this);
  remove->setObjectName(QStringLiteral("cmdUser(1)"));
  txtUserPassword_ = new QLineEdit(this);
  txtUserPassword_->setObjectName(QStringLiteral("txtUserPassword"));
  txtUserPassword_->setEchoMode(QLineEdit::Password);

  auto* top = new QGridLayout;
  top->addWidget(new QLabel(QStringLiteral("Benutzer:"), this), 0, 0);
  top->addWidget(comUser_, 0, 1, 1, 2);
  top->addWidget(add, 1, 1);
  top->addWidget(remove, 1, 2);
  top->addWidget(new QLabel(QStringLiteral("Passwort:"), this), 2, 0);
  top->addWidget(txtUserPassword_, 2, 1);
  top->addWidget(new QLabel(QStringLiteral("(Optional)"), this), 2, 2);
  top->setColumnStretch(1, 1);

  auto* rights = new QGroupBox(QStringLiteral("Zugriffssteuerung:"), this);
  auto* rightsLayout = new QVBoxLayout(rights);
  rightsLayout->setSpacing(2);
  for (int i = 0; i < 9; ++i) {
    chkUser_[static_cast<std::size_t>(i)] = new QCheckBox(QString::fromUtf8(kCaptions[i]), rights);
    chkUser_[static_cast<std::size_t>(i)]->setObjectName(QStringLiteral("chkUser(%1)").arg(i));
  }
  for (int i : {0, 1, 2, 6, 3, 5}) {
    rightsLayout->addWidget(chkUser_[static_cast<std::size_t>(i)]);
  }
  rightsLayout->addWidget(new QLabel(QStringLiteral("Bei diesen Optionen wird die Verbindung automatisch "
                                                    "getrennt."),
                                     rights));
  // The minutes fields stand inside the captions of their boxes.
  auto limitRow = [&](int box, QLineEdit*& field, const char* name, const char* unit) {
    field = new QLineEdit(rights);
    field->setObjectName(QString::fromLatin1(name));
    field->setMaximumWidth(60);
    auto* row = new QHBoxLayout;
    row->addWidget(chkUser_[static_cast<std::size_t>(box)]);
    row->addWidget(field);
    row->addWidget(new QLabel(QString::fromUtf8(unit), rights));
    row->addStretch(1);
    rightsLayout->addLayout(row);
  };
  rightsLayout->addWidget(chkUser_[4]);
  limitRow(7, txtTimeLimit_, "txtTimeLimit", "Min/Tag verbieten");
  limitRow(8, txtTimeLimit2_, "txtTimeLimit2", "Min/Monat verbieten");

  auto* help = new QPushButton(QStringLiteral(">>> Erläuterungen"), this);
  help->setObjectName(QStringLiteral("lblHilfe"));
  help->setFlat(true);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 4, 6, 4);
  layout->addWidget(title);
  layout->addWidget(intro);
  layout->addLayout(top);
  layout->addWidget(rights);
  layout->addWidget(help, 0, Qt::AlignLeft);
  layout->addStretch(1);

  connect(comUser_, &QComboBox::activated, this, &UserPanel::OnUserChosen);
  connect(add, &QPushButton::clicked, this, [this] {
    const QString name = NewUser(services_);
    if (!name.isEmpty()) {
      // The new user is shown, not made the active one.
      GetUsers(name);
      SelectUser();
    }
  });
  connect(remove, &QPushButton::clicked, this, [this] {
    if (DeleteUser(services_, comUser_->currentText())) {
      GetUsers({});
      SelectUser();
    }
  });
  for (int i = 0; i < 9; ++i) {
    connect(chkUser_[static_cast<std::size_t>(i)], &QCheckBox::clicked, this,
            [this, i](bool on) { OnRightClicked(i, on); });
  }
  connect(txtUserPassword_, &QLineEdit::textEdited, this, [this](const QString& text) {
    user_.password = ToAnsi(text);
    SaveUser();
  });
  connect(txtTimeLimit_, &QLineEdit::editingFinished, this,
          [this] { OnMinutesLeft(txtTimeLimit_, &UserFile::dayLimitMinutes); });
  connect(txtTimeLimit2_, &QLineEdit::editingFinished, this,
          [this] { OnMinutesLeft(txtTimeLimit2_, &UserFile::monthLimitMinutes); });
  connect(help, &QPushButton::clicked, this,
          [this] { services_.prompter.Message(kHelp, Prompter::Icon::Information); });
}

void UserPanel::GetUsers(const QString& select) {
  comUser_->clear();
  comUser_->addItems(GetUserNames(services_.dir));
  int index = -1;
  for (int i = 0; i < comUser_->count() && !select.isEmpty(); ++i) {
    if (comUser_->itemText(i).toLower() == select.toLower()) {
      index = i;
    }
  }
  if (index < 0 && comUser_->count() > 0) {
    index = 0;
  }
  comUser_->setCurrentIndex(index);
  shownIndex_ = index;
}

bool UserPanel::SelectUser() {
  const QString name = comUser_->currentText();
  if (name.isEmpty()) {
    SetActivated(false);
    return true;
  }
  if (isVisible() && comUser_->currentIndex() != shownIndex_ && !AskUserPassword(services_, name)) {
    comUser_->setCurrentIndex(shownIndex_);
    return false;
  }
  shownIndex_ = comUser_->currentIndex();
  user_ = LoadOrRebuildUser(services_, name);
  ShowUser();
  return true;
}

void UserPanel::OnUserChosen(int) {
  if (!SelectUser() || comUser_->currentText().isEmpty()) {
    return;
  }
  services_.state.ActiveUser = comUser_->currentText();
  emit rightsChanged();
}

void UserPanel::ShowUser() {
  filling_ = true;
  for (int i = 0; i < 9; ++i) {
    if (kRights[i] != nullptr) {
      chkUser_[static_cast<std::size_t>(i)]->setChecked(user_.*kRights[i]);
    }
  }
  txtTimeLimit_->setText(QString::number(user_.dayLimitMinutes));
  txtTimeLimit2_->setText(QString::number(user_.monthLimitMinutes));
  txtUserPassword_->setText(FromAnsi(user_.password));
  filling_ = false;
  // The supervisor can't be restricted; only his password can be set.
  const bool supervisor = comUser_->currentText() == kSupervisor;
  SetActivated(!supervisor);
  txtUserPassword_->setEnabled(true);
}

void UserPanel::SetActivated(bool on) {
  for (int i = 0; i < 9; ++i) {
    if (i != 5) {
      chkUser_[static_cast<std::size_t>(i)]->setEnabled(on);
    }
  }
  txtUserPassword_->setEnabled(on);
  txtTimeLimit_->setEnabled(on);
  txtTimeLimit2_->setEnabled(on);
  // Whoever may not see the list can't edit it either: box 3 shows that.
  if (on && user_.noListView) {
    chkUser_[3]->setChecked(true);
    chkUser_[3]->setEnabled(false);
  }
}

void UserPanel::SaveUser() {
  const QString name = comUser_->currentText();
  if (filling_ || name.isEmpty()) {
    return;
  }
  WriteUserFile(services_.dir, name, user_);
}

void UserPanel::OnRightClicked(int index, bool on) {
  if (index == 5) {
    services_.dir.WriteLines(QStringLiteral("Config/Users.cfg"), {on ? "1" : "0"});
    return;
  }
  user_.*kRights[index] = on;
  if (index == 6) {
    chkUser_[3]->setEnabled(!on);
    chkUser_[3]->setChecked(on || user_.noListEdit);
  }
  SaveUser();
  if (comUser_->currentText() == services_.state.ActiveUser) {
    emit rightsChanged();
  }
}

void UserPanel::OnMinutesLeft(QLineEdit* field, qint64 UserFile::*minutes) {
  const double value = LeadingNumber(field->text());
  user_.*minutes = std::abs(value) < 2.0e9 ? static_cast<qint64>(value) : 0;
  field->setText(QString::number(user_.*minutes));
  SaveUser();
  if (comUser_->currentText() == services_.state.ActiveUser) {
    emit rightsChanged();
  }
}

}  // namespace minutor
