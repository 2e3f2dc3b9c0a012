// A result set in memory: columnar, compact, random access. Engines fill it, data sets read it.
//
//   RowSet rows({{.name = "Code", .type = FieldType::Integer}, {.name = "Name", .type = FieldType::Text, .size = 50}});
//   rows.column(0).appendInt(1);
//   rows.column(1).appendText("عمده");
//   rows.finishRow();
//   rows.column(1).textAt(0)
//
// Columns are stored in chunks, so that a growing set never holds two copies of itself and a row costs little more than
// the bytes of its values. Rows and columns count from 0. Reading a cell with the accessor of another type, or a row that
// is not there, is undefined in release builds and asserted in debug builds; valueAt always works.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ado/value.h"

namespace basalt {

enum class FieldType : std::uint8_t {
    Boolean,   // bit
    TinyInt,   // 0 to 255
    SmallInt,
    Integer,
    BigInt,
    Float,     // float and real
    Decimal,   // decimal, numeric, money
    Text,      // char, varchar, nchar, nvarchar, text, ntext, uniqueidentifier
    Binary,
    Date,      // whole days
    DateTime,
};

// True for the types whose cells are read with intAt.
[[nodiscard]] constexpr bool isIntegral(FieldType type) { return type <= FieldType::BigInt; }

struct ColumnInfo {
    std::string name;  // may be empty (an expression without alias)
    FieldType type = FieldType::Text;
    int size = 0;       // Text: longest length in characters, Binary: in bytes; 0 = unbounded
    int precision = 0;  // Decimal
    int scale = 0;      // Decimal: every cell of the column has this scale
    bool nullable = true;
    bool identity = false;
    bool fixedLength = false;  // Text: char and nchar, padded with blanks
    std::string typeName;      // the server's name, for instance "nvarchar"
    // The stored column that this one shows, when the engine knows; empty for expressions.
    std::string baseTable;
    std::string baseColumn;
};

class Column {
public:
    explicit Column(ColumnInfo info);
    Column(Column&&) noexcept;
    Column& operator=(Column&&) noexcept;
    ~Column();

    [[nodiscard]] const ColumnInfo& info() const { return info_; }
    [[nodiscard]] std::size_t size() const { return size_; }

    // Filling. One append a row, of the column's own type.
    void appendNull();
    void appendInt(std::int64_t value);  // Boolean (0 or 1) and the integers
    void appendDouble(double value);
    void appendDecimal(Int128 coefficient);  // at the column's scale
    void appendText(std::string_view value);
    void appendBytes(const void* data, std::size_t size);
    void appendDateTime(DateTime value);  // Date and DateTime
    // Converts; throws DatabaseError (Conversion) when it cannot.
    void appendValue(const Value& value);

    // Reading.
    [[nodiscard]] bool isNull(std::size_t row) const;
    [[nodiscard]] std::int64_t intAt(std::size_t row) const;
    [[nodiscard]] double doubleAt(std::size_t row) const;
    [[nodiscard]] Int128 coefficientAt(std::size_t row) const;
    [[nodiscard]] std::string_view textAt(std::size_t row) const;  // valid until the cell is written or the set goes away
    [[nodiscard]] std::string_view bytesAt(std::size_t row) const;
    [[nodiscard]] DateTime dateTimeAt(std::size_t row) const;
    [[nodiscard]] Value valueAt(std::size_t row) const;

    // Replaces one cell. Converts like appendValue; the cell is unchanged when that throws.
    void set(std::size_t row, const Value& value);

    // Bytes held, bookkeeping included.
    [[nodiscard]] std::size_t memory() const;

private:
    friend class RowSet;
    struct Chunks;
    ColumnInfo info_;
    std::size_t size_ = 0;
    std::unique_ptr<Chunks> chunks_;
};

class RowSet {
public:
    RowSet() = default;
    explicit RowSet(std::vector<ColumnInfo> columns);

    [[nodiscard]] std::size_t rowCount() const { return rows_; }
    [[nodiscard]] std::size_t columnCount() const { return columns_.size(); }
    [[nodiscard]] Column& column(std::size_t index) { return columns_[index]; }
    [[nodiscard]] const Column& column(std::size_t index) const { return columns_[index]; }
    // Index of the column of that name, ignoring case (ASCII and Unicode); -1 when there is none.
    [[nodiscard]] int indexOf(std::string_view name) const;

    void finishRow() { ++rows_; }  // after one append on every column
    void removeRow(std::size_t row);
    [[nodiscard]] std::size_t memory() const;

private:
    std::vector<Column> columns_;
    std::size_t rows_ = 0;
};

}  // namespace basalt
