#pragma once

#include "history/RecordFilter.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>

namespace minutor {

class DataDir;

// Writes the month's duration and transfer bar charts as BMP pictures beside
// the HTML file ("liste1.bmp", "liste2.bmp"); the paths, or nullopt when a
// picture couldn't be written.
std::optional<QStringList> WriteExportCharts(const DataDir& dir, const QString& htmlPath, const QDate& month,
                                             const RecordFilter& filter, const QString& currency);

}  // namespace minutor
