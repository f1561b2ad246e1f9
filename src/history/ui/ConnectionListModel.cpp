#include "history/ui/ConnectionListModel.h"

#include <QPainter>
#include <QPixmap>

namespace minutor {

ConnectionListModel::ConnectionListModel(QObject* parent) : QAbstractTableModel(parent) {}

void ConnectionListModel::SetRows(QList<ListRow> rows) {
  beginResetModel();
  rows_ = std::move(rows);
  endResetModel();
}

void ConnectionListModel::RowsReordered() {
  beginResetModel();
  endResetModel();
}

int ConnectionListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ConnectionListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnSortDatum;
}

QVariant ConnectionListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rows_.size()) {
    return {};
  }
  const ListRow& row = rows_.at(index.row());
  const int column = index.column() + 1;
  if (column == kColumnIcon) {
    return role == Qt::DecorationRole ? QVariant(ClassIcon(row.icon)) : QVariant();
  }
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
    return row.Cell(column).toString();
  }
  return {};
}

QVariant ConnectionListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
    return {};
  }
  return ListColumnHeaders().value(section);
}

QIcon ConnectionListModel::ClassIcon(int icon) {
  static const std::array<QColor, 4> colours = {QColor(0, 160, 60), QColor(230, 200, 0), QColor(240, 130, 0),
                                                QColor(200, 0, 0)};
  static std::array<QIcon, 4> icons;
  const auto i = static_cast<size_t>(std::clamp(icon, 0, 3));
  if (icons[i].isNull()) {
    QPixmap pixmap(12, 12);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colours[i].darker(140));
    painter.setBrush(colours[i]);
    painter.drawEllipse(QRectF(0.5, 0.5, 11, 11));
    painter.end();
    icons[i] = QIcon(pixmap);
  }
  return icons[i];
}

}  // namespace minutor
