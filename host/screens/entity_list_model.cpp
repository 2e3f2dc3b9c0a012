#include "host/screens/entity_list_model.h"

#include <algorithm>

#include "ado/value.h"
#include "host/screens/persian_digits.h"

namespace basalt::host {
namespace {

enum Column { kCode, kName, kColumnCount };

}  // namespace

void EntityListModel::show(RowSet rows) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

std::int64_t EntityListModel::code(int row) const {
    return toInt64(rows_.column(kCode).valueAt(static_cast<std::size_t>(row)));
}

bool EntityListModel::isPicked(std::int64_t code) const {
    return std::find(picked_.begin(), picked_.end(), code) != picked_.end();
}

void EntityListModel::toggle(int row) {
    if (row < 0 || row >= rowCount()) return;
    const std::int64_t toggled = code(row);
    if (std::erase(picked_, toggled) == 0) picked_.push_back(toggled);
    const QModelIndex cell = index(row, kCode);
    emit dataChanged(cell, cell, {Qt::CheckStateRole});
    if (onPicked) onPicked();
}

int EntityListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.rowCount());
}

int EntityListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumnCount;
}

QVariant EntityListModel::data(const QModelIndex& index, int role) const {
    const int row = index.row();
    if (role == Qt::CheckStateRole && index.column() == kCode)
        return static_cast<int>(isPicked(code(row)) ? Qt::Checked : Qt::Unchecked);
    if (role != Qt::DisplayRole) return {};
    const QString text = QString::fromStdString(
        toText(rows_.column(static_cast<std::size_t>(index.column())).valueAt(static_cast<std::size_t>(row))));
    return index.column() == kCode ? persianDigits(text) : text;
}

bool EntityListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !index.isValid()) return false;
    if ((value.toInt() == Qt::Checked) != isPicked(code(index.row()))) toggle(index.row());
    return true;
}

Qt::ItemFlags EntityListModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (index.column() == kCode) flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QVariant EntityListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return section == kCode ? QStringLiteral("کد") : QStringLiteral("عنوان");
}

}  // namespace basalt::host
