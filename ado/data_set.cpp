#include "ado/data_set.h"

#include <algorithm>

#include "ado/error.h"
#include "ado/field_text.h"
#include "ado/names.h"
#include "ado/row_filter.h"
#include "ado/rows_beside.h"
#include "ado/trailing_blanks.h"

namespace basalt {

TDataSet::TDataSet(TADOConnection* connection, std::string name) : name_(std::move(name)), connection_(connection) {
    if (connection_ != nullptr) connection_->attach(*this);
}

TDataSet::~TDataSet() {
    for (TDataSource* source : std::vector(sources_))
        source->SetDataSet(nullptr);
    if (connection_ != nullptr) connection_->detach(*this);
}

void TDataSet::Connection(TADOConnection* connection) {
    if (connection == connection_) return;
    Close();
    if (connection_ != nullptr) connection_->detach(*this);
    connection_ = connection;
    if (connection_ != nullptr) connection_->attach(*this);
}

void TDataSet::fail(const std::string& problem) const {
    throw UsageError((name_.empty() ? std::string("data set") : name_) + "." + problem);
}

TADOConnection& TDataSet::connected() const {
    if (connection_ == nullptr) fail("Connection: there is none; set it first");
    return *connection_;
}

void TDataSet::requireActive(const char* action) const {
    if (!active_) fail(std::string(action) + ": the data set is closed; call Open first");
}

RowSet TDataSet::firstRows(BatchResult& batch) const {
    for (StatementResult& result : batch.results) {
        if (result.rows && result.rows->columnCount() > 0) return std::move(*result.rows);
    }
    fail("Open: the statement gives no rows; run it with ExecSQL or ExecProc");
}

void TDataSet::announceTouched() {
    if (connection_ != nullptr) connection_->announceTouched(*this);
}

void TDataSet::announceLeaving() {
    if (connection_ != nullptr) connection_->announceLeaving(*this);
}

void TDataSet::statementChanged() {
    Close();
    announceTouched();
}

// Opening and closing.

void TDataSet::show(RowSet rows) {
    checkDeclarations(rows);
    std::unique_ptr<RowFilter> filter;
    if (filtered_) filter = compiledFilter(filterText_, rows);
    rows_ = std::move(rows);
    filter_ = std::move(filter);
    active_ = true;
    state_ = dsBrowse;
    typed_.clear();
    // First: what a filter's calculated fields throw must not leave the cursor behind the new rows.
    at_ = 0;
    selectRows(0);
    bof_ = true;
    eof_ = visibleCount() == 0;
}

void TDataSet::Open() {
    if (active_) return;
    show(fetch());
    announceTouched();
    listeners_.notify([](DataSourceListener& listener) { listener.activeChanged(); });
    scrolled();
}

void TDataSet::Close() {
    if (!active_) return;
    rows_ = RowSet();
    active_ = false;
    state_ = dsInactive;
    visible_.reset();
    filter_.reset();
    typed_.clear();
    at_ = 0;
    announceTouched();
    listeners_.notify([](DataSourceListener& listener) { listener.activeChanged(); });
}

namespace {

// Other rows are there.
void tellOfRows(DataSourceListener& listener, bool wasActive) {
    if (wasActive) {
        listener.dataChanged();
    } else {
        listener.activeChanged();
    }
}

}  // namespace

void TDataSet::Requery() {
    if (!active_) return Open();
    leaveRecord();
    RowSet rows = [this] {
        const RowsBeside beside(*this);
        return fetch();
    }();
    const bool wasActive = active_;
    show(std::move(rows));
    announceTouched();
    listeners_.notify([wasActive](DataSourceListener& listener) { tellOfRows(listener, wasActive); });
    scrolled();
}

void TDataSet::finishRecord() {
    if (active_) leaveRecord();
}

void TDataSet::showInstead(RowSet rows, const std::function<void()>& shown) {
    checkDeclarations(rows);
    const bool wasActive = active_;
    filtered_ = false;
    show(std::move(rows));
    shown();
    announceTouched();
    listeners_.notify([wasActive](DataSourceListener& listener) { tellOfRows(listener, wasActive); });
    scrolled();
}

void TDataSet::setState(TDataSetState state) {
    if (state == state_) return;
    state_ = state;
    listeners_.notify([](DataSourceListener& listener) { listener.stateChanged(); });
}

// The cursor.

void TDataSet::scrolled() {
    listeners_.notify([](DataSourceListener& listener) { listener.cursorMoved(); });
    if (AfterScroll) AfterScroll(*this);
}

int TDataSet::RecNo() const {
    return static_cast<int>(current().number);
}

void TDataSet::RecNo(int number) {
    requireActive("RecNo");
    leaveRecord();
    if (number < 1 || number > RecordCount()) {
        fail("RecNo: there is no record " + std::to_string(number) + "; there are " + std::to_string(RecordCount()));
    }
    moveTo(static_cast<std::size_t>(number - 1));
}

void TDataSet::moveTo(std::size_t row) {
    at_ = row;
    bof_ = false;
    eof_ = false;
    scrolled();
}

void TDataSet::First() {
    requireActive("First");
    leaveRecord();
    at_ = 0;
    bof_ = true;
    eof_ = visibleCount() == 0;
    scrolled();
}

void TDataSet::Last() {
    requireActive("Last");
    leaveRecord();
    const std::size_t count = visibleCount();
    at_ = count == 0 ? 0 : count - 1;
    bof_ = count == 0;
    eof_ = true;
    scrolled();
}

int TDataSet::MoveBy(int distance) {
    requireActive("MoveBy");
    leaveRecord();
    const auto count = static_cast<std::int64_t>(visibleCount());
    if (count == 0 || distance == 0) return 0;
    const auto from = static_cast<std::int64_t>(at_);
    const std::int64_t wanted = from + distance;
    const std::int64_t reached = std::clamp<std::int64_t>(wanted, 0, count - 1);
    at_ = static_cast<std::size_t>(reached);
    bof_ = wanted < 0;
    eof_ = wanted >= count;
    scrolled();
    return static_cast<int>(reached - from);
}

// Filter.

std::unique_ptr<RowFilter> TDataSet::compiledFilter(const std::string& text, const RowSet& rows) const {
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) return nullptr;
    const auto resolve = [&](std::string_view name) -> std::optional<RowFilter::FilterField> {
        const int column = rows.indexOf(name);
        if (column >= 0)
            return RowFilter::FilterField{column, rows.column(static_cast<std::size_t>(column)).info().type};
        for (std::size_t i = 0; i < calculated_.size(); ++i) {
            if (sameName(calculated_[i].name, name)) {
                return RowFilter::FilterField{static_cast<int>(rows.columnCount() + i), calculated_[i].type};
            }
        }
        return std::nullopt;
    };
    try {
        return std::make_unique<RowFilter>(text, resolve);
    } catch (const UsageError& e) {
        fail(std::string("Filter: ") + e.what());
    }
}

