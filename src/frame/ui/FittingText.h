#pragma once

#include <QFont>
#include <QLabel>
#include <QString>
#include <QStringList>

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

// A label that shows the longest of its texts that fits its width, and the
// last, shortest, one where none does. It asks the layout for room for the
// longest and makes do with room for the shortest.
class ShorteningLabel final : public QLabel {
 public:
  using QLabel::QLabel;

  void SetTexts(const QStringList& longestFirst);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  int WidthFor(const QString& text) const;
  void Choose();

  QStringList texts_;
};

}  // namespace minutor
