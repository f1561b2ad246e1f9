#include "users/ui/ConStopBox.h"

#include "detection/RemoteAccess.h"
#include "users/Alarms.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QStyle>
#include <QVBoxLayout>
#include <QWindow>

namespace minutor {

ConStopBox::ConStopBox(QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::WindowStaysOnTopHint | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
  setObjectName(QStringLiteral("ConStop"));
  setWindowTitle(QStringLiteral("Verbindungstrennung!"));
  auto* picture = new QLabel(this);
  picture->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(32, 32));
  auto* text = new QLabel(kConStopMessage, this);
  text->setWordWrap(true);
  label3_ = new QLabel(ConStopText(kConStopSeconds), this);
  label3_->setObjectName(QStringLiteral("Label3"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(picture, 0, Qt::AlignHCenter);
  layout->addWidget(text);
  layout->addWidget(label3_);
  setFixedWidth(340);

  timer_.setInterval(1000);
  connect(&timer_, &QTimer::timeout, this, &ConStopBox::Tick);
}

void ConStopBox::Open() {
  if (!timer_.isActive()) {
    counter_ = kConStopSeconds;
    label3_->setText(ConStopText(counter_));
    timer_.start();
  }
  show();
  raise();
}

void ConStopBox::Tick() {
  --counter_;
  label3_->setText(ConStopText(counter_));
  if (counter_ > 0) {
    return;
  }
  timer_.stop();
  if (remote_ != nullptr) {
    HangUpLastConnection(*remote_);
  }
  finishing_ = true;
  close();
  finishing_ = false;
}

void ConStopBox::closeEvent(QCloseEvent* event) {
  if (finishing_) {
    event->accept();
  } else {
    event->ignore();
  }
}

void ConStopBox::mousePressEvent(QMouseEvent* event) {
  // The whole box is a handle to move it by.
  if (event->button() == Qt::LeftButton && windowHandle() != nullptr) {
    windowHandle()->startSystemMove();
  }
  QWidget::mousePressEvent(event);
}

}  // namespace minutor
