#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QPushButton;

namespace minutor {

// "Budgetüberschreitung!": the warning of a crossed budget, on top of other
// windows, closing itself after 30 seconds.
class AlertBox : public QWidget {
  Q_OBJECT

 public:
  explicit AlertBox(QWidget* parent = nullptr);

  // Shows the text of the budget kind and counts from 30 again.
  void ShowAlert(int kind);
  // The countdown's step, a second unless a test shortens it.
  void SetInterval(int milliseconds) { timer_.setInterval(milliseconds); }

 private:
  void Tick();

  QLabel* label2_ = nullptr;
  QLabel* label3_ = nullptr;
  QPushButton* command1_ = nullptr;
  QTimer timer_{this};
  int counter_ = 0;
};

}  // namespace minutor
