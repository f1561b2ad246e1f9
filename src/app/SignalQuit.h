#pragma once

#include <QObject>

class QSocketNotifier;

namespace minutor {

// Turns SIGTERM and SIGINT (the session ending, Ctrl+C in a terminal) into an
// ordinary close of the main window, so that the program ends the way a
// click on the close button would.
class SignalQuit : public QObject {
  Q_OBJECT

 public:
  explicit SignalQuit(QObject* parent = nullptr);
  ~SignalQuit() override;

 signals:
  void quitRequested();

 private:
  QSocketNotifier* notifier_ = nullptr;
};

}  // namespace minutor
