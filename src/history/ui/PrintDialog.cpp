#include "history/ui/PrintDialog.h"

#include "frame/AppState.h"
#include "frame/Clock.h"
#include "frame/Prompter.h"
#include "frame/Services.h"
#include "frame/datadir/NumberText.h"
#include "history/ListPeriod.h"
#include "history/ListTitle.h"
#include "history/ui/DifferenceDialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPageSetupDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace minutor {

namespace {

void SetUpPage(QPrinter& printer) {
  printer.setPageSize(QPageSize(QPageSize::A4));
  printer.setPageOrientation(QPageLayout::Portrait);
  // Positions count from the paper's corner; the pages keep their own margins.
  printer.setFullPage(true);
}

}  // namespace

PrintDialog::PrintDialog(const Services& services, ListSelection selection, QWidget* parent)
    : QDialog(parent), services_(services), selection_(std::move(selection)) {
  setObjectName(QStringLiteral("Printing"));
  setWindowTitle(QStringLiteral("Drucken..."));
  previewPrinter_ = std::make_unique<QPrinter>(QPrinter::ScreenResolution);
  SetUpPage(*previewPrinter_);
  BuildUi();

  loading_ = true;
  const QDate today = services_.clock.Now().date();
  const QDate first =
      DefaultPrintMonth(static_cast<int>(ListPeriodItems().indexOf(selection_.periodItem)), today);
  for (int back = 0; back < 24; ++back) {
    const QDate month = QDate(today.year(), today.month(), 1).addMonths(-back);
    month_->addItem(QLocale().monthName(month.month()) + QLatin1Char(' ') + QString::number(month.year()),
                    month);
    if (month.year() == first.year() && month.month() == first.month()) {
      month_->setCurrentIndex(back);
    }
  }
  printers_->addItem(PdfEntry());
  printers_->addItems(QPrinterInfo::availablePrinterNames());
  const int preset = printers_->findText(QPrinterInfo::defaultPrinterName());
  if (preset > 0) {
    printers_->setCurrentIndex(preset);
  } else if (printers_->count() > 1 && !selection_.rows.isEmpty()) {
    printers_->setCurrentIndex(1);
  }
  loading_ = false;
  UpdateEnabling();
  Vorschau();
}

PrintDialog::~PrintDialog() = default;

QString PrintDialog::PdfEntry() { return QStringLiteral("In PDF-Datei drucken"); }

