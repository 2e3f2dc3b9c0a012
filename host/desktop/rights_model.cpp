#include "host/desktop/rights_model.h"

#include <algorithm>
#include <utility>

#include "host/screens/theme.h"

namespace basalt::host {
void RightsModel::show(RightsSheet sheet, bool changeable, std::function<bool(const UserRight&)> isFixed) {
    beginResetModel();
    sheet_ = std::move(sheet);
    changeable_ = changeable && !sheet_.user.manager;
    isFixed_ = std::move(isFixed);
    cells_.clear();
    at_.assign(sheet_.parts.size(), std::vector<int>(sheet_.permissions.size(), -1));
    for (const UserRight& right : sheet_.rights) {
        const auto placeOf = [](const std::vector<RightsSheet::Title>& titles, int code) {
            return std::find_if(titles.begin(), titles.end(), [code](const auto& each) { return each.code == code; }) -
                   titles.begin();
        };
        const auto row = static_cast<std::size_t>(placeOf(sheet_.parts, right.part));
        const auto column = static_cast<std::size_t>(placeOf(sheet_.permissions, right.permission));
        at_[row][column] = static_cast<int>(cells_.size());
        cells_.push_back({&right, right.held()});
    }
    endResetModel();
}

std::vector<RightChange> RightsModel::changes() const {
    std::vector<RightChange> changes;
    for (const Cell& cell : cells_) {
        if (cell.held != cell.right->held()) changes.push_back({cell.right->part, cell.right->permission, cell.held});
    }
    return changes;
}

const RightsModel::Cell* RightsModel::cellAt(const QModelIndex& index) const {
    if (!index.isValid()) return nullptr;
    const int cell = at_[static_cast<std::size_t>(index.row())][static_cast<std::size_t>(index.column())];
    return cell < 0 ? nullptr : &cells_[static_cast<std::size_t>(cell)];
}

bool RightsModel::isTicked(const Cell& cell) const {
    return cell.held || sheet_.user.manager;
}

bool RightsModel::mayChange(const Cell& cell) const {
    return changeable_ && !(cell.right->held() && isFixed_ && isFixed_(*cell.right));
}

// What the user has otherwise than the group.
QString RightsModel::note(const Cell& cell) const {
    return !sheet_.user.manager && cell.held != cell.right->byGroup ? QStringLiteral("ویژه") : QString();
}

QString RightsModel::toolTip(const Cell& cell) const {
    if (sheet_.user.manager) return QStringLiteral("مدیر همهٔ دسترسی‌ها را دارد.");
    if (changeable_ && !mayChange(cell))
        return QStringLiteral(
            "کسی نمی‌تواند دسترسی به همین صفحه را از خودش بگیرد.");
    return cell.right->byGroup ? QStringLiteral("گروه کاربر این دسترسی را دارد.")
                               : QStringLiteral("گروه کاربر این دسترسی را ندارد.");
}

QString RightsModel::spoken(const QModelIndex& index, const Cell& cell) const {
    const QString special = note(cell);
    return QStringLiteral("%1 در %2: %3%4")
        .arg(permissionTitle(index.column()), partTitle(index.row()),
             isTicked(cell) ? QStringLiteral("دارد") : QStringLiteral("ندارد"),
             special.isEmpty() ? QString() : QStringLiteral("، ") + special);
}

QString RightsModel::partTitle(int row) const {
    return QString::fromStdString(sheet_.parts[static_cast<std::size_t>(row)].text);
}

QString RightsModel::permissionTitle(int column) const {
    return QString::fromStdString(sheet_.permissions[static_cast<std::size_t>(column)].text);
}

int RightsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(sheet_.parts.size());
}

int RightsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(sheet_.permissions.size());
}

QVariant RightsModel::data(const QModelIndex& index, int role) const {
    const Cell* cell = cellAt(index);
    if (!cell) return {};
    switch (role) {
        case Qt::CheckStateRole:
            return static_cast<int>(isTicked(*cell) ? Qt::Checked : Qt::Unchecked);
        case Qt::DisplayRole:
            return note(*cell);
        case Qt::ForegroundRole:
            return themeColors().muted;
        case Qt::ToolTipRole:
            return toolTip(*cell);
        case Qt::AccessibleTextRole:
            return spoken(index, *cell);
        default:
            return {};
    }
}

bool RightsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const Cell* cell = cellAt(index);
    if (role != Qt::CheckStateRole || !cell || !mayChange(*cell)) return false;
    cells_[static_cast<std::size_t>(cell - cells_.data())].held = value.toInt() == Qt::Checked;
    emit dataChanged(index, index);
    if (OnEdited) OnEdited();
    return true;
}

Qt::ItemFlags RightsModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    const Cell* cell = cellAt(index);
    if (cell && mayChange(*cell)) flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QVariant RightsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role == Qt::TextAlignmentRole && orientation == Qt::Vertical) return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole) return {};
    return orientation == Qt::Horizontal ? permissionTitle(section) : partTitle(section);
}

}  // namespace basalt::host
