#pragma once

#include "history/ConnectionList.h"
#include "history/RecordFilter.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace minutor {

// The HTML file of the list: one table cell per grid column (2 to 13) that
// holds every row, line-broken, and a totals row. `chartFiles` are the
// pictures' file names beside it, or empty. Windows-1252 lines.
QList<QByteArray> ExportHtmlLines(const QList<ListRow>& rows, const QString& title,
                                  const RecordFilter& filter, const QStringList& chartFiles);

// The text table, columns padded and separated by " | ", for a spreadsheet's
// import. Windows-1252 lines.
QList<QByteArray> ExportTextLines(const QList<ListRow>& rows);

// The rows as RFC 4180 CSV in UTF-8 with a header row, numbers in plain
// notation and the date as YYYY-MM-DD.
QByteArray ExportCsv(const QList<ListRow>& rows);

// The rows as a JSON array of records with numbers as numbers.
QByteArray ExportJson(const QList<ListRow>& rows);

// The picture file that goes with an HTML file: "liste.htm" gives
// "liste1.bmp"; a name of another ending gets "1.bmp" glued on.
QString ExportChartPath(const QString& htmlPath, int number);

// Replaces the file whole with the lines, each ended by CR LF; nothing half
// written ever stands under the name.
bool WriteExportFile(const QString& path, const QList<QByteArray>& lines);
bool WriteExportFile(const QString& path, const QByteArray& bytes);

}  // namespace minutor
