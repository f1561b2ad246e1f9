#pragma once

#include "history/ListSelection.h"
#include "history/ui/ListPrintPage.h"

#include <QDialog>

#include <memory>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPrinter;
class QPrintPreviewWidget;
class QRadioButton;
class QScrollBar;

namespace minutor {

struct Services;

// "Drucken...": the list now shown on the system's printers (or into a PDF
// file), as rows or as the sums per provider, with the month's charts, and
// a preview of the pages as they will come out.
class PrintDialog : public QDialog {
  Q_OBJECT

 public:
  PrintDialog(const Services& services, ListSelection selection, QWidget* parent = nullptr);
  ~PrintDialog() override;

  // The first entry of the printer list: a PDF file instead of a queue.
  static QString PdfEntry();

  // The options as the controls stand.
  ListPrintOptions Options() const;
  int Copies() const;

  // Prints on the chosen printer; false when nothing was printed.
  bool Drucken();
  void Vorschau();

 private:
  void BuildUi();
  void UpdateEnabling();
  void PrinterSettings();
  void SetCopies(int copies);
  ListPrintContent Content(const ListPrintOptions& options) const;

  const Services& services_;
  ListSelection selection_;
  bool loading_ = true;
  std::unique_ptr<QPrinter> previewPrinter_;
  std::unique_ptr<QPrinter> queuePrinter_;
  QComboBox* printers_ = nullptr;
  QLineEdit* copies_ = nullptr;
  QScrollBar* copiesBar_ = nullptr;
  QRadioButton* colour_ = nullptr;
  QRadioButton* mono_ = nullptr;
  QRadioButton* invoice_ = nullptr;
  QRadioButton* listForm_ = nullptr;
  QCheckBox* transfer_ = nullptr;
  QCheckBox* classColours_ = nullptr;
  QCheckBox* charts_ = nullptr;
  QComboBox* month_ = nullptr;
  QButtonGroup* pair_ = nullptr;
  QCheckBox* preview_ = nullptr;
  QLabel* making_ = nullptr;
  QPrintPreviewWidget* previewWidget_ = nullptr;
};

}  // namespace minutor
