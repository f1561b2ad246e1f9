#include "users/ui/AlertBox.h"

#include "users/Alarms.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace minutor {

AlertBox::AlertBox(QWidget* parent) : QWidget(parent, Qt::Dialog | Qt::WindowStaysOnTopHint) {
  setObjectName(QStringLiteral("Alert"));
  setWindowTitle(QStringLiteral("Budgetüberschreitung!"));
  label2_ = new QLabel(QStringLiteral("Sie überschreiten nun Ihr Budget. Diese Warnung können Sie in den "
                                      "Budget- einstellungen deaktivieren."),
                       this);
  label2_->setObjectName(QStringLiteral("Label2"));
  label2_->setWordWrap(true);
  label3_ = new QLabel(AlertCloseText(kAlertSeconds), this);
  label3_->setObjectName(QStringLiteral("Label3"));
  command1_ = new QPushButton(QStringLiteral("Schließen"), this);
  command1_->setObjectName(QStringLiteral("Command1"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label2_);
  layout->addWidget(label3_);
  layout->addWidget(command1_, 0, Qt::AlignRight);
  setFixedWidth(340);

  timer_.setInterval(1000);
  connect(&timer_, &QTimer::timeout, this, &AlertBox::Tick);
  connect(command1_, &QPushButton::clicked, this, [this] {
    timer_.stop();
    close();
  });
}

void AlertBox::ShowAlert(int kind) {
  label2_->setText(AlertText(kind));
  counter_ = kAlertSeconds;
  label3_->setText(AlertCloseText(counter_));
  timer_.start();
  show();
  raise();
}

void AlertBox::Tick() {
  --counter_;
  label3_->setText(AlertCloseText(counter_));
  if (counter_ <= 0) {
    timer_.stop();
    close();
  }
}

}  // namespace minutor
