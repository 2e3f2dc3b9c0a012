// Records in a table: the fields of the first record are the columns.
#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "package/datum.h"

namespace basalt::host {

class DatumTable final : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    void setRecords(Datum::List records);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    Datum::List records_;
};

}  // namespace basalt::host
