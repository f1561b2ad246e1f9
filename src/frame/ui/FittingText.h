#pragma once

#include <QFont>
#include <QLabel>
#include <QString>

namespace minutor {

// The font in which `text` fits into `room` pixels: `base` itself, or as
// little smaller as needed, down to 70 % of it. A font sized in pixels rather
// than points is left as it is.
QFont FittingFont(const QFont& base, const QString& text, int room);

// A label that sets a text too long for it at a large font a little smaller
// rather than cutting it short. The font it starts from is its parent's.
class FittingLabel final : public QLabel {
 public:
  using QLabel::QLabel;

  void SetText(const QString& text);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Fit();
};

}  // namespace minutor
