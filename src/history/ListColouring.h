#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>

namespace minutor {

class DataDir;

// Config/Difference.cfg as the colouring dialog shows it: the category
// (0 none, 1 cost, 2 duration, 3 transfer volume) and the three limits of
// each group, as typed.
struct DifferenceConfig {
  int category = 0;
  QStringList costs{QString(), QString(), QString()};
  QStringList durations{QString(), QString(), QString()};
  QStringList volumes{QString(), QString(), QString()};
};

// A missing file gives category 0 and empty limits; missing lines read as
// empty, a category that isn't 0 to 3 as 0.
DifferenceConfig ReadDifferenceConfig(const DataDir& dir);
bool WriteDifferenceConfig(const DataDir& dir, const DifferenceConfig& config);

// What the list classes its rows by: the category and the limits of its group.
struct Colouring {
  int category = 0;
  std::array<float, 3> limits{};
};

Colouring ReadColouring(const DataDir& dir);

// The class icon (0 to 3) of a row. `value` is what the list hands over for
// the category: the cost as the row shows it (after a net deduction), the
// duration text, or the record's line 8 as it stands in the file, still
// enciphered: the transfer class is judged on the leading digits of the
// cipher text, and the duration class is always 0.
int DifferenceIcon(const Colouring& colouring, const QByteArray& value);

}  // namespace minutor
