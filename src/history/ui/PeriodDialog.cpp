#include "history/ui/PeriodDialog.h"

#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/AnsiText.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "history/ListPeriod.h"

#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace minutor {

PeriodDialog::PeriodDialog(const Services& services, QWidget* parent) : QDialog(parent), services_(services) {
  setObjectName(QStringLiteral("Definiert"));
  setWindowTitle(QStringLiteral("Zeitraum"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new QLabel(QStringLiteral("Bitte geben Sie den gewünschten Zeitraum ein:"), this));
  auto* form = new QFormLayout;
  const QString today = NormaliseDate(services_.clock.Now().date());
  const auto lines = services_.dir.ReadLines(QStringLiteral("Config/Period.cfg"));
  const char* captions[] = {"Von", "bis"};
  for (int i = 0; i < 2; ++i) {
    fields_[i] = new QLineEdit(this);
    fields_[i]->setObjectName(QStringLiteral("Text1_%1").arg(i));
    fields_[i]->setText(lines ? FromAnsi(lines->value(i)) : today);
    fields_[i]->installEventFilter(this);
    form->addRow(QString::fromLatin1(captions[i]), fields_[i]);
  }
  layout->addLayout(form);
  auto* buttons = new QHBoxLayout;
  auto* ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("Command1"));
  ok->setDefault(true);
  auto* cancel = new QPushButton(QStringLiteral("A&bbrechen"), this);
  cancel->setObjectName(QStringLiteral("Command2"));
  buttons->addStretch();
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  layout->addLayout(buttons);
  connect(ok, &QPushButton::clicked, this, &PeriodDialog::Save);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  QTimer::singleShot(0, fields_[0], [this] { fields_[0]->setFocus(); });
}

bool PeriodDialog::eventFilter(QObject* watched, QEvent* event) {
  auto* field = qobject_cast<QLineEdit*>(watched);
  if (field != nullptr && event->type() == QEvent::FocusIn) {
    QTimer::singleShot(0, field, &QLineEdit::selectAll);
  } else if (field != nullptr && event->type() == QEvent::FocusOut) {
    field->setText(NormaliseDate(ParseShortDate(field->text())));
  }
  return QDialog::eventFilter(watched, event);
}

void PeriodDialog::Save() {
  if (!WritePeriodFile(services_.dir, fields_[0]->text(), fields_[1]->text())) {
    services_.prompter.Message(QStringLiteral("Der Zeitraum konnte nicht in \"%1\" gespeichert werden.")
                                   .arg(services_.dir.Resolve(QStringLiteral("Config/Period.cfg"))),
                               Prompter::Icon::Warning);
    return;
  }
  accept();
}

}  // namespace minutor
