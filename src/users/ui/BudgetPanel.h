#pragma once

#include <QWidget>

#include <array>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QScrollBar;

namespace minutor {

struct BudgetProjectionLine;
struct Services;

// "Budgeteinstellungen": the budget per day, month and defined period of a
// user or of all users, the warnings, and the rests left now. Every change
// is saved at once.
class BudgetPanel : public QWidget {
  Q_OBJECT

 public:
  explicit BudgetPanel(Services& services, QWidget* parent = nullptr);

 signals:
  // A budget was written: a running connection reads its rests again.
  void budgetSaved();

 private:
  void BuildControls();
  void GetUsers(const QString& select);
  void GetSounds();
  void LoadBudgetOptions();
  void SaveBudgetOptions();
  void LoadBudget();
  // Shows the budget of the chosen user; with `ask` the password may be asked.
  void SelectBudgetUser(bool ask);
  void ShowFields(const QStringList& values);
  void SaveBudget();
  void ShowBudget(const QString& user);
  void ShowProjection(std::size_t index, const BudgetProjectionLine& line);
  void SetActivated(bool on);
  void OnSharedClicked(bool on);

  Services& services_;
  bool loading_ = false;
  bool optionsLoading_ = false;
  int shownIndex_ = -1;

  QComboBox* comBudgetUser_ = nullptr;
  QLabel* userCaption_ = nullptr;
  QComboBox* comBudgetTon_ = nullptr;
  std::array<QCheckBox*, 3> chkBudget_{};
  // Amounts of the day, the month and the period, then the period's dates.
  std::array<QLineEdit*, 5> txtBudget_{};
  std::array<QScrollBar*, 3> scrlBudget_{};
  std::array<QLabel*, 3> lblRest_{};
  std::array<QProgressBar*, 3> barRest_{};
  // Under each rest: when it runs out at the last week's pace, and what is
  // left per day.
  std::array<QLabel*, 3> lblProjection_{};
};

}  // namespace minutor
