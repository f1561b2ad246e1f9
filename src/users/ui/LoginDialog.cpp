#include "users/ui/LoginDialog.h"

#include "desk/OverviewFiles.h"
#include "frame/AppState.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "users/UserAccounts.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace minutor {

LoginDialog::LoginDialog(Services& services, const QString& current, QWidget* parent)
    : QDialog(parent), services_(services) {
  setObjectName(QStringLiteral("Login"));
  setWindowTitle(QStringLiteral("Minutor 3"));
  auto* heading = new QLabel(QStringLiteral("Login"), this);
  QFont bold = heading->font();
  bold.setBold(true);
  heading->setFont(bold);
  combo1_ = new QComboBox(this);
  combo1_->setObjectName(QStringLiteral("Combo1"));
  combo1_->addItems(GetUserNames(services_.dir));
  const int index = combo1_->findText(current);
  combo1_->setCurrentIndex(index >= 0 ? index : 0);
  text1_ = new QLineEdit(this);
  text1_->setObjectName(QStringLiteral("Text1"));
  text1_->setEchoMode(QLineEdit::Password);
  auto* command1 = new QPushButton(QStringLiteral("OK"), this);
  command1->setObjectName(QStringLiteral("Command1"));
  command1->setDefault(true);
  auto* command2 = new QPushButton(QStringLiteral("A&bbrechen"), this);
  command2->setObjectName(QStringLiteral("Command2"));

  auto* grid = new QGridLayout(this);
  grid->addWidget(heading, 0, 0, 1, 2);
  grid->addWidget(
      new QLabel(QStringLiteral("Willkommen bei Minutor. Bitte geben Sie Ihr Passwort ein:"), this), 1, 0, 1,
      2);
  grid->addWidget(combo1_, 2, 0, 1, 2);
  grid->addWidget(text1_, 3, 0, 1, 2);
  grid->addWidget(command1, 4, 0);
  grid->addWidget(command2, 4, 1);
  text1_->setFocus();

  connect(command1, &QPushButton::clicked, this, &LoginDialog::OnOk);
  connect(command2, &QPushButton::clicked, this, &QDialog::reject);
}

bool LoginDialog::HasUsers() const { return combo1_->count() > 0; }

void LoginDialog::OnOk() {
  const QString name = combo1_->currentText();
  if (name.isEmpty()) {
    return;
  }
  services_.state.ActiveUser = name;
  emit userChosen(name);
  if (PasswordMatches(services_.dir, name, text1_->text())) {
    accept();
    return;
  }
  services_.prompter.Message(
      QStringLiteral("Das eingegebene Passwort ist falsch. Bitte überprüfen Sie Ihre Eingabe."),
      Prompter::Icon::Critical, QStringLiteral("Falsches Passwort"));
}

}  // namespace minutor
