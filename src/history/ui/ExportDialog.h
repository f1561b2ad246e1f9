#pragma once

#include "history/ListSelection.h"

#include <QDialog>

namespace minutor {

struct Services;

// "Exportieren...": the list now shown as an HTML file, with the month's
// charts beside it, or as a text table for a spreadsheet.
class ExportDialog : public QDialog {
  Q_OBJECT

 public:
  enum class Format { Html, Text };

  ExportDialog(const Services& services, ListSelection selection, QWidget* parent = nullptr);

  // Asks for the file name (and about overwriting it and about the charts),
  // writes and tells the user; the dialog closes unless the user cancelled
  // the name.
  void Export(Format format);

 private:
  QString AskFileName(Format format);

  const Services& services_;
  ListSelection selection_;
};

}  // namespace minutor
