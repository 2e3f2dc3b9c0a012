// The rights of one user as a table: a row for each part, which its header names, and a box to tick for
// each permission.
#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <vector>

#include "host/services/user_rights.h"

namespace basalt::host {

class RightsModel final : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    // Shows the sheet as it is. What isFixed says of a right that is held is that nobody may take it here.
    void show(RightsSheet sheet, bool changeable, std::function<bool(const UserRight&)> isFixed);
    [[nodiscard]] const RightsSheet& sheet() const { return sheet_; }
    // What differs from the sheet.
    [[nodiscard]] std::vector<RightChange> changes() const;

    std::function<void()> OnEdited;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    // A right with what is wanted of it.
    struct Cell {
        const UserRight* right;
        bool held;
    };

    // Null where there is nothing to give.
    [[nodiscard]] const Cell* cellAt(const QModelIndex& index) const;
    [[nodiscard]] bool isTicked(const Cell& cell) const;
    [[nodiscard]] bool mayChange(const Cell& cell) const;
    [[nodiscard]] QString note(const Cell& cell) const;
    [[nodiscard]] QString toolTip(const Cell& cell) const;
    [[nodiscard]] QString spoken(const QModelIndex& index, const Cell& cell) const;
    [[nodiscard]] QString partTitle(int row) const;
    [[nodiscard]] QString permissionTitle(int column) const;

    RightsSheet sheet_;
    std::vector<Cell> cells_;           // as the sheet's rights
    std::vector<std::vector<int>> at_;  // of each row and permission the cell; -1 without one
    bool changeable_ = false;
    std::function<bool(const UserRight&)> isFixed_;
};

}  // namespace basalt::host
