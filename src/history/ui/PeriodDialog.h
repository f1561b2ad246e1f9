#pragma once

#include <QDialog>

class QLineEdit;

namespace minutor {

struct Services;

// "Definiert": the first and last day of the list's custom period, kept in
// Config/Period.cfg as the fields hold them.
class PeriodDialog : public QDialog {
  Q_OBJECT

 public:
  explicit PeriodDialog(const Services& services, QWidget* parent = nullptr);

  QLineEdit* Field(int index) const { return fields_[index]; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Save();

  const Services& services_;
  QLineEdit* fields_[2] = {};
};

}  // namespace minutor