void TDataSet::Filter(std::string text) {
    if (!active_) {
        filterText_ = std::move(text);
        return;
    }
    leaveRecord();
    std::unique_ptr<RowFilter> filter = compiledFilter(text, rows_);
    filterText_ = std::move(text);
    if (!filtered_) return;
    filter_ = std::move(filter);
    const std::size_t stay = visibleCount() == 0 ? 0 : rowOf(static_cast<std::int64_t>(at_));
    selectRows(stay);
    listeners_.notify([](DataSourceListener& listener) { listener.dataChanged(); });
    scrolled();
}

void TDataSet::Filtered(bool on) {
    if (on == filtered_) return;
    if (!active_) {
        filtered_ = on;
        return;
    }
    leaveRecord();
    std::unique_ptr<RowFilter> filter;
    if (on) filter = compiledFilter(filterText_, rows_);
    filtered_ = on;
    const std::size_t stay = visibleCount() == 0 ? 0 : rowOf(static_cast<std::int64_t>(at_));
    filter_ = std::move(filter);
    selectRows(stay);
    listeners_.notify([](DataSourceListener& listener) { listener.dataChanged(); });
    scrolled();
}

// Chooses the visible rows anew and keeps the cursor on the stored row `stay`, or on the next visible one.
void TDataSet::selectRows(std::size_t stay) {
    visible_.reset();
    if (filter_ != nullptr) {
        std::vector<std::size_t> accepted;
        Record record{.kind = Record::Stored};
        const RowFilter::Read read = [&](int field) { return valueIn(field, record); };
        for (std::size_t row = 0; row < rows_.rowCount(); ++row) {
            record.row = row;
            record.number = static_cast<std::int64_t>(accepted.size()) + 1;
            if (filter_->accepts(read)) accepted.push_back(row);
        }
        visible_ = std::move(accepted);
        stay = static_cast<std::size_t>(std::lower_bound(visible_->begin(), visible_->end(), stay) - visible_->begin());
    }
    const std::size_t count = visibleCount();
    at_ = count == 0 ? 0 : std::min(stay, count - 1);
    bof_ = count == 0;
    eof_ = count == 0;
}

// Locate.

