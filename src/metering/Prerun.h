#pragma once

#include <QString>

namespace minutor {

class DataDir;

// What is left of the volume unit last paid for under a volume tariff, kept
// in "Prerun/<tariff less its extension>.dat" between connections and shared
// by all users.

// The kilobytes carried over; 0 without a file. A line that isn't a number
// reads as far as it is one.
float LoadPrerun(const DataDir& dir, const QString& tariff);

// Replaces the file with `einheitRest`. Failures are not reported: at worst
// the next connection pays for a unit again.
void SavePrerun(const DataDir& dir, const QString& tariff, float einheitRest);

}  // namespace minutor
