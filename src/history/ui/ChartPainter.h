#pragma once

#include "history/ChartPicture.h"

#include <QImage>

class QPainter;

namespace minutor {

// Draws a chart's marks with the painter, whose origin is the surface's top
// left corner. The background is the caller's.
void PaintChart(QPainter& painter, const ChartPicture& picture);

// The chart on a white surface of the chart's size, as the panel shows it.
QImage RenderChart(const ChartPicture& picture);

}  // namespace minutor