namespace {

std::string comparableText(std::string_view text, bool fixedLength, LocateOptions options) {
    if (fixedLength) text = withoutTrailingBlanks(text);
    return options.caseInsensitive ? foldName(text) : std::string(text);
}

// `wanted` as comparableText gives it.
bool sameText(std::string_view text, std::string_view wanted, bool fixedLength, LocateOptions options) {
    if (fixedLength) text = withoutTrailingBlanks(text);
    std::string folded;
    if (options.caseInsensitive) text = folded = foldName(text);
    return options.partialKey ? text.starts_with(wanted) : text == wanted;
}

}  // namespace

bool TDataSet::Locate(std::string_view keyField, const Value& value, LocateOptions options) {
    return Locate(keyField, std::vector<Value>{value}, options);
}

bool TDataSet::Locate(std::string_view keyFields, const std::vector<Value>& values, LocateOptions options) {
    requireActive("Locate");
    std::vector<int> fields;
    for (std::size_t begin = 0; begin <= keyFields.size();) {
        const std::size_t end = std::min(keyFields.find(';', begin), keyFields.size());
        fields.push_back(FieldByName(keyFields.substr(begin, end - begin)).Index());
        begin = end + 1;
    }
    if (fields.size() != values.size()) {
        fail("Locate: " + std::to_string(fields.size()) + " fields and " + std::to_string(values.size()) + " values");
    }
    leaveRecord();
    std::vector<Value> wanted = values;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const FieldType type = fieldInfo(fields[i]).type;
        const bool isText = std::holds_alternative<std::string>(wanted[i]);
        if (isNull(wanted[i]) || isText == (type == FieldType::Text)) continue;
        try {
            wanted[i] = type == FieldType::Text ? Value(toText(wanted[i]))
                        : isIntegral(type) || type == FieldType::Decimal
                            ? Value(toDecimal(wanted[i]))
                            : convertValue(fieldInfo(fields[i]), wanted[i]);
        } catch (const DatabaseError&) {
            // A text that is no number is no record's number either.
            return false;
        }
    }
    for (std::size_t i = 0; i < fields.size(); ++i) {
        auto* text = std::get_if<std::string>(&wanted[i]);
        if (text != nullptr) *text = comparableText(*text, fieldInfo(fields[i]).fixedLength, options);
    }
    const std::size_t count = visibleCount();
    for (std::size_t row = 0; row < count; ++row) {
        if (!matches(row, fields, wanted, options)) continue;
        moveTo(row);
        return true;
    }
    return false;
}

bool TDataSet::matches(std::size_t row, const std::vector<int>& fields, const std::vector<Value>& values,
                       LocateOptions options) const {
    const Record record = recordAt(static_cast<std::int64_t>(row));
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Column* column = storedCell(fields[i], record);
        const auto* number = std::get_if<std::int64_t>(&values[i]);
        const auto* text = std::get_if<std::string>(&values[i]);
        if (number != nullptr && column != nullptr && isIntegral(column->info().type)) {
            if (column->isNull(record.row) || column->intAt(record.row) != *number) return false;
        } else if (text != nullptr && column != nullptr && column->info().type == FieldType::Text) {
            if (column->isNull(record.row)) return false;
            if (!sameText(column->textAt(record.row), *text, column->info().fixedLength, options)) return false;
        } else {
            const Value value = valueIn(fields[i], record);
            const auto* other = std::get_if<std::string>(&value);
            const bool same = text != nullptr && other != nullptr ? sameText(*other, *text, false, options)
                                                                  : sameValue(value, values[i]);
            if (!same) return false;
        }
    }
    return true;
}

// Fields and values.

int TDataSet::FieldCount() const {
    return active_ ? static_cast<int>(rows_.columnCount() + calculated_.size()) : 0;
}

TField& TDataSet::Fields(int index) {
    requireActive("Fields");
    const int count = FieldCount();
    if (index < 0 || index >= count) {
        fail("Fields: there is no field " + std::to_string(index) + "; there are " + std::to_string(count));
    }
    if (fields_.size() != static_cast<std::size_t>(count)) {
        fields_.clear();
        fields_.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            fields_.emplace_back(*this, i);
    }
    return fields_[static_cast<std::size_t>(index)].field;
}

TField* TDataSet::FindField(std::string_view name) {
    if (!active_) return nullptr;
    const int column = rows_.indexOf(name);
    if (column >= 0) return &Fields(column);
    for (std::size_t i = 0; i < calculated_.size(); ++i) {
        if (sameName(calculated_[i].name, name)) return &Fields(static_cast<int>(rows_.columnCount() + i));
    }
    return nullptr;
}

