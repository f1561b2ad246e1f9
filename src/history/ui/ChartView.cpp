#include "history/ui/ChartView.h"

#include "history/ChartDrawing.h"
#include "history/ui/ChartPainter.h"

#include <QPainter>

#include <algorithm>

namespace minutor {

ChartView::ChartView(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("Picture2"));
  // The chart keeps its natural size where there is room and shrinks with
  // its drawing where larger fonts leave less of the frame for it.
  setMinimumSize(kChartWidth / 2, kChartHeight / 2);
  setMaximumSize(kChartWidth, kChartHeight);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
}

QSize ChartView::sizeHint() const { return {kChartWidth, kChartHeight}; }

void ChartView::SetPicture(ChartPicture picture) {
  picture_ = std::move(picture);
  update();
}

void ChartView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  // The marks are laid out for the full size: scale them evenly and centre
  // them on the surface.
  const qreal scale = std::min({1.0, qreal(width()) / kChartWidth, qreal(height()) / kChartHeight});
  painter.translate((width() - kChartWidth * scale) / 2, (height() - kChartHeight * scale) / 2);
  painter.scale(scale, scale);
  PaintChart(painter, picture_);
}

}  // namespace minutor
