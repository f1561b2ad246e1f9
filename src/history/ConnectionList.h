#pragma once

#include "history/ListColouring.h"
#include "history/ListPeriod.h"
#include "history/RecordFilter.h"
#include "history/RecordWalk.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <atomic>
#include <optional>

namespace minutor {

class DataDir;

// The columns of the list's grid, numbered from 1 as the grid and List.cfg
// number them.
enum ListColumn {
  kColumnIcon = 1,
  kColumnDatum,
  kColumnStart,
  kColumnDauer,
  kColumnKosten,
  kColumnEinheiten,
  kColumnIn,
  kColumnOut,
  kColumnInOut,
  kColumnDfue,
  kColumnTarif,
  kColumnUser,
  kColumnKommentar,
  kColumnFile,
  kColumnSortDatum,
};

// The headers of columns 1 to 13 ("" for the icon column) and their widths.
const QStringList& ListColumnHeaders();
int ListColumnWidth(int column);

// One row of the grid. Its texts stand one after the other in one string, so
// that a long history doesn't cost an allocation per cell.
struct ListRow {
  int icon = 0;
  QString text;
  // Where the texts of columns 2 to 15 end in `text`.
  std::array<int, kColumnSortDatum - kColumnDatum + 1> ends{};

  QStringView Cell(int column) const {
    const auto i = static_cast<size_t>(column - kColumnDatum);
    const int begin = i == 0 ? 0 : ends[i - 1];
    return QStringView(text).sliced(begin, ends[i] - begin);
  }
  // The texts of columns 2 to `last`.
  QStringList Cells(int last = kColumnSortDatum) const;
};

// What a reload of the list asks for.
struct ListQuery {
  ListPeriod period;
  RecordFilter filter;
  std::optional<quint8> tax;  // the net view deducts this rate in percent
  Colouring colouring;
  QString waehrung;
};

struct ListResult {
  QList<ListRow> rows;    // in folder order
  QString totalDuration;  // lblGesamtDauer
  QString totalCost;      // lblGesamtkosten
  WalkResult walk;
};

// Reads the records that pass the query's filters into rows and sums their
// duration and cost. A record with one of its first eleven lines empty is
// left out; the comment may be empty.
ListResult GetConnections(const DataDir& dir, const ListQuery& query,
                          const std::atomic<bool>* cancel = nullptr);

}  // namespace minutor