TField& TDataSet::FieldByName(std::string_view name) {
    requireActive("FieldByName");
    if (TField* found = FindField(name)) return *found;
    std::string message = "FieldByName: there is no field " + std::string(name) + "; the fields are ";
    for (int i = 0; i < FieldCount(); ++i)
        message += (i == 0 ? "" : ", ") + fieldInfo(i).name;
    fail(message);
}

const ColumnInfo& TDataSet::fieldInfo(int field) const {
    const auto index = static_cast<std::size_t>(field);
    const std::size_t columns = rows_.columnCount();
    return index < columns ? rows_.column(index).info() : calculated_[index - columns];
}

void TDataSet::AddCalculatedField(std::string name, FieldType type, int size) {
    if (active_) fail("AddCalculatedField: the data set is open; call Close first");
    ColumnInfo info;
    info.name = std::move(name);
    info.type = type;
    info.size = size;
    calculated_.push_back(std::move(info));
}

void TDataSet::DeclareField(FieldDeclaration field) {
    if (active_) fail("DeclareField: the data set is open; call Close first");
    if (declaration(field.name) != nullptr) fail("DeclareField: " + field.name + " is declared already");
    declared_.push_back(std::move(field));
}

const FieldDeclaration* TDataSet::declaration(std::string_view name) const {
    for (const FieldDeclaration& field : declared_)
        if (sameName(field.name, name)) return &field;
    return nullptr;
}

void TDataSet::checkDeclarations(const RowSet& rows) const {
    for (const FieldDeclaration& field : declared_) {
        const int column = rows.indexOf(field.name);
        if (column < 0) continue;
        const ColumnInfo& info = rows.column(static_cast<std::size_t>(column)).info();
        const auto whole = [](FieldType type) { return isIntegral(type) && type != FieldType::Boolean; };
        const bool sameKind = info.type == field.type || (whole(info.type) && whole(field.type));
        if (!sameKind || (field.type == FieldType::Decimal && info.scale > field.scale))
            fail("Open: the statement gives the field " + field.name + " as " +
                 (info.typeName.empty() ? std::string("another type") : info.typeName) +
                 ", which is not what it was declared as");
    }
}

std::size_t TDataSet::rowOf(std::int64_t row) const {
    const auto index = static_cast<std::size_t>(row);
    return visible_ ? (*visible_)[index] : index;
}

TDataSet::Record TDataSet::current() const {
    if (calculating_) return calculatedRecord_;
    if (state_ == dsInsert) return {Record::Entered, 0, true, 0};
    if (visibleCount() == 0) return {};
    return recordAt(static_cast<std::int64_t>(at_));
}

TDataSet::Record TDataSet::recordAt(std::int64_t row) const {
    return {Record::Stored, rowOf(row), state_ == dsEdit && static_cast<std::size_t>(row) == at_, row + 1};
}

const Column* TDataSet::storedCell(int field, const Record& record) const {
    const auto index = static_cast<std::size_t>(field);
    if (record.kind != Record::Stored || index >= rows_.columnCount()) return nullptr;
    if (record.edited && typed_[index]) return nullptr;
    return &rows_.column(index);
}

Value TDataSet::valueIn(int field, const Record& record) const {
    if (record.kind == Record::None) return Null{};
    const auto index = static_cast<std::size_t>(field);
    if (index >= rows_.columnCount()) return calculatedValue(index - rows_.columnCount(), record);
    if (record.edited && typed_[index]) return *typed_[index];
    return record.kind == Record::Stored ? rows_.column(index).valueAt(record.row) : Value();
}

Value TDataSet::calculatedValue(std::size_t field, const Record& record) const {
    if (calculating_) return calculatedValues_[field];
    if (!OnCalcFields) return Null{};
    struct Calculation {
        explicit Calculation(bool& flag) : calculating(flag) { calculating = true; }
        ~Calculation() { calculating = false; }
        Calculation(const Calculation&) = delete;
        Calculation& operator=(const Calculation&) = delete;
        bool& calculating;
    };
    calculatedRecord_ = record;
    calculatedValues_.assign(calculated_.size(), Null{});
    {
        const Calculation calculation(calculating_);
        // The handler sees a data set on the record in question; it cannot move it or write to its other fields.
        OnCalcFields(const_cast<TDataSet&>(*this));
    }
    return calculatedValues_[field];
}

Value TDataSet::valueAt(std::int64_t row, int field) const {
    return valueIn(field, recordAt(row));
}

std::string TDataSet::textAt(std::int64_t row, int field) const {
    const Record record = recordAt(row);
    const Column* column = storedCell(field, record);
    if (column != nullptr && column->info().type == FieldType::Text) return std::string(column->textAt(record.row));
    return fieldText(valueIn(field, record));
}

}  // namespace basalt
