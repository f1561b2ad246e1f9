#pragma once

#include <QList>
#include <QPointF>
#include <QString>

namespace minutor {

// One mark of a chart, in the drawing surface's pixels (origin top left).
struct ChartShape {
  enum class Kind {
    Line,    // from `a` to `b`
    Box,     // filled, corners `a` and `b` both inside
    Text,    // top left at `a`, or top right with `alignRight`
    Sector,  // centre `a`, `radius`, counter-clockwise from `start` to `end` (radians)
    Circle,  // filled, centre `a`, `radius`
  };
  enum class Font { Chart, Symbol };

  Kind kind = Kind::Line;
  QPointF a;
  QPointF b;
  double radius = 0;
  double start = 0;
  double end = 0;
  QString text;
  bool alignRight = false;
  Font font = Font::Chart;
  quint32 rgb = 0;  // 0xRRGGBB
};

// A chart as the panel, the printout and the command line draw it: the marks
// on the surface in drawing order, and the two axis captions beside it.
struct ChartPicture {
  QList<ChartShape> shapes;
  QString axisX;
  QString axisY;
};

}  // namespace minutor
