#pragma once

#include "history/ListSort.h"
#include "history/RecordFilter.h"

#include <QList>
#include <QString>

namespace minutor {

class DataDir;

// Config/List.cfg: the list's filters, its sort and the width and position
// of each of the grid's columns 1 to 13.
struct ListConfig {
  struct Column {
    int width = 0;
    int position = 0;  // among the columns, counted from 1 as the columns are
  };
  int periodIndex = 0;
  QString user = kAlle;
  QString provider = kAlle;
  QString tariff = kAlle;
  bool net = false;
  ListSort sort = SortByHeader(kColumnDatum);
  QList<Column> columns;  // as many as the file holds, up to 13
};

// Reads as far as the file goes; what is missing keeps its default, and
// without a file the list sorts as a click on "Datum" does.
ListConfig LoadListCfg(const DataDir& dir);
bool SaveListCfg(const DataDir& dir, const ListConfig& config);

}  // namespace minutor
