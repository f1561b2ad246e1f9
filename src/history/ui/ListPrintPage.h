#pragma once

#include "history/ChartPicture.h"
#include "history/ConnectionList.h"
#include "history/RecordFilter.h"

#include <QDate>
#include <QList>
#include <QString>

class QPagedPaintDevice;

namespace minutor {

class DataDir;

// The choices of "Drucken..." that shape the pages.
struct ListPrintOptions {
  enum class Pair { DauerTransfer, KostenTransfer, KostenDauer };
  bool mono = false;
  bool invoice = false;       // "Rechnungsform": the per-provider summary instead of the rows
  bool transfer = false;      // "Transfer- und DFÜ-Daten ausdrucken"
  bool classColours = false;  // "Farbliche differenzieren", colour only
  bool charts = false;        // "Monatsdiagramme drucken"
  QDate chartMonth;
  Pair pair = Pair::DauerTransfer;
};

// What the pages show: the list's heading, filters and rows (as the grid
// holds them, icon = class), and with charts their two pictures and titles.
struct ListPrintContent {
  QString title;
  RecordFilter filter;
  QList<ListRow> rows;
  QString currency;
  QList<ChartPicture> charts;
  QStringList chartTitles;
};

// The month the print dialog offers first for the charts of a list period.
QDate DefaultPrintMonth(int periodIndex, const QDate& today);

// Fills the content's charts for the options' month and pair.
void AddPrintCharts(const DataDir& dir, const ListPrintOptions& options, ListPrintContent& content);

// Draws the pages on an A4 portrait device from its paper's corner (a
// printer set to full page, a preview, a PDF writer). Print, preview and
// `minutorctl print` all draw through here. False when the painter can't
// start on the device.
bool PaintListPages(QPagedPaintDevice& device, const ListPrintContent& content,
                    const ListPrintOptions& options);

}  // namespace minutor
