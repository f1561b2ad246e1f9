#include "frame/ui/MainWindow.h"

#include "frame/AppState.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStatusBar>

namespace minutor {

MainWindow::MainWindow(AppState& state, QWidget* parent) : QMainWindow(parent), state_(state) {
  setWindowTitle(QStringLiteral("Minutor 3.3"));
  setWindowFlag(Qt::WindowMaximizeButtonHint, false);
  setFixedSize(kWidth, kHeight);
  setCentralWidget(new QWidget(this));

  for (QLabel*& field : status_) {
    field = new QLabel(this);
    field->setFrameShape(QFrame::Panel);
    field->setFrameShadow(QFrame::Sunken);
    statusBar()->addWidget(field, 1);
  }
  statusBar()->setSizeGripEnabled(false);
  status_[1]->setText(QStringLiteral("Aufzeichnung ist nicht aktiv"));
  status_[2]->setText(QStringLiteral("Aktiver Benutzer: ") + state_.ActiveUser);
}

void MainWindow::CenterOnScreen() {
  const QScreen* screen = this->screen() != nullptr ? this->screen() : QGuiApplication::primaryScreen();
  if (screen == nullptr) {
    return;
  }
  const QRect area = screen->geometry();
  move(area.left() + area.width() / 2 - frameGeometry().width() / 2,
       area.top() + area.height() / 2 - frameGeometry().height() / 2);
}

}  // namespace minutor
