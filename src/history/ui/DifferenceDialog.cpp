#include "history/ui/DifferenceDialog.h"

#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/ClockText.h"
#include "frame/datadir/DataDir.h"
#include "frame/datadir/NumberText.h"
#include "history/ListColouring.h"
#include "history/ui/ConnectionListModel.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace minutor {

DifferenceDialog::DifferenceDialog(const Services& services, QWidget* parent)
    : QDialog(parent), services_(services) {
  setObjectName(QStringLiteral("Difference"));
  setWindowTitle(QStringLiteral("Differenzierung"));
  auto* layout = new QVBoxLayout(this);
  auto* intro =
      new QLabel(QStringLiteral("Hier können Sie die farbliche Hinterlegung der einzelnen Listeneinträge "
                                "je nach Höhe des Betrages festlegen."),
                 this);
  intro->setWordWrap(true);
  layout->addWidget(intro);
  category_ = new QComboBox(this);
  category_->setObjectName(QStringLiteral("comCategory"));
  category_->addItems({QStringLiteral("Keine Differenzierung"), QStringLiteral("Kosten"),
                       QStringLiteral("Dauer"), QStringLiteral("Transfervolumen")});
  layout->addWidget(category_);

  const char* titles[] = {"Kosten", "Dauer", "Volumen"};
  const char* captions[] = {"bis", "bis", "bis", "über"};
  const char* names[] = {"Text1", "Text2", "Text3"};
  for (int group = 0; group < 3; ++group) {
    auto* frame = new QGroupBox(QString::fromUtf8(titles[group]), this);
    frame->setObjectName(QStringLiteral("Frame1_%1").arg(group));
    auto* grid = new QGridLayout(frame);
    for (int i = 0; i < 4; ++i) {
      auto* sample = new QLabel(frame);
      sample->setPixmap(ConnectionListModel::ClassIcon(i).pixmap(12, 12));
      auto* field = new QLineEdit(frame);
      field->setObjectName(QStringLiteral("%1_%2").arg(QString::fromLatin1(names[group])).arg(i));
      field->setReadOnly(i == 3);
      field->installEventFilter(this);
      grid->addWidget(sample, i, 0);
      grid->addWidget(new QLabel(QString::fromUtf8(captions[i]), frame), i, 1);
      grid->addWidget(field, i, 2);
      fields_[group][i] = field;
    }
    connect(fields_[group][2], &QLineEdit::textChanged, fields_[group][3], &QLineEdit::setText);
    frames_[group] = frame;
    layout->addWidget(frame);
  }

  auto* buttons = new QHBoxLayout;
  auto* ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("Command1_0"));
  ok->setDefault(true);
  auto* cancel = new QPushButton(QStringLiteral("A&bbrechen"), this);
  cancel->setObjectName(QStringLiteral("Command1_1"));
  buttons->addStretch();
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  layout->addLayout(buttons);
  connect(ok, &QPushButton::clicked, this, &DifferenceDialog::Save);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(category_, &QComboBox::currentIndexChanged, this, &DifferenceDialog::CategoryChanged);

  const DifferenceConfig config = ReadDifferenceConfig(services_.dir);
  const QStringList* groups[] = {&config.costs, &config.durations, &config.volumes};
  for (int group = 0; group < 3; ++group) {
    for (int i = 0; i < 3; ++i) {
      fields_[group][i]->setText(groups[group]->value(i));
    }
  }
  category_->setCurrentIndex(config.category);
  CategoryChanged(config.category);
}

void DifferenceDialog::CategoryChanged(int index) {
  for (int group = 0; group < 3; ++group) {
    frames_[group]->setEnabled(group == index - 1);
  }
}

bool DifferenceDialog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusOut) {
    for (int i = 0; i < 3; ++i) {
      if (watched == fields_[0][i]) {
        fields_[0][i]->setText(GeneralText(ParseBetrag(fields_[0][i]->text())));
      } else if (watched == fields_[1][i]) {
        fields_[1][i]->setText(NormalizeTime(fields_[1][i]->text()));
      } else if (watched == fields_[2][i]) {
        fields_[2][i]->setText(GeneralText(LeadingNumber(fields_[2][i]->text())));
      }
    }
  }
  return QDialog::eventFilter(watched, event);
}

void DifferenceDialog::Save() {
  DifferenceConfig config;
  config.category = category_->currentIndex();
  QStringList* groups[] = {&config.costs, &config.durations, &config.volumes};
  for (int group = 0; group < 3; ++group) {
    for (int i = 0; i < 3; ++i) {
      (*groups[group])[i] = fields_[group][i]->text();
    }
  }
  if (!WriteDifferenceConfig(services_.dir, config)) {
    services_.prompter.Message(QStringLiteral("Die Einstellungen konnten nicht in \"%1\" gespeichert werden.")
                                   .arg(services_.dir.Resolve(QStringLiteral("Config/Difference.cfg"))),
                               Prompter::Icon::Warning);
    return;
  }
  accept();
}

}  // namespace minutor
