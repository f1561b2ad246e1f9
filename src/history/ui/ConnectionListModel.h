#pragma once

#include "history/ConnectionList.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <array>

namespace minutor {

// The rows of the connection list for a table view: columns 1 to 15 of the
// grid at model columns 0 to 14, the last two hidden by the view.
class ConnectionListModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit ConnectionListModel(QObject* parent = nullptr);

  void SetRows(QList<ListRow> rows);
  const QList<ListRow>& Rows() const { return rows_; }
  QList<ListRow>& MutableRows() { return rows_; }
  void RowsReordered();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // The class icons 0 to 3: green, yellow, orange, red.
  static QIcon ClassIcon(int icon);

 private:
  QList<ListRow> rows_;
};

}  // namespace minutor
