#pragma once

#include <QString>

namespace minutor {

class DataDir;

// The chart panel's last choices, "Config/Chart.cfg". A value the file
// doesn't hold stays as given here: -1 for an index, empty for a text, 0 for
// measure and style.
struct ChartSettings {
  int monthIndex = -1;
  int yearIndex = -1;
  QString user;
  QString provider;
  QString tariff;
  int measure = 0;
  int style = 0;

  // Reads as far as the file goes; garbage reads as 0.
  static ChartSettings Load(const DataDir& dir);
  bool Save(const DataDir& dir) const;
};

}  // namespace minutor
