#include "frame/ui/FittingText.h"

#include <QFontMetrics>

namespace minutor {

QFont FittingFont(const QFont& base, const QString& text, int room) {
  QFont font = base;
  const qreal smallest = base.pointSizeF() * 0.7;
  while (room > 0 && smallest > 0 && font.pointSizeF() > smallest &&
         QFontMetrics(font).horizontalAdvance(text) > room) {
    font.setPointSizeF(font.pointSizeF() - 0.25);
  }
  return font;
}

void ShorteningLabel::SetTexts(const QStringList& longestFirst) {
  texts_ = longestFirst;
  updateGeometry();
  Choose();
}

int ShorteningLabel::WidthFor(const QString& text) const {
  const QMargins margins = contentsMargins();
  return fontMetrics().horizontalAdvance(text) + 2 * margin() + margins.left() + margins.right();
}

QSize ShorteningLabel::sizeHint() const {
  return {texts_.isEmpty() ? 0 : WidthFor(texts_.first()), QLabel::sizeHint().height()};
}

QSize ShorteningLabel::minimumSizeHint() const {
  return {texts_.isEmpty() ? 0 : WidthFor(texts_.last()), QLabel::minimumSizeHint().height()};
}

void ShorteningLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  Choose();
}

void ShorteningLabel::Choose() {
  QString chosen = texts_.isEmpty() ? QString() : texts_.last();
  for (const QString& text : texts_) {
    if (WidthFor(text) <= width()) {
      chosen = text;
      break;
    }
  }
  if (text() != chosen) {
    setText(chosen);
  }
}

}  // namespace minutor
