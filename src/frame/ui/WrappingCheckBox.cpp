#include "frame/ui/WrappingCheckBox.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>

#include <algorithm>

namespace minutor {

namespace {

constexpr int kUnbounded = 100000;

}  // namespace

WrappingCheckBox::WrappingCheckBox(const QString& text, QWidget* parent) : QCheckBox(text, parent) {
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

int WrappingCheckBox::TextOffset() const {
  QStyleOptionButton option;
  initStyleOption(&option);
  return style()->pixelMetric(QStyle::PM_IndicatorWidth, &option, this) +
         style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, &option, this);
}

QRect WrappingCheckBox::TextRect(int width) const {
  const int offset = TextOffset();
  const QRect bounds = fontMetrics().boundingRect(QRect(0, 0, std::max(1, width - offset), kUnbounded),
                                                  Qt::TextWordWrap | Qt::TextShowMnemonic, text());
  return {offset, 0, std::max(1, width - offset), bounds.height()};
}

QSize WrappingCheckBox::sizeHint() const {
  // As wide as the caption on one line; the layout narrows it as needed.
  const QSize one = QCheckBox::sizeHint();
  return {one.width(), heightForWidth(one.width())};
}

QSize WrappingCheckBox::minimumSizeHint() const {
  // Narrow enough for the longest word.
  int longest = 0;
  for (const QString& word : text().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    longest = std::max(longest, fontMetrics().horizontalAdvance(word));
  }
  const int width = TextOffset() + longest + 2;
  return {width, heightForWidth(width)};
}

int WrappingCheckBox::heightForWidth(int width) const {
  QStyleOptionButton option;
  initStyleOption(&option);
  const int indicator = style()->pixelMetric(QStyle::PM_IndicatorHeight, &option, this);
  return std::max(indicator, TextRect(width).height()) + 2;
}

void WrappingCheckBox::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  const QRect textRect = TextRect(width()).translated(0, 1);
  // The indicator stands beside the first line.
  QStyleOptionButton indicator = option;
  const int size = style()->pixelMetric(QStyle::PM_IndicatorHeight, &option, this);
  const int firstLine = fontMetrics().height();
  indicator.rect = QRect(0, 1 + std::max(0, (firstLine - size) / 2), size, size);
  painter.drawPrimitive(QStyle::PE_IndicatorCheckBox, indicator);
  painter.drawItemText(textRect, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap | Qt::TextShowMnemonic,
                       option.palette, isEnabled(), text(), QPalette::WindowText);
  if (hasFocus()) {
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = textRect.adjusted(-1, 0, 1, 0);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
  }
}

bool WrappingCheckBox::hitButton(const QPoint& pos) const { return rect().contains(pos); }

}  // namespace minutor
