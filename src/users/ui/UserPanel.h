#pragma once

#include "users/UserFile.h"

#include <QWidget>

#include <array>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

namespace minutor {

struct Services;

// "Benutzereinstellungen": users, their passwords and their rights. Every
// change is saved at once; choosing a user here makes it the active one,
// after its password.
class UserPanel : public QWidget {
  Q_OBJECT

 public:
  explicit UserPanel(Services& services, QWidget* parent = nullptr);

 signals:
  // The active user or a right of it changed: the frame applies the rights.
  void rightsChanged();

 private:
  void BuildControls();
  // GetUsers: the list afresh, `select` chosen (or the first).
  void GetUsers(const QString& select);
  // SelectUser: the chosen user's values, after the password question while
  // the panel is on screen. False when the question refused the user.
  bool SelectUser();
  void OnUserChosen(int index);
  void ShowUser();
  void SetActivated(bool on);
  void SaveUser();
  void OnRightClicked(int index, bool on);
  void OnMinutesLeft(QLineEdit* field, qint64 UserFile::*minutes);

  Services& services_;
  UserFile user_;
  bool filling_ = false;
  int shownIndex_ = -1;  // the selection before the list was opened

  QComboBox* comUser_ = nullptr;
  QLineEdit* txtUserPassword_ = nullptr;
  QLineEdit* txtTimeLimit_ = nullptr;
  QLineEdit* txtTimeLimit2_ = nullptr;
  std::array<QCheckBox*, 9> chkUser_{};
};

}  // namespace minutor
