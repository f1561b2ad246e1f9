#pragma once

#include "history/ConnectionList.h"
#include "history/RecordFilter.h"

#include <QList>
#include <QString>

namespace minutor {

// What the list shows at the moment its rows are printed or exported: the
// rows in the grid's order, the period item and the filter combos' texts.
struct ListSelection {
  QList<ListRow> rows;
  QString periodItem;
  RecordFilter filter;
};

}  // namespace minutor
