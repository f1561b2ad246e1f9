#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;

namespace minutor {

class RemoteAccess;

// "Verbindungstrennung!": counts two minutes down and then hangs up the last
// active connection. It has no button and can't be closed; it doesn't ask
// whether the connection it was opened for still runs.
class ConStopBox : public QWidget {
  Q_OBJECT

 public:
  explicit ConStopBox(QWidget* parent = nullptr);

  void SetRemoteAccess(RemoteAccess* remote) { remote_ = remote; }
  // Opens the box counting from 120; a box that counts goes on counting.
  void Open();
  bool IsCounting() const { return timer_.isActive(); }
  // The countdown's step, a second unless a test shortens it.
  void SetInterval(int milliseconds) { timer_.setInterval(milliseconds); }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void Tick();

  QLabel* label3_ = nullptr;
  QTimer timer_{this};
  RemoteAccess* remote_ = nullptr;
  int counter_ = 0;
  bool finishing_ = false;
};

}  // namespace minutor
