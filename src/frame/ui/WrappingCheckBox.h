#pragma once

#include <QCheckBox>

namespace minutor {

// A check box whose caption breaks into lines where the panel is narrower
// than the caption, instead of widening the panel or being cut.
class WrappingCheckBox : public QCheckBox {
 public:
  explicit WrappingCheckBox(const QString& text, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& pos) const override;

 private:
  int TextOffset() const;  // from the left edge to the caption
  QRect TextRect(int width) const;
};

}  // namespace minutor
