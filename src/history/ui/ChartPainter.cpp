#include "history/ui/ChartPainter.h"

#include "history/ChartDrawing.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

#include <numbers>

namespace minutor {

namespace {

// The chart's fonts were a small bitmap terminal face and the system's sans
// serif; where they are missing, a plain monospaced and a sans serif face
// stand in. Glyphs stay unsmoothed like the bitmap faces.
QFont ShapeFont(ChartShape::Font font) {
  QFont result;
  if (font == ChartShape::Font::Symbol) {
    result.setFamilies(
        {QStringLiteral("MS Sans Serif"), QStringLiteral("DejaVu Sans"), QStringLiteral("sans-serif")});
  } else {
    result.setFamilies(
        {QStringLiteral("Terminal"), QStringLiteral("DejaVu Sans Mono"), QStringLiteral("monospace")});
    result.setStyleHint(QFont::TypeWriter);
  }
  result.setPointSize(8);
  result.setStyleStrategy(QFont::NoAntialias);
  return result;
}

int SixteenthsOfDegree(double radians) { return qRound(radians * 180 / std::numbers::pi * 16); }

}  // namespace

void PaintChart(QPainter& painter, const ChartPicture& picture) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (const ChartShape& shape : picture.shapes) {
    const QColor colour = QColor::fromRgb(shape.rgb);
    switch (shape.kind) {
      case ChartShape::Kind::Line:
        painter.setPen(colour);
        painter.drawLine(shape.a, shape.b);
        break;
      case ChartShape::Kind::Box: {
        // Both corners are part of the box.
        const QRectF box = QRectF(shape.a, shape.b).normalized();
        painter.fillRect(QRectF(box.topLeft(), box.size() + QSizeF(1, 1)), colour);
        break;
      }
      case ChartShape::Kind::Text: {
        const QFont font = ShapeFont(shape.font);
        const QFontMetricsF metrics(font, painter.device());
        const double left =
            shape.alignRight ? shape.a.x() - metrics.horizontalAdvance(shape.text) : shape.a.x();
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(QPointF(left, shape.a.y() + metrics.ascent()), shape.text);
        break;
      }
      case ChartShape::Kind::Sector:
      case ChartShape::Kind::Circle: {
        const QRectF bounds(shape.a.x() - shape.radius, shape.a.y() - shape.radius, 2 * shape.radius,
                            2 * shape.radius);
        painter.setPen(colour);
        painter.setBrush(colour);
        if (shape.kind == ChartShape::Kind::Circle) {
          painter.drawEllipse(bounds);
        } else {
          painter.drawPie(bounds, SixteenthsOfDegree(shape.start),
                          SixteenthsOfDegree(shape.end - shape.start));
        }
        painter.setBrush(Qt::NoBrush);
        break;
      }
    }
  }
  painter.restore();
}

QImage RenderChart(const ChartPicture& picture) {
  QImage image(kChartWidth, kChartHeight, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  PaintChart(painter, picture);
  return image;
}

}  // namespace minutor
