#pragma once

#include "history/ChartPicture.h"

#include <QList>
#include <QString>

#include <array>

namespace minutor {

// What a chart shows: a day-by-day figure or the share of the connections.
enum class ChartMeasure { Dauer = 1, Kosten = 2, Transfer = 3, Anbieter = 4, Benutzer = 5 };
enum class ChartStyle { Linien = 1, Balken = 2, Kreis = 3 };

// The drawing surface of a chart.
constexpr int kChartWidth = 470;
constexpr int kChartHeight = 256;

// One name of a pie and the connections counted under it.
struct PieEntry {
  QString name;
  float count = 0;
};

// The day values of a month (index 0 is day 1), or the pie's names with the
// number of connections `total` they share out.
struct ChartData {
  std::array<float, 31> days{};
  QList<PieEntry> pie;
  double total = 0;
};

// The chart of one month. A line or bar chart for the time measures; the
// style Kreis draws the pie whatever the measure.
ChartPicture DrawDiagramm(const ChartData& data, ChartMeasure measure, ChartStyle style,
                          const QString& currency);

}  // namespace minutor