void PrintDialog::BuildUi() {
  auto* layout = new QHBoxLayout(this);
  auto* controls = new QVBoxLayout;
  layout->addLayout(controls);

  auto* printerBox = new QGroupBox(QStringLiteral("Drucker"), this);
  auto* printerGrid = new QGridLayout(printerBox);
  printers_ = new QComboBox(printerBox);
  printers_->setObjectName(QStringLiteral("Combo1"));
  auto* settings = new QPushButton(QStringLiteral("Einstellungen"), printerBox);
  settings->setObjectName(QStringLiteral("Command2"));
  copies_ = new QLineEdit(QStringLiteral("1"), printerBox);
  copies_->setObjectName(QStringLiteral("Text1"));
  copies_->setMaximumWidth(50);
  copiesBar_ = new QScrollBar(Qt::Vertical, printerBox);
  copiesBar_->setObjectName(QStringLiteral("VScroll1"));
  // The bar counts down as it moves down, so its value is the negative count.
  copiesBar_->setRange(-999, -1);
  copiesBar_->setValue(-1);
  copiesBar_->setFixedHeight(copies_->sizeHint().height());
  printerGrid->addWidget(printers_, 0, 0, 1, 3);
  printerGrid->addWidget(settings, 0, 3);
  printerGrid->addWidget(new QLabel(QStringLiteral("Anzahl der Kopien"), printerBox), 1, 0);
  printerGrid->addWidget(copies_, 1, 1);
  printerGrid->addWidget(copiesBar_, 1, 2, Qt::AlignLeft);
  controls->addWidget(printerBox);

  auto* formBox = new QGroupBox(QStringLiteral("Ausdruck"), this);
  auto* formGrid = new QGridLayout(formBox);
  colour_ = new QRadioButton(QStringLiteral("Bunt"), formBox);
  colour_->setObjectName(QStringLiteral("Option4"));
  mono_ = new QRadioButton(QStringLiteral("Monochrom"), formBox);
  mono_->setObjectName(QStringLiteral("Option5"));
  auto* colourGroup = new QButtonGroup(this);
  colourGroup->addButton(colour_);
  colourGroup->addButton(mono_);
  colour_->setChecked(true);
  invoice_ = new QRadioButton(QStringLiteral("Rechnungsform"), formBox);
  invoice_->setObjectName(QStringLiteral("Option6"));
  listForm_ = new QRadioButton(QStringLiteral("Listenform"), formBox);
  listForm_->setObjectName(QStringLiteral("Option7"));
  auto* formGroup = new QButtonGroup(this);
  formGroup->addButton(invoice_);
  formGroup->addButton(listForm_);
  listForm_->setChecked(true);
  transfer_ = new QCheckBox(QStringLiteral("Transfer- und DFÜ-Daten ausdrucken"), formBox);
  transfer_->setObjectName(QStringLiteral("Check2"));
  classColours_ = new QCheckBox(QStringLiteral("Farbliche differenzieren"), formBox);
  classColours_->setObjectName(QStringLiteral("Check3"));
  auto* difference = new QPushButton(QStringLiteral("Einstellungen"), formBox);
  difference->setObjectName(QStringLiteral("Command3"));
  formGrid->addWidget(colour_, 0, 0);
  formGrid->addWidget(mono_, 0, 1);
  formGrid->addWidget(invoice_, 1, 0);
  formGrid->addWidget(listForm_, 1, 1);
  formGrid->addWidget(transfer_, 2, 0, 1, 2);
  formGrid->addWidget(classColours_, 3, 0);
  formGrid->addWidget(difference, 3, 1, Qt::AlignLeft);
  controls->addWidget(formBox);

  auto* chartBox = new QGroupBox(this);
  auto* chartGrid = new QGridLayout(chartBox);
  charts_ = new QCheckBox(QStringLiteral("Monatsdiagramme drucken"), chartBox);
  charts_->setObjectName(QStringLiteral("Check1"));
  month_ = new QComboBox(chartBox);
  month_->setObjectName(QStringLiteral("comZeitraum"));
  pair_ = new QButtonGroup(this);
  chartGrid->addWidget(charts_, 0, 0);
  chartGrid->addWidget(month_, 0, 1);
  const char* pairs[] = {"Dauer && Transfer", "Kosten && Transfer", "Kosten && Dauer"};
  for (int i = 0; i < 3; ++i) {
    auto* option = new QRadioButton(QString::fromUtf8(pairs[i]), chartBox);
    option->setObjectName(QStringLiteral("Option%1").arg(i + 1));
    pair_->addButton(option, i);
    chartGrid->addWidget(option, 1 + i, 0, 1, 2);
  }
  pair_->button(0)->setChecked(true);
  controls->addWidget(chartBox);

  preview_ = new QCheckBox(QStringLiteral("Vorschau"), this);
  preview_->setObjectName(QStringLiteral("Check4"));
  preview_->setChecked(true);
  controls->addWidget(preview_);
  making_ = new QLabel(QStringLiteral("Erstelle Vorschau..."), this);
  making_->setObjectName(QStringLiteral("Label2"));
  making_->hide();
  controls->addWidget(making_);
  controls->addStretch();
  auto* buttons = new QHBoxLayout;
  auto* print = new QPushButton(QStringLiteral("&Drucken"), this);
  print->setObjectName(QStringLiteral("Command1_0"));
  print->setDefault(true);
  auto* cancel = new QPushButton(QStringLiteral("A&bbrechen"), this);
  cancel->setObjectName(QStringLiteral("Command1_1"));
  buttons->addWidget(print);
  buttons->addWidget(cancel);
  controls->addLayout(buttons);

  previewWidget_ = new QPrintPreviewWidget(previewPrinter_.get(), this);
  previewWidget_->setObjectName(QStringLiteral("IDPreview"));
  previewWidget_->setMinimumSize(360, 480);
  previewWidget_->fitInView();
  layout->addWidget(previewWidget_, 1);
  connect(previewWidget_, &QPrintPreviewWidget::paintRequested, this,
          [this](QPrinter* printer) { PaintListPages(*printer, Content(Options()), Options()); });

  const auto changed = [this] {
    UpdateEnabling();
    Vorschau();
  };
  for (QAbstractButton* button :
       {static_cast<QAbstractButton*>(colour_), static_cast<QAbstractButton*>(mono_),
        static_cast<QAbstractButton*>(invoice_), static_cast<QAbstractButton*>(listForm_),
        static_cast<QAbstractButton*>(transfer_), static_cast<QAbstractButton*>(classColours_),
        static_cast<QAbstractButton*>(charts_)}) {
    connect(button, &QAbstractButton::toggled, this, changed);
  }
  connect(pair_, &QButtonGroup::idToggled, this, [changed](int, bool on) {
    if (on) {
      changed();
    }
  });
  connect(month_, &QComboBox::currentIndexChanged, this, changed);
  connect(preview_, &QCheckBox::toggled, this, [this, changed](bool on) {
    previewWidget_->setVisible(on);
    adjustSize();
    changed();
  });
  connect(copies_, &QLineEdit::editingFinished, this, [this] { SetCopies(Copies()); });
  connect(copiesBar_, &QScrollBar::valueChanged, this, [this](int value) { SetCopies(-value); });
  connect(settings, &QPushButton::clicked, this, &PrintDialog::PrinterSettings);
  connect(difference, &QPushButton::clicked, this, [this, changed] {
    DifferenceDialog(services_, this).exec();
    changed();
  });
  connect(print, &QPushButton::clicked, this, [this] {
    if (Drucken()) {
      accept();
    }
  });
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void PrintDialog::UpdateEnabling() {
  if (mono_->isChecked()) {
    classColours_->setChecked(false);
  }
  classColours_->setEnabled(colour_->isChecked());
  month_->setEnabled(charts_->isChecked());
  for (QAbstractButton* button : pair_->buttons()) {
    button->setEnabled(charts_->isChecked());
  }
}

int PrintDialog::Copies() const {
  const double typed = LeadingNumber(copies_->text());
  return typed < 1 ? 1 : static_cast<int>(std::min(typed, 999.0));
}

void PrintDialog::SetCopies(int copies) {
  copies = std::clamp(copies, 1, 999);
  const QSignalBlocker blockText(copies_);
  const QSignalBlocker blockBar(copiesBar_);
  copies_->setText(QString::number(copies));
  copiesBar_->setValue(-copies);
}

ListPrintOptions PrintDialog::Options() const {
  ListPrintOptions options;
  options.mono = mono_->isChecked();
  options.invoice = invoice_->isChecked();
  options.transfer = transfer_->isChecked();
  options.classColours = classColours_->isChecked() && !options.mono;
  options.charts = charts_->isChecked();
  options.chartMonth = month_->currentData().toDate();
  options.pair = static_cast<ListPrintOptions::Pair>(std::max(0, pair_->checkedId()));
  return options;
}

ListPrintContent PrintDialog::Content(const ListPrintOptions& options) const {
  ListPrintContent content;
  content.title = BuildListTitle(services_.dir, selection_.periodItem, services_.clock.Now().date());
  content.filter = selection_.filter;
  content.rows = selection_.rows;
  content.currency = services_.state.Waehrung;
  if (options.charts) {
    AddPrintCharts(services_.dir, options, content);
  }
  return content;
}

void PrintDialog::Vorschau() {
  if (loading_ || !preview_->isChecked()) {
    return;
  }
  making_->show();
  previewWidget_->updatePreview();
  making_->hide();
}

void PrintDialog::PrinterSettings() {
  const QString name = printers_->currentText();
  if (name == PdfEntry()) {
    return;
  }
  const QPrinterInfo info = QPrinterInfo::printerInfo(name);
  if (info.isNull()) {
    services_.prompter.Message(name.isEmpty()
                                   ? QStringLiteral("Unable To open default printer")
                                   : QStringLiteral("Unable To open ") + name + QStringLiteral(" printer"),
                               Prompter::Icon::Warning);
    return;
  }
  // The queue's settings stay with the dialog until it prints.
  if (!queuePrinter_ || queuePrinter_->printerName() != name) {
    queuePrinter_ = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
  }
  QPageSetupDialog(queuePrinter_.get(), this).exec();
}

bool PrintDialog::Drucken() {
  const QString name = printers_->currentText();
  if (name.isEmpty()) {
    services_.prompter.Message(QStringLiteral("Kein Drucker ausgewählt"), Prompter::Icon::Warning);
    return false;
  }
  std::unique_ptr<QPrinter> printer;
  if (name == PdfEntry()) {
    const QString file = services_.prompter.AskSaveFileName(QStringLiteral("In PDF-Datei drucken"),
                                                            QStringLiteral("PDF Datei (*.pdf)"));
    if (file.trimmed().isEmpty()) {
      return false;
    }
    printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(file.trimmed());
  } else {
    const QPrinterInfo info = QPrinterInfo::printerInfo(name);
    if (info.isNull()) {
      services_.prompter.Message(
          QStringLiteral("Der Drucker \"%1\" ist nicht mehr vorhanden. Bitte wählen Sie einen anderen.")
              .arg(name),
          Prompter::Icon::Warning);
      return false;
    }
    printer = queuePrinter_ && queuePrinter_->printerName() == name
                  ? std::move(queuePrinter_)
                  : std::make_unique<QPrinter>(info, QPrinter::HighResolution);
  }
  SetUpPage(*printer);
  printer->setCopyCount(Copies());
  const ListPrintOptions options = Options();
  printer->setColorMode(options.mono ? QPrinter::GrayScale : QPrinter::Color);
  printer->setDocName(BuildListTitle(services_.dir, selection_.periodItem, services_.clock.Now().date()));
  if (!PaintListPages(*printer, Content(options), options)) {
    services_.prompter.Message(
        QStringLiteral("Der Ausdruck auf \"%1\" konnte nicht begonnen werden.").arg(name),
        Prompter::Icon::Warning);
    return false;
  }
  return true;
}

}  // namespace minutor
