#pragma once

#include "history/ChartDrawing.h"
#include "history/RecordFilter.h"

#include <atomic>

namespace minutor {

class DataDir;

// The month a chart shows and, for the day charts, the records it admits.
// The user is compared without regard to case.
struct ChartQuery {
  int month = 1;
  int year = 2001;
  RecordFilter filter;
};

// The figures of one chart from one listing of the records' folder and one
// read of the files it needs. Day charts sum the records of each day of the
// month that pass the filter: seconds (an hour counting 360), cost, or MB.
// Pies count every record of the month by tariff or by user, the filter
// unasked, in years that end in the same two digits; past 20 names the rest
// is counted as "Defekte Aufzeichnungen". Stops early once `cancel` is set.
ChartData GatherChartData(const DataDir& dir, const ChartQuery& query, ChartMeasure measure,
                          const std::atomic<bool>* cancel = nullptr);

}  // namespace minutor
