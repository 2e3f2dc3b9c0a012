#include "host/screens/grid_model.h"

#include <algorithm>

#include "ado/error.h"
#include "host/screens/grid_sorter.h"
#include "host/screens/number_room.h"
#include "host/screens/persian_digits.h"
#include "host/screens/table_content.h"

namespace basalt::host {

GridModel::GridModel(QObject* parent) : QAbstractTableModel(parent) {}

GridModel::~GridModel() {
    if (source_) source_->removeListener(*this);
}

void GridModel::setSource(TDataSource* source) {
    if (source_) source_->removeListener(*this);
    source_ = source;
    if (source_) source_->addListener(*this);
    wasRead_ = false;
    renewRows();
}

TDataSet* GridModel::dataSet() const {
    TDataSet* dataSet = source_ ? source_->DataSet() : nullptr;
    return dataSet && dataSet->Active() ? dataSet : nullptr;
}

bool GridModel::isUnread() const {
    return wasRead_ && source_ && source_->DataSet() && !source_->DataSet()->Active();
}

int GridModel::addColumn(const TGridColumn& column) {
    const auto index = static_cast<int>(columns_.size());
    beginInsertColumns({}, index, index);
    columns_.push_back({column, DisplayFormat(column.DisplayFormat)});
    forgetFields();
    endInsertColumns();
    if (onColumnsChanged) onColumnsChanged();
    return index;
}

void GridModel::setColumn(int index, const TGridColumn& column) {
    GridColumnState& state = columns_[static_cast<std::size_t>(index)];
    state.column = column;
    state.format = DisplayFormat(column.DisplayFormat);
    forgetFields();
    if (index == sortColumn_) renewOrder();
    emit headerDataChanged(Qt::Horizontal, index, index);
    if (rowCount_ > 0) emit QAbstractTableModel::dataChanged(this->index(0, index), this->index(rowCount_ - 1, index));
    if (onColumnsChanged) onColumnsChanged();
}

void GridModel::removeColumnAt(int index) {
    if (sortColumn_ == index) sortBy(-1, false);
    beginRemoveColumns({}, index, index);
    columns_.erase(columns_.begin() + index);
    if (sortColumn_ > index) --sortColumn_;
    endRemoveColumns();
    if (onColumnsChanged) onColumnsChanged();
}

void GridModel::forgetFields() const {
    fieldsKnown_ = false;
}

int GridModel::field(int index) const {
    if (!fieldsKnown_) {
        TDataSet* rows = dataSet();
        for (const GridColumnState& state : columns_) {
            const TField* field = rows ? rows->FindField(state.column.FieldName) : nullptr;
            state.field = field ? field->Index() : -1;
            state.currency = field && field->Currency();
        }
        fieldsKnown_ = true;
    }
    return columns_[static_cast<std::size_t>(index)].field;
}

const DisplayFormat& GridModel::format(int index) const {
    static const DisplayFormat amounts("#,#0.#########;-#,#0.#########;0");
    static_cast<void>(field(index));
    const GridColumnState& state = columns_[static_cast<std::size_t>(index)];
    return state.currency && state.format.isEmpty() ? amounts : state.format;
}

bool GridModel::isNumberColumn(int index) const {
    const int at = field(index);
    const TDataSet* rows = dataSet();
    return at >= 0 && rows && isNumber(rows->fieldInfo(at).type);
}

bool GridModel::isAmountColumn(int index) const {
    return isNumberColumn(index) && (!format(index).isEmpty() || !isIntegral(dataSet()->fieldInfo(field(index)).type));
}

void GridModel::renewOrder() {
    order_.clear();
    const TDataSet* rows = dataSet();
    if (!rows || sortColumn_ < 0 || sortColumn_ >= columnCount()) return;
    if (const int at = field(sortColumn_); at >= 0) order_ = sortedRows(*rows, at, sortDescending_);
}

void GridModel::renewRows() {
    beginResetModel();
    forgetFields();
    const TDataSet* rows = dataSet();
    rowCount_ = rows ? rows->RecordCount() : 0;
    wasRead_ = wasRead_ || rows;
    renewOrder();
    endResetModel();
    if (onRowsChanged) onRowsChanged();
}

void GridModel::sortBy(int column, bool descending) {
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    sortColumn_ = column;
    sortDescending_ = descending;
    renewOrder();
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
    if (onRowsChanged) onRowsChanged();
}

int GridModel::dataRow(int modelRow) const {
    return order_.empty() ? modelRow : static_cast<int>(order_[static_cast<std::size_t>(modelRow)]);
}

int GridModel::modelRow(int dataRow) const {
    if (order_.empty()) return dataRow;
    const auto found = std::find(order_.begin(), order_.end(), static_cast<std::uint32_t>(dataRow));
    return found == order_.end() ? -1 : static_cast<int>(found - order_.begin());
}

Value GridModel::value(int modelRow, int column) const {
    const TDataSet* rows = dataSet();
    const int at = field(column);
    return rows && at >= 0 ? rows->valueAt(dataRow(modelRow), at) : Value();
}

QString GridModel::shown(int modelRow, int column) const {
    const TDataSet* rows = dataSet();
    const int at = field(column);
    if (!rows || at < 0) return {};
    if (!isNumberColumn(column)) return screenText(QString::fromStdString(rows->textAt(dataRow(modelRow), at)));
    const Value cell = rows->valueAt(dataRow(modelRow), at);
    if (isNull(cell)) return {};
    try {
        return screenNumber(format(column).text(toDecimal(cell)));
    } catch (const DatabaseError&) {
        // A floating-point number beyond the reach of decimals is shown as it is.
        return screenNumber(toText(cell));
    }
}

namespace {

// The field's cells where each row of the grid is a stored row and all of them are shown.
const Column* storedDecimals(const TDataSet& rows, int field, int rowCount) {
    const RowSet& stored = rows.rowSet();
    if (static_cast<std::size_t>(field) >= stored.columnCount()) return nullptr;
    if (rows.State() != dsBrowse || stored.rowCount() != static_cast<std::size_t>(rowCount)) return nullptr;
    const Column& cells = stored.column(static_cast<std::size_t>(field));
    return cells.info().type == FieldType::Decimal ? &cells : nullptr;
}

}  // namespace

QStringList GridModel::numberShapes(int column) const {
    const TDataSet* rows = dataSet();
    const int at = field(column);
    if (!rows || at < 0) return {};
    NumberShapes shapes(format(column));
    if (const Column* cells = storedDecimals(*rows, at, rowCount_)) {
        // As they lie in memory: a report has a million of them.
        for (std::size_t row = 0; row < cells->size(); ++row)
            if (!cells->isNull(row)) shapes.add(cells->coefficientAt(row), cells->info().scale);
        return shapes.texts();
    }
    QStringList others;
    for (int row = 0; row < rowCount_; ++row) {
        const Value cell = rows->valueAt(row, at);
        if (isNull(cell)) continue;
        try {
            shapes.add(toDecimal(cell));
        } catch (const DatabaseError&) {
            others.push_back(screenNumber(toText(cell)));
        }
    }
    return shapes.texts() + others;
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rowCount_;
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    switch (role) {
        case Qt::DisplayRole:
            return shown(index.row(), index.column());
        case Qt::EditRole:
            return QString::fromStdString(toText(value(index.row(), index.column())));
        case Qt::TextAlignmentRole: {
            // Numbers below each other have their units in one place.
            const Qt::Alignment across =
                isNumberColumn(index.column()) ? Qt::AlignRight | Qt::AlignAbsolute : Qt::Alignment(Qt::AlignLeading);
            return QVariant::fromValue(across | Qt::AlignVCenter);
        }
        default:
            return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
    // How titles are aligned is up to the header, which knows whether they may wrap.
    return role == Qt::DisplayRole ? QVariant(screenText(column(section).Title)) : QVariant();
}

void GridModel::activeChanged() {
    renewRows();
}
void GridModel::dataChanged() {
    renewRows();
}

void GridModel::rowChanged(std::int64_t row) {
    // A record that was posted may have been added, or stand at another place of the order.
    const TDataSet* rows = dataSet();
    if (row < 0 || !rows || rows->RecordCount() != rowCount_) {
        renewRows();
        return;
    }
    const int at = modelRow(static_cast<int>(row));
    if (at >= 0 && columnCount() > 0) emit QAbstractTableModel::dataChanged(index(at, 0), index(at, columnCount() - 1));
}

void GridModel::sourceGone() {
    source_ = nullptr;
    renewRows();
}

void GridModel::cursorMoved() {
    if (onCursorMoved) onCursorMoved();
}

}  // namespace basalt::host
