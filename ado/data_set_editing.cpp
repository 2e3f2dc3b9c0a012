// The part of TDataSet that changes records.

#include <algorithm>

#include "ado/data_set.h"
#include "ado/error.h"
#include "ado/row_filter.h"
#include "ado/row_writer.h"
#include "ado/trailing_blanks.h"

namespace basalt {

namespace {

// Whether writing the value would leave the cell as it is. Blanks that pad a fixed-length text are the server's.
bool sameCell(const Column& column, std::size_t row, const Value& value) {
    if (column.isNull(row) || isNull(value)) return column.isNull(row) && isNull(value);
    if (column.info().type == FieldType::Text) {
        std::string_view stored = column.textAt(row);
        std::string_view typed = std::get<std::string>(value);
        if (column.info().fixedLength) {
            stored = withoutTrailingBlanks(stored);
            typed = withoutTrailingBlanks(typed);
        }
        return stored == typed;
    }
    return sameValue(column.valueAt(row), value);
}

void requireLength(const std::string& component, const ColumnInfo& info, int declaredSize, const Value& value) {
    int size = info.size;
    if (declaredSize > 0) size = size > 0 ? std::min(size, declaredSize) : declaredSize;
    if (size <= 0) return;
    const auto limit = static_cast<std::size_t>(size);
    std::size_t length = 0;
    const char* unit = "characters";
    if (const auto* text = std::get_if<std::string>(&value)) {
        length = utf16Length(*text);
    } else if (const auto* bytes = std::get_if<Bytes>(&value)) {
        length = bytes->size();
        unit = "bytes";
    }
    if (length <= limit) return;
    throw ValueTooLong(info.name, length, limit,
                       component + "." + info.name + ": the value has " + std::to_string(length) + " " + unit +
                           ", at most " + std::to_string(limit) + " fit");
}

}  // namespace

void TDataSet::assign(int field, const Value& value) {
    requireActive("FieldByName");
    const ColumnInfo& info = fieldInfo(field);
    const auto index = static_cast<std::size_t>(field);
    const bool isCalculated = index >= rows_.columnCount();
    if (calculating_) {
        if (!isCalculated) fail(info.name + ": OnCalcFields may assign calculated fields only");
        calculatedValues_[index - rows_.columnCount()] = convertValue(info, value);
        return;
    }
    if (isCalculated) fail(info.name + ": the field is calculated; it is assigned in OnCalcFields only");
    const FieldDeclaration* declared = declared_.empty() ? nullptr : declaration(info.name);
    if (declared != nullptr && declared->readOnly) fail(info.name + ": the field is read only");
    if (!editing()) fail(info.name + ": call Edit or Append before assigning a field");
    Value fitted;
    try {
        fitted = convertValue(info, value);
    } catch (const DatabaseError& e) {
        throw DatabaseError(e.category(), e.sqlState(), e.nativeCode(), name_ + ": " + e.what());
    }
    requireLength(name_, info, declared != nullptr ? declared->size : 0, fitted);
    typed_[index] = std::move(fitted);
    const std::int64_t row = state_ == dsInsert ? -1 : static_cast<std::int64_t>(at_);
    listeners_.notify([row](DataSourceListener& listener) { listener.rowChanged(row); });
}

bool TDataSet::Modified() const {
    if (!editing()) return false;
    for (std::size_t i = 0; i < typed_.size(); ++i) {
        if (!typed_[i]) continue;
        if (state_ == dsInsert) return true;
        if (!sameCell(rows_.column(i), rowOf(static_cast<std::int64_t>(at_)), *typed_[i])) return true;
    }
    return false;
}

void TDataSet::leaveRecord() {
    if (!editing()) return;
    if (Modified()) {
        Post();
    } else {
        Cancel();
    }
}

void TDataSet::Edit() {
    requireActive("Edit");
    if (editing()) return;
    if (visibleCount() == 0) fail("Edit: there is no record to edit, the result is empty");
    typed_.assign(rows_.columnCount(), std::nullopt);
    setState(dsEdit);
}

void TDataSet::Append() {
    requireActive("Append");
    leaveRecord();
    typed_.assign(rows_.columnCount(), std::nullopt);
    setState(dsInsert);
    scrolled();
}

void TDataSet::Cancel() {
    if (!editing()) return;
    const bool entered = state_ == dsInsert;
    typed_.clear();
    setState(dsBrowse);
    if (entered) return scrolled();
    const auto row = static_cast<std::int64_t>(at_);
    listeners_.notify([row](DataSourceListener& listener) { listener.rowChanged(row); });
}

void TDataSet::Post() {
    requireActive("Post");
    if (!editing()) fail("Post: there is nothing to post; call Edit or Append before");
    if (BeforePost) BeforePost(*this);
    if (state_ == dsEdit) {
        postEdit();
    } else {
        postInsert();
    }
}

void TDataSet::postEdit() {
    const std::size_t row = rowOf(static_cast<std::int64_t>(at_));
    std::vector<RowWriter::Change> changes;
    for (std::size_t i = 0; i < typed_.size(); ++i) {
        if (typed_[i] && !sameCell(rows_.column(i), row, *typed_[i])) changes.push_back({i, *typed_[i]});
    }
    if (changes.empty()) return Cancel();
    RowWriter(connected(), name_, rows_, statementText()).update(row, changes);
    for (const RowWriter::Change& change : changes)
        rows_.column(change.column).set(row, change.value);
    typed_.clear();
    setState(dsBrowse);
    if (filter_ == nullptr) {
        const auto changed = static_cast<std::int64_t>(at_);
        listeners_.notify([changed](DataSourceListener& listener) { listener.rowChanged(changed); });
        return;
    }
    // The record may have left the selection.
    selectRows(row);
    listeners_.notify([](DataSourceListener& listener) { listener.dataChanged(); });
    scrolled();
}

void TDataSet::postInsert() {
    std::vector<RowWriter::Change> changes;
    for (std::size_t i = 0; i < typed_.size(); ++i) {
        if (typed_[i]) changes.push_back({i, *typed_[i]});
    }
    if (changes.empty()) fail("Post: no field of the new record has been given a value");
    const auto identity = RowWriter(connected(), name_, rows_, statementText()).insert(changes);
    if (identity) typed_[identity->column] = convertValue(rows_.column(identity->column).info(), identity->value);
    for (std::size_t i = 0; i < typed_.size(); ++i)
        rows_.column(i).appendValue(typed_[i].value_or(Null{}));
    rows_.finishRow();
    typed_.clear();
    selectRows(rows_.rowCount() - 1);
    setState(dsBrowse);
    listeners_.notify([](DataSourceListener& listener) { listener.dataChanged(); });
    scrolled();
}

void TDataSet::Delete() {
    requireActive("Delete");
    if (state_ == dsInsert) return Cancel();
    if (visibleCount() == 0) fail("Delete: there is no record to delete, the result is empty");
    const std::size_t row = rowOf(static_cast<std::int64_t>(at_));
    RowWriter(connected(), name_, rows_, statementText()).remove(row);
    typed_.clear();
    rows_.removeRow(row);
    selectRows(row);
    setState(dsBrowse);
    listeners_.notify([](DataSourceListener& listener) { listener.dataChanged(); });
    scrolled();
}

}  // namespace basalt
