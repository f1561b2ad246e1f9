#pragma once

#include <QDialog>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace minutor {

struct Services;

// "Login": the password of the user the program starts with. Another user
// can be chosen here, and any user without a password is let in with an
// empty field. Cancel ends the program.
class LoginDialog : public QDialog {
  Q_OBJECT

 public:
  // Lists the users and selects `current`, or the first one.
  LoginDialog(Services& services, const QString& current, QWidget* parent = nullptr);

  // False when there is nobody to log in: the box isn't shown.
  bool HasUsers() const;

 signals:
  // The chosen user became the active one, right password or not.
  void userChosen(const QString& name);

 private:
  void OnOk();

  Services& services_;
  QComboBox* combo1_ = nullptr;
  QLineEdit* text1_ = nullptr;
};

}  // namespace minutor
