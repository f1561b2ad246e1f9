#pragma once

#include <QDialog>

#include <array>

class QComboBox;
class QGroupBox;
class QLineEdit;

namespace minutor {

struct Services;

// "Differenzierung": which measure classes the list's rows, and the limits of
// the four classes of cost, duration and volume.
class DifferenceDialog : public QDialog {
  Q_OBJECT

 public:
  explicit DifferenceDialog(const Services& services, QWidget* parent = nullptr);

  QComboBox* Category() const { return category_; }
  // Group 0 cost, 1 duration, 2 volume; fields 0 to 2 the limits, 3 the
  // display of the third.
  QLineEdit* Field(int group, int index) const { return fields_[group][index]; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void CategoryChanged(int index);
  void Save();

  const Services& services_;
  QComboBox* category_ = nullptr;
  std::array<QGroupBox*, 3> frames_{};
  std::array<std::array<QLineEdit*, 4>, 3> fields_{};
};

}  // namespace minutor
