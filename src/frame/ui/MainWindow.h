#pragma once

#include <QLabel>
#include <QMainWindow>

namespace minutor {

struct AppState;

// The frame of the program: a window of fixed size with the status fields;
// the panels live in its client area.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  explicit MainWindow(AppState& state, QWidget* parent = nullptr);

  // Window size in logical pixels: 8865 x 6735 twips.
  static constexpr int kWidth = 591;
  static constexpr int kHeight = 449;

  // Half the screen less half the window, in both directions.
  void CenterOnScreen();

  QLabel* statusField(int index) const { return status_[index]; }

 private:
  AppState& state_;
  QLabel* status_[3] = {};
};

}  // namespace minutor
