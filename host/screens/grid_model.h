// A data source as a table model. It copies nothing: a cell is read when it is painted.
//
// Rows of the model are in the sort order, rows of the data set in its own; dataRow and modelRow convert. Both count
// from 0.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <functional>
#include <vector>

#include "ado/data_source.h"
#include "ado/query.h"
#include "host/screens/display_format.h"
#include "package/screens/controls.h"

namespace basalt::host {

class GridModel final : public QAbstractTableModel, private DataSourceListener {
public:
    explicit GridModel(QObject* parent = nullptr);
    ~GridModel() override;

    void setSource(TDataSource* source);
    [[nodiscard]] TDataSet* dataSet() const;  // nullptr when there is none, or it is closed
    // There have been rows, and the data set is closed now: those of a long list go while it is read anew, and stay
    // away when that is given up.
    [[nodiscard]] bool isUnread() const;

    int addColumn(const TGridColumn& column);
    void setColumn(int index, const TGridColumn& column);
    [[nodiscard]] const TGridColumn& column(int index) const {
        return columns_[static_cast<std::size_t>(index)].column;
    }
    // For what the view knows of a column: its width and whether it shows.
    [[nodiscard]] TGridColumn& arrangement(int index) { return columns_[static_cast<std::size_t>(index)].column; }
    void removeColumnAt(int index);
    // The column's own, or the one of amounts when it has none and its field is an amount.
    [[nodiscard]] const DisplayFormat& format(int index) const;
    // The data set's field of a column; -1 while there is none.
    [[nodiscard]] int field(int index) const;
    [[nodiscard]] bool isNumberColumn(int index) const;
    // Numbers that are shown as amounts or have decimals: neither codes nor counters.
    [[nodiscard]] bool isAmountColumn(int index) const;

    void sortBy(int column, bool descending);  // -1: the data set's own order
    [[nodiscard]] int sortColumn() const { return sortColumn_; }
    [[nodiscard]] bool sortDescending() const { return sortDescending_; }

    [[nodiscard]] int dataRow(int modelRow) const;
    [[nodiscard]] int modelRow(int dataRow) const;
    [[nodiscard]] Value value(int modelRow, int column) const;
    [[nodiscard]] QString shown(int modelRow, int column) const;
    // Of a column of numbers: texts of which one is as long as the longest of all rows, whatever its digits.
    [[nodiscard]] QStringList numberShapes(int column) const;

    std::function<void()> onRowsChanged;  // after a reset of the rows
    std::function<void()> onCursorMoved;  // the data set has another current record
    std::function<void()> onColumnsChanged;

    // QAbstractTableModel
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    // Display: as on paper, with Persian digits. Edit: plain text as the data holds it.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct GridColumnState {
        TGridColumn column;
        DisplayFormat format;
        mutable int field = -1;
        mutable bool currency = false;  // what the field says of itself
    };

    void activeChanged() override;
    void dataChanged() override;
    void rowChanged(std::int64_t row) override;
    void cursorMoved() override;
    void sourceGone() override;

    void renewRows();
    void renewOrder();
    void forgetFields() const;

    TDataSource* source_ = nullptr;
    std::vector<GridColumnState> columns_;
    mutable bool fieldsKnown_ = false;
    bool wasRead_ = false;
    int rowCount_ = 0;
    std::vector<std::uint32_t> order_;  // empty: as they are
    int sortColumn_ = -1;
    bool sortDescending_ = false;
};

}  // namespace basalt::host
