// Persons or goods with a check box each. What has been checked stays so while the list shows other rows.
#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <vector>

#include "ado/rowset.h"

namespace basalt::host {

class EntityListModel final : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    void show(RowSet rows);  // Code and Name
    // In the order in which they were checked.
    [[nodiscard]] const std::vector<std::int64_t>& picked() const { return picked_; }
    void toggle(int row);

    std::function<void()> onPicked;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] std::int64_t code(int row) const;
    [[nodiscard]] bool isPicked(std::int64_t code) const;

    RowSet rows_;
    std::vector<std::int64_t> picked_;
};

}  // namespace basalt::host
