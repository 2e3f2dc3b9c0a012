#include "ado/field.h"

#include "ado/data_set.h"
#include "ado/error.h"
#include "ado/field_text.h"

namespace basalt {

const ColumnInfo& TField::info() const {
    dataSet_->requireActive("Fields");
    return dataSet_->fieldInfo(index_);
}

bool TField::Calculated() const {
    return static_cast<std::size_t>(index_) >= dataSet_->rows_.columnCount();
}

bool TField::ReadOnly() const {
    const FieldDeclaration* declared = dataSet_->declaration(info().name);
    return declared != nullptr && declared->readOnly;
}

bool TField::Currency() const {
    const FieldDeclaration* declared = dataSet_->declaration(info().name);
    return declared != nullptr && declared->currency;
}

Value TField::AsValue() const {
    return dataSet_->valueIn(index_, dataSet_->current());
}

bool TField::IsNull() const {
    const TDataSet::Record record = dataSet_->current();
    if (const Column* column = dataSet_->storedCell(index_, record)) return column->isNull(record.row);
    return basalt::isNull(dataSet_->valueIn(index_, record));
}

std::int64_t TField::AsInt64() const {
    const TDataSet::Record record = dataSet_->current();
    const Column* column = dataSet_->storedCell(index_, record);
    if (column != nullptr && isIntegral(column->info().type)) return column->intAt(record.row);
    return toInt64(dataSet_->valueIn(index_, record));
}

int TField::AsInteger() const {
    const std::int64_t value = AsInt64();
    if (value != static_cast<int>(value)) {
        // A computed column may have no name.
        const std::string where = FieldName().empty() ? ", column " + std::to_string(index_ + 1) : "." + FieldName();
        throw DatabaseError(ErrorCategory::Conversion, "22003", 8115,
                            dataSet_->Name() + where + ": the value " + std::to_string(value) +
                                " is out of range for a 32-bit integer");
    }
    return static_cast<int>(value);
}

Extended TField::AsFloat() const {
    return toExtended(AsValue());
}

bool TField::AsBoolean() const {
    const TDataSet::Record record = dataSet_->current();
    const Column* column = dataSet_->storedCell(index_, record);
    if (column != nullptr && isIntegral(column->info().type)) return column->intAt(record.row) != 0;
    return toBool(dataSet_->valueIn(index_, record));
}

std::string TField::AsString() const {
    const TDataSet::Record record = dataSet_->current();
    const Column* column = dataSet_->storedCell(index_, record);
    if (column != nullptr && column->info().type == FieldType::Text) return std::string(column->textAt(record.row));
    return fieldText(dataSet_->valueIn(index_, record));
}

void TField::SetValue(const Value& value) {
    dataSet_->assign(index_, value);
}

void TField::SetExtended(Extended value) {
    const ColumnInfo& column = info();
    if (column.type == FieldType::Decimal) {
        // Straight to the column's decimals: a double on the way would lose digits that the column keeps.
        if (const auto decimal = Decimal::fromExtended(value, column.scale)) return SetValue(*decimal);
    }
    SetValue(static_cast<double>(value));
}

TField& TField::operator=(const TField& other) {
    if (this != &other) SetValue(other.AsValue());
    return *this;
}

}  // namespace basalt
