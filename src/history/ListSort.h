#pragma once

#include "history/ConnectionList.h"

#include <QList>

#include <array>

namespace minutor {

// The grid's two-key sort. Types: 100 number, 102 text, 200 time, 300 icon;
// another type sorts as text. Order 1 is ascending, 2 descending.
struct ListSort {
  struct Key {
    int column = 0;  // 0: no key
    int order = 2;
    int type = 102;
  };
  // What List.cfg remembers: the column clicked, its order and type.
  int column = kColumnDatum;
  int order = 2;
  int type = 100;
  std::array<Key, 2> keys{};
};

// The sort of a click on the header of a column: always descending; the date
// sorts by its hidden eight digits and then by the start.
ListSort SortByHeader(int column);

// The sort that List.cfg restores.
ListSort SortFromConfig(int column, int order, int type);

// Sorts stably, so rows equal in both keys keep their folder order.
void SortRows(QList<ListRow>& rows, const ListSort& sort);

}  // namespace minutor
