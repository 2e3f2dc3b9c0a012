#include "host/desktop/datum_table.h"

#include <utility>

#include "host/screens/persian_digits.h"

namespace basalt::host {

void DatumTable::setRecords(Datum::List records) {
    beginResetModel();
    records_ = std::move(records);
    endResetModel();
}

int DatumTable::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(records_.size());
}

int DatumTable::columnCount(const QModelIndex& parent) const {
    return parent.isValid() || records_.empty() ? 0 : static_cast<int>(records_.front().asRecord().size());
}

QVariant DatumTable::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole) return {};
    const Datum::Fields& fields = records_.at(static_cast<std::size_t>(index.row())).asRecord();
    const Datum& value = fields.at(static_cast<std::size_t>(index.column())).second;
    // Null is told apart from the empty text.
    return value.isNull() ? QStringLiteral("null") : QString::fromStdString(value.asText());
}

QVariant DatumTable::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) return persianDigits(QString::number(section + 1));
    return QString::fromStdString(records_.front().asRecord().at(static_cast<std::size_t>(section)).first);
}

}  // namespace basalt::host
