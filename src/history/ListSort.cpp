#include "history/ListSort.h"

#include "frame/datadir/ClockText.h"
#include "frame/datadir/NumberText.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace minutor {

namespace {

constexpr int kNumber = 100;
constexpr int kText = 102;
constexpr int kTime = 200;
constexpr int kIcon = 300;

double NumberOf(QStringView text) {
  if (!text.contains(QLatin1Char(','))) {
    return LeadingNumber(text);
  }
  QString plain = text.toString();
  plain.replace(QLatin1Char(','), QLatin1Char('.'));
  return LeadingNumber(plain);
}

// A key's value for each row, worked out once before the sort: numbers for
// the numeric kinds, the text itself otherwise.
struct KeyValues {
  ListSort::Key key;
  bool numeric = true;
  std::vector<double> numbers;
};

KeyValues ValuesOf(const QList<ListRow>& rows, const ListSort::Key& key) {
  KeyValues values{
      key, key.column == kColumnIcon || key.type == kNumber || key.type == kTime || key.type == kIcon, {}};
  if (!values.numeric) {
    return values;
  }
  values.numbers.reserve(static_cast<size_t>(rows.size()));
  for (const ListRow& row : rows) {
    if (key.column == kColumnIcon || key.type == kIcon) {
      values.numbers.push_back(row.icon);
    } else if (key.type == kTime) {
      values.numbers.push_back(ClockTextSeconds(row.Cell(key.column)));
    } else {
      values.numbers.push_back(NumberOf(row.Cell(key.column)));
    }
  }
  return values;
}

// -1, 0 or 1 as row a goes before, with or after row b in ascending order.
int Compare(const QList<ListRow>& rows, qsizetype a, qsizetype b, const KeyValues& values) {
  if (values.numeric) {
    const double x = values.numbers[static_cast<size_t>(a)];
    const double y = values.numbers[static_cast<size_t>(b)];
    return x < y ? -1 : (x > y ? 1 : 0);
  }
  return rows.at(a).Cell(values.key.column).compare(rows.at(b).Cell(values.key.column), Qt::CaseInsensitive);
}

}  // namespace

ListSort SortByHeader(int column) {
  ListSort sort;
  sort.column = column;
  sort.order = 2;
  ListSort::Key& first = sort.keys[0];
  first.column = column;
  first.order = 2;
  if (column == kColumnIcon) {
    first.type = kIcon;
  } else if (column == kColumnDatum) {
    first.type = kNumber;
    first.column = kColumnSortDatum;
    sort.keys[1] = {kColumnStart, 2, kTime};
  } else if (column == kColumnStart || column == kColumnDauer) {
    first.type = kTime;
  } else if (column >= kColumnEinheiten && column <= kColumnInOut) {
    first.type = kNumber;
  } else {
    // The cost sorts as text, as it always has.
    first.type = kText;
  }
  sort.type = first.type;
  return sort;
}

ListSort SortFromConfig(int column, int order, int type) {
  ListSort sort;
  sort.column = column;
  sort.order = order;
  sort.type = type;
  sort.keys[0] = {column, order, type};
  if (column == kColumnDatum) {
    sort.keys[0].column = kColumnSortDatum;
    // 254 isn't a type the grid knows; the start then sorts as text, which
    // for "HH:MM:SS" is the same order.
    sort.keys[1] = {kColumnStart, 2, 254};
  }
  return sort;
}

void SortRows(QList<ListRow>& rows, const ListSort& sort) {
  std::vector<KeyValues> keys;
  for (const ListSort::Key& key : sort.keys) {
    if (key.column == kColumnIcon || (key.column >= kColumnDatum && key.column <= kColumnSortDatum)) {
      keys.push_back(ValuesOf(rows, key));
    }
  }
  std::vector<qsizetype> order(static_cast<size_t>(rows.size()));
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) {
    for (const KeyValues& values : keys) {
      const int c = Compare(rows, a, b, values);
      if (c != 0) {
        return values.key.order == 2 ? c > 0 : c < 0;
      }
    }
    return false;
  });
  QList<ListRow> sorted;
  sorted.reserve(rows.size());
  for (const qsizetype index : order) {
    sorted.append(std::move(rows[index]));
  }
  rows = std::move(sorted);
}

}  // namespace minutor
