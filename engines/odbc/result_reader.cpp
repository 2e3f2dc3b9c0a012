#include "engines/odbc/result_reader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

#include "engines/odbc/column_types.h"
#include "engines/odbc/diagnostics.h"
#include "engines/odbc/timestamps.h"
#include "engines/odbc/utf16.h"

namespace basalt::odbc {

namespace {

// As many rows a fetch as fit these bytes, within reason.
constexpr std::size_t kBlockBytes = 256 * 1024;
constexpr std::size_t kMostRows = 512;
constexpr std::size_t kPieceBytes = 64 * 1024;
// Sign, 38 digits, point and what a driver may put around them.
constexpr std::size_t kDecimalText = 48;

template <typename T>
T cellAs(const std::byte* cell) {
    T value;
    std::memcpy(&value, cell, sizeof(T));
    return value;
}

}  // namespace

ResultReader::ResultReader(const ResultHandle& results, const DriverTraits& traits, std::string_view sql)
    : results_(results), traits_(traits), sql_(sql) {}

ResultReader::~ResultReader() {
    // The buffers go away before the statement does, which walks on to its next result.
    results_.calls.freeStatement(results_.statement, SQL_UNBIND);
    results_.calls.setAttribute(results_.statement, SQL_ATTR_ROWS_FETCHED_PTR, nullptr, 0);
    results_.calls.setAttribute(results_.statement, SQL_ATTR_ROW_STATUS_PTR, nullptr, 0);
    results_.calls.setAttribute(results_.statement, SQL_ATTR_ROW_ARRAY_SIZE, attribute(1), 0);
}

RowSet ResultReader::read(std::vector<std::string>& messages) {
    describe();
    RowSet rows(columns_);
    if (isKnownToBeEmpty()) return rows;
    bind();
    while (fetch(messages)) {
        for (std::size_t i = 0; i < buffers_.size(); ++i) {
            Column& column = rows.column(i);
            Buffer& buffer = buffers_[i];
            if (!buffer.bound) {
                readUnbound(column, buffer, static_cast<SQLUSMALLINT>(i + 1));
                continue;
            }
            for (std::size_t row = 0; row < rowsFetched_; ++row)
                append(column, buffer, row);
        }
        for (std::size_t row = 0; row < rowsFetched_; ++row)
            rows.finishRow();
    }
    return rows;
}

void ResultReader::describe() {
    SQLSMALLINT count = 0;
    require(results_.calls.columnCount(results_.statement, &count));
    for (SQLSMALLINT i = 1; i <= count; ++i) {
        columns_.push_back(describeColumn(static_cast<SQLUSMALLINT>(i)));
        buffers_.push_back(bufferFor(columns_.back()));
    }
}

bool ResultReader::isKnownToBeEmpty() const {
    if (!traits_.fetchPassesEmptyResults) return false;
    SQLLEN count = -1;
    return SQL_SUCCEEDED(results_.calls.rowCount(results_.statement, &count)) && count == 0;
}

ColumnInfo ResultReader::describeColumn(SQLUSMALLINT number) const {
    std::array<char16_t, 300> name{};
    SQLSMALLINT length = 0;
    SQLSMALLINT type = 0;
    SQLULEN size = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = SQL_NULLABLE_UNKNOWN;
    require(results_.calls.describeColumn(results_.statement, number, wide(name.data()),
                                          static_cast<SQLSMALLINT>(name.size()), &length, &type, &size, &digits,
                                          &nullable));
    ColumnInfo column;
    column.name = toUtf8(name.data());
    column.nullable = nullable != SQL_NO_NULLS;
    column.typeName = textAttribute(number, SQL_DESC_TYPE_NAME);
    describeFromOdbc(column, type, size, digits);
    SQLLEN identity = SQL_FALSE;
    if (SQL_SUCCEEDED(results_.calls.columnAttribute(results_.statement, number, SQL_DESC_AUTO_UNIQUE_VALUE, nullptr, 0,
                                                     nullptr, &identity))) {
        column.identity = identity == SQL_TRUE;
    }
    column.baseTable = textAttribute(number, SQL_DESC_BASE_TABLE_NAME);
    // The one is of no use without the other.
    if (!column.baseTable.empty()) column.baseColumn = textAttribute(number, SQL_DESC_BASE_COLUMN_NAME);
    if (column.baseColumn.empty()) column.baseTable.clear();
    return column;
}

// Empty when the driver does not tell.
std::string ResultReader::textAttribute(SQLUSMALLINT number, SQLUSMALLINT attribute) const {
    std::array<char16_t, 300> text{};
    SQLSMALLINT bytes = 0;
    const SQLRETURN rc = results_.calls.columnAttribute(results_.statement, number, attribute, text.data(),
                                                        static_cast<SQLSMALLINT>(sizeof(text)), &bytes, nullptr);
    if (!SQL_SUCCEEDED(rc)) return {};
    text.back() = u'\0';
    return toUtf8(text.data());
}

ResultReader::Buffer ResultReader::bufferFor(const ColumnInfo& column) {
    Buffer buffer;
    const auto fixed = [&](Form form, SQLSMALLINT cType, std::size_t size) {
        buffer.form = form;
        buffer.cType = cType;
        buffer.cell = buffer.capacity = size;
    };
    switch (column.type) {
        case FieldType::Boolean:
            fixed(Form::Bit, SQL_C_BIT, 1);
            break;
        case FieldType::TinyInt:
        case FieldType::SmallInt:
        case FieldType::Integer:
            fixed(Form::Int, SQL_C_SLONG, sizeof(SQLINTEGER));
            break;
        case FieldType::BigInt:
            fixed(Form::BigInt, SQL_C_SBIGINT, sizeof(SQLBIGINT));
            break;
        case FieldType::Float:
            fixed(Form::Double, SQL_C_DOUBLE, sizeof(double));
            break;
        case FieldType::Date:
        case FieldType::DateTime:
            fixed(Form::Timestamp, SQL_C_TYPE_TIMESTAMP, sizeof(SQL_TIMESTAMP_STRUCT));
            buffer.roundsToMilliseconds = countsInMilliseconds(column);
            break;
        case FieldType::Decimal:
            fixed(Form::DecimalText, SQL_C_CHAR, kDecimalText);
            buffer.capacity = kDecimalText - 1;
            break;
        case FieldType::Binary:
            fixed(Form::Bytes, SQL_C_BINARY, static_cast<std::size_t>(column.size));
            break;
        case FieldType::Text:
            fixed(Form::Wide, SQL_C_WCHAR, 0);
            if (column.size == 0) break;
            buffer.capacity = static_cast<std::size_t>(column.size) * sizeof(char16_t);
            buffer.cell = buffer.capacity + sizeof(char16_t);
            break;
    }
    return buffer;
}

void ResultReader::bind() {
    bool longSeen = false;
    std::size_t rowBytes = 0;
    for (Buffer& buffer : buffers_) {
        const bool isLong = buffer.capacity == 0;
        buffer.bound = !isLong && (!longSeen || traits_.readsAnyColumn);
        longSeen = longSeen || isLong;
        rowBytes += buffer.cell + sizeof(SQLLEN);
    }
    // SQLGetData reads from the only row of a fetch.
    const std::size_t rows =
        longSeen ? 1 : std::clamp<std::size_t>(kBlockBytes / std::max<std::size_t>(rowBytes, 1), 1, kMostRows);
    rowStatus_.assign(rows, SQL_ROW_SUCCESS);
    require(results_.calls.setAttribute(results_.statement, SQL_ATTR_ROW_BIND_TYPE, attribute(SQL_BIND_BY_COLUMN), 0));
    require(results_.calls.setAttribute(results_.statement, SQL_ATTR_ROW_ARRAY_SIZE, attribute(rows), 0));
    require(results_.calls.setAttribute(results_.statement, SQL_ATTR_ROWS_FETCHED_PTR, &rowsFetched_, 0));
    require(results_.calls.setAttribute(results_.statement, SQL_ATTR_ROW_STATUS_PTR, rowStatus_.data(), 0));
    for (std::size_t i = 0; i < buffers_.size(); ++i) {
        Buffer& buffer = buffers_[i];
        buffer.cells = std::make_unique_for_overwrite<std::byte[]>(rows * buffer.cell);
        buffer.lengths = std::make_unique_for_overwrite<SQLLEN[]>(rows);
        if (!buffer.bound) continue;
        require(results_.calls.bindColumn(results_.statement, static_cast<SQLUSMALLINT>(i + 1), buffer.cType,
                                          buffer.cells.get(), static_cast<SQLLEN>(buffer.cell), buffer.lengths.get()));
    }
}

bool ResultReader::fetch(std::vector<std::string>& messages) {
    // A block that is not full is the last one.
    if (atEnd_) return false;
    rowsFetched_ = 0;
    const SQLRETURN rc = results_.calls.fetch(results_.statement);
    if (!SQL_SUCCEEDED(rc) && rc != SQL_NO_DATA) fail();
    atEnd_ = rc == SQL_NO_DATA || rowsFetched_ < rowStatus_.size();
    if (rc == SQL_SUCCESS) return true;
    // Also at the end: what the server says after the rows may come here.
    const auto failed = std::find(rowStatus_.begin(), rowStatus_.begin() + static_cast<std::ptrdiff_t>(rowsFetched_),
                                  static_cast<SQLUSMALLINT>(SQL_ROW_ERROR));
    if (failed != rowStatus_.begin() + static_cast<std::ptrdiff_t>(rowsFetched_)) fail();
    for (const Diagnostic& record : diagnosticsOf(results_)) {
        if (!record.informs()) throw errorOf({record}, sql_);
        if (record.isMessage()) messages.push_back(record.message);
    }
    return rc != SQL_NO_DATA;
}

void ResultReader::readUnbound(Column& column, Buffer& buffer, SQLUSMALLINT number) {
    if (buffer.capacity == 0) return readLong(column, buffer, number);
    require(results_.calls.getData(results_.statement, number, buffer.cType, buffer.cells.get(),
                                   static_cast<SQLLEN>(buffer.cell), buffer.lengths.get()));
    append(column, buffer, 0);
}

void ResultReader::readLong(Column& column, const Buffer& buffer, SQLUSMALLINT number) {
    const std::size_t terminator = buffer.form == Form::Wide ? sizeof(char16_t) : 0;
    std::size_t used = 0;
    while (true) {
        long_.resize(used + kPieceBytes + terminator);
        SQLLEN length = 0;
        const SQLRETURN rc = results_.calls.getData(results_.statement, number, buffer.cType, long_.data() + used,
                                                    static_cast<SQLLEN>(kPieceBytes + terminator), &length);
        if (rc == SQL_NO_DATA) break;
        require(rc);
        if (length == SQL_NULL_DATA) return column.appendNull();
        // The length is what was left before this piece, or unknown.
        if (length == SQL_NO_TOTAL || static_cast<std::size_t>(length) > kPieceBytes) {
            used += kPieceBytes;
        } else {
            used += static_cast<std::size_t>(length);
            // What was left has come. Of a sql_variant FreeTDS would say again and again that it was cut.
            if (rc == SQL_SUCCESS || static_cast<std::size_t>(length) < kPieceBytes) break;
        }
    }
    if (buffer.form == Form::Bytes) return column.appendBytes(long_.data(), used);
    toUtf8({reinterpret_cast<const char16_t*>(long_.data()), used / sizeof(char16_t)}, text_);
    column.appendText(text_);
}

void ResultReader::append(Column& column, const Buffer& buffer, std::size_t row) {
    const SQLLEN length = buffer.lengths[row];
    if (length == SQL_NULL_DATA) return column.appendNull();
    const std::byte* cell = buffer.cells.get() + row * buffer.cell;
    const auto bytes = static_cast<std::size_t>(length);
    switch (buffer.form) {
        case Form::Bit:
            return column.appendInt(cellAs<unsigned char>(cell) != 0 ? 1 : 0);
        case Form::Int:
            return column.appendInt(cellAs<SQLINTEGER>(cell));
        case Form::BigInt:
            return column.appendInt(cellAs<SQLBIGINT>(cell));
        case Form::Double:
            return column.appendDouble(cellAs<double>(cell));
        case Form::Timestamp:
            return column.appendDateTime(
                fromTimestamp(cellAs<SQL_TIMESTAMP_STRUCT>(cell), buffer.roundsToMilliseconds));
        default:
            break;
    }
    // Also when the length is unknown, which is negative.
    if (length < 0 || bytes > buffer.capacity) failCut(column.info());
    if (buffer.form == Form::Bytes) return column.appendBytes(cell, bytes);
    if (buffer.form == Form::DecimalText) return appendDecimal(column, {reinterpret_cast<const char*>(cell), bytes});
    toUtf8({reinterpret_cast<const char16_t*>(cell), bytes / sizeof(char16_t)}, text_);
    column.appendText(text_);
}

void ResultReader::appendDecimal(Column& column, std::string_view text) const {
    if (const std::optional<Decimal> number = Decimal::parse(text)) {
        try {
            const Decimal fitted = number->rescaled(column.info().scale);
            if (fitted == *number) return column.appendDecimal(fitted.coefficient());
        } catch (const std::overflow_error&) {
            // Told below: it does not fit the column.
        }
    }
    throw DatabaseError(ErrorCategory::Conversion, "22003", 0,
                        "column " + column.info().name + ": the driver delivers '" + std::string(text) +
                            "', which is no decimal with " + std::to_string(column.info().scale) +
                            " digits after the point",
                        std::string(sql_));
}

void ResultReader::failCut(const ColumnInfo& column) const {
    throw DatabaseError(ErrorCategory::Truncation, "22001", 0,
                        "column " + column.name + ": the driver describes at most " + std::to_string(column.size) +
                            " characters and delivers a longer value",
                        std::string(sql_));
}

void ResultReader::fail() const {
    throw errorOf(diagnosticsOf(results_), sql_);
}

void ResultReader::require(SQLRETURN rc) const {
    if (!SQL_SUCCEEDED(rc)) fail();
}

}  // namespace basalt::odbc
