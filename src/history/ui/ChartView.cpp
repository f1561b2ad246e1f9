#include "history/ui/ChartView.h"

#include "history/ChartDrawing.h"
#include "history/ui/ChartPainter.h"

#include <QPainter>

namespace minutor {

ChartView::ChartView(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("Picture2"));
  setFixedSize(kChartWidth, kChartHeight);
}

void ChartView::SetPicture(ChartPicture picture) {
  picture_ = std::move(picture);
  update();
}

void ChartView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  PaintChart(painter, picture_);
}

}  // namespace minutor
