// A result set in memory: columnar, compact, random access. Engines fill it, data sets read it.
//
//   RowSet rows({{.name = "Code", .type = FieldType::Integer}, {.name = "Name", .type = FieldType::Text, .size = 50}});
//   rows.column(0).appendInt(1);
//   rows.column(1).appendText("عمده");
//   rows.finishRow();
//   rows.column(1).textAt(0)
//
// Columns are stored in chunks, so that a growing set never holds two copies of itself and a row costs little more than
// the bytes of its values. Rows and columns count from 0. Reading a cell with the accessor of another type, or a row
// that is not there, is undefined in release builds and asserted in debug builds; valueAt always works.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ado/value.h"

namespace basalt {

enum class FieldType : std::uint8_t {
    Boolean,  // bit
    TinyInt,  // 0 to 255
    SmallInt,
    Integer,
    BigInt,
    Float,    // float and real
    Decimal,  // decimal, numeric, money
    Text,     // char, varchar, nchar, nvarchar, text, ntext, uniqueidentifier
    Binary,
    Date,  // whole days
    DateTime,
};

// True for the types whose cells are read with intAt.
[[nodiscard]] constexpr bool isIntegral(FieldType type) {
    return type <= FieldType::BigInt;
}

struct ColumnInfo {
    std::string name{};  // may be empty (an expression without alias)
    FieldType type = FieldType::Text;
    int size = 0;       // Text: longest length in characters, Binary: in bytes; 0 = unbounded
    int precision = 0;  // Decimal
    int scale = 0;      // Decimal: every cell of the column has this scale
    bool nullable = true;
    bool identity = false;
    bool fixedLength = false;  // Text: char and nchar, padded with blanks
    std::string typeName{};    // the server's name, for instance "nvarchar"
    // The stored column that this one shows, when the engine knows; empty for expressions.
    std::string baseTable{};
    std::string baseColumn{};
};

// The value as a cell of that column holds it: of the column's kind, at its scale. Null stays null. DatabaseError
// (Conversion) that names the column and what it can hold; lengths of texts are not looked at.
[[nodiscard]] Value convertValue(const ColumnInfo& column, const Value& value);

namespace detail {

// Memory without initial contents that grows in place where the allocator can. It may begin with memory lent by another
// block, which it gives up when it grows.
class Block {
public:
    Block() = default;
    Block(Block&& other) noexcept { *this = std::move(other); }
    Block& operator=(Block&& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
        std::swap(lent_, other.lent_);
        return *this;
    }
    ~Block() {
        if (!lent_) std::free(data_);
    }

    [[nodiscard]] std::byte* data() const { return data_; }
    [[nodiscard]] std::size_t size() const { return size_; }
    // Bytes that it holds itself.
    [[nodiscard]] std::size_t memory() const { return lent_ ? 0 : size_; }
    // Keeps the first min(old, new) bytes; throws std::bad_alloc and stays as it is when there is no memory.
    void resize(std::size_t size);
    // Only while empty. The memory must outlive the block or its next resize.
    void borrow(std::byte* data, std::size_t size) {
        data_ = data;
        size_ = size;
        lent_ = true;
    }

private:
    std::byte* data_ = nullptr;
    std::size_t size_ = 0;
    bool lent_ = false;
};

// Up to kRows cells of one column. Cells of one width stand side by side; of texts and bytes the cell is the end of the
// value in the arena, so a text costs its bytes and four more.
struct Chunk {
    static constexpr std::size_t kRows = 4096;

    Block cells;
    Block arena;
    Block nulls;  // one bit a row, there only when a cell is null
    std::uint32_t count = 0;
    std::uint32_t capacity = 0;
    std::uint8_t width = 0;

    template <typename T>
    [[nodiscard]] T get(std::size_t row) const {
        T value;
        std::memcpy(&value, cells.data() + row * sizeof(T), sizeof(T));
        return value;
    }
    template <typename T>
    void put(std::size_t row, T value) {
        std::memcpy(cells.data() + row * sizeof(T), &value, sizeof(T));
    }
    [[nodiscard]] bool isNull(std::size_t row) const {
        if (nulls.size() == 0) return false;
        return (std::to_integer<unsigned>(nulls.data()[row / 8]) >> (row % 8) & 1U) != 0;
    }
    [[nodiscard]] std::uint32_t end(std::size_t row) const { return get<std::uint32_t>(row); }
    [[nodiscard]] std::uint32_t begin(std::size_t row) const { return row == 0 ? 0 : end(row - 1); }
};

}  // namespace detail

// One column of a row set, which owns it.
class Column {
public:
    [[nodiscard]] const ColumnInfo& info() const { return *info_; }
    [[nodiscard]] std::size_t size() const { return full_.size() * detail::Chunk::kRows + tail_.count; }

    // Filling. One append a row, of the column's own type. DatabaseError (Conversion) for a number that the type cannot
    // hold, and (Limit) for texts beyond 4 GB in 4096 rows; the column is unchanged then.
    void appendNull();
    void appendInt(std::int64_t value);  // Boolean (0 or 1) and the integers
    void appendDouble(double value);
    void appendDecimal(Int128 coefficient);  // at the column's scale
    void appendText(std::string_view value);
    void appendBytes(const void* data, std::size_t size);
    void appendDateTime(DateTime value);  // Date and DateTime; the time of day of a Date is dropped
    // Converts; throws DatabaseError (Conversion) when it cannot.
    void appendValue(const Value& value);

    // Reading. A null reads as 0 or as the empty text.
    [[nodiscard]] bool isNull(std::size_t row) const;
    [[nodiscard]] std::int64_t intAt(std::size_t row) const;
    [[nodiscard]] double doubleAt(std::size_t row) const;
    [[nodiscard]] Int128 coefficientAt(std::size_t row) const;
    [[nodiscard]] std::string_view textAt(std::size_t row) const;  // valid until the set is changed or goes away
    [[nodiscard]] std::string_view bytesAt(std::size_t row) const;
    [[nodiscard]] DateTime dateTimeAt(std::size_t row) const;
    [[nodiscard]] Value valueAt(std::size_t row) const;

    // Replaces one cell. Converts like appendValue; the cell is unchanged when that throws.
    void set(std::size_t row, const Value& value);

    // Bytes held, bookkeeping included.
    [[nodiscard]] std::size_t memory() const;

private:
    friend class RowSet;
    using Chunk = detail::Chunk;

    explicit Column(const ColumnInfo& info);
    // Room for the first rows of a small result: bytes wanted, and the place of them.
    [[nodiscard]] std::size_t firstRoom() const;
    void lend(std::byte* memory);

    [[nodiscard]] const Chunk& chunkOf(std::size_t row) const {
        const std::size_t index = row / Chunk::kRows;
        return index < full_.size() ? full_[index] : tail_;
    }
    [[nodiscard]] Chunk& chunkOf(std::size_t row) { return const_cast<Chunk&>(std::as_const(*this).chunkOf(row)); }
    // The place in the tail of the next cell; makes room first. The cell counts once tail_.count is raised.
    [[nodiscard]] std::uint32_t nextRow() {
        if (tail_.count == tail_.capacity) [[unlikely]]
            grow();
        return tail_.count;
    }
    void grow();
    void growArena(std::size_t needed);
    static void widen(Chunk& chunk);
    static void markNull(Chunk& chunk, std::size_t row, bool null);
    void writeFixed(Chunk& chunk, std::size_t row, const Value& value);
    void writeBytes(Chunk& chunk, std::size_t row, std::string_view value);
    void remove(std::size_t row);
    [[noreturn]] void failRange(std::int64_t value) const;

    const ColumnInfo* info_;  // the row set's
    std::uint8_t width_;      // bytes of a cell; of a decimal the width at which a chunk starts
    Chunk tail_;              // the chunk being filled
    std::vector<Chunk> full_;
};

class RowSet {
public:
    RowSet() = default;
    explicit RowSet(std::vector<ColumnInfo> columns);
    // The same without a copy: an engine that runs a statement again shares the description of its columns.
    explicit RowSet(std::shared_ptr<const std::vector<ColumnInfo>> columns);
    RowSet(RowSet&&) noexcept = default;
    RowSet& operator=(RowSet&&) noexcept = default;

    [[nodiscard]] std::size_t rowCount() const { return rows_; }
    [[nodiscard]] std::size_t columnCount() const { return columns_.size(); }
    [[nodiscard]] Column& column(std::size_t index) { return columns_[index]; }
    [[nodiscard]] const Column& column(std::size_t index) const { return columns_[index]; }
    // Index of the column of that name, ignoring case (ASCII and Unicode); -1 when there is none.
    [[nodiscard]] int indexOf(std::string_view name) const;

    void finishRow() { ++rows_; }  // after one append on every column
    // The rows below move up by one.
    void removeRow(std::size_t row);
    [[nodiscard]] std::size_t memory() const;

private:
    std::shared_ptr<const std::vector<ColumnInfo>> infos_;
    detail::Block first_;  // the first rows of all columns in one piece
    std::vector<Column> columns_;
    std::size_t rows_ = 0;
};

// What an engine calls once a cell.

inline void Column::appendInt(std::int64_t value) {
    assert(isIntegral(info_->type));
    const std::uint32_t row = nextRow();
    switch (width_) {
        case 1:
            if (value != static_cast<std::uint8_t>(value)) [[unlikely]]
                failRange(value);
            tail_.put(row, static_cast<std::uint8_t>(value));
            break;
        case 2:
            if (value != static_cast<std::int16_t>(value)) [[unlikely]]
                failRange(value);
            tail_.put(row, static_cast<std::int16_t>(value));
            break;
        case 4:
            if (value != static_cast<std::int32_t>(value)) [[unlikely]]
                failRange(value);
            tail_.put(row, static_cast<std::int32_t>(value));
            break;
        default:
            tail_.put(row, value);
    }
    tail_.count = row + 1;
}

inline void Column::appendDouble(double value) {
    assert(info_->type == FieldType::Float);
    const std::uint32_t row = nextRow();
    tail_.put(row, value);
    tail_.count = row + 1;
}

inline void Column::appendDecimal(Int128 coefficient) {
    assert(info_->type == FieldType::Decimal);
    const std::uint32_t row = nextRow();
    const auto narrow = static_cast<std::int64_t>(coefficient);
    if (tail_.width == 8 && narrow != coefficient) [[unlikely]]
        widen(tail_);
    if (tail_.width == 8) {
        tail_.put(row, narrow);
    } else {
        tail_.put(row, coefficient);
    }
    tail_.count = row + 1;
}

inline void Column::appendText(std::string_view value) {
    appendBytes(value.data(), value.size());
}

inline void Column::appendBytes(const void* data, std::size_t size) {
    assert(info_->type == FieldType::Text || info_->type == FieldType::Binary);
    const std::uint32_t row = nextRow();
    const std::uint32_t begin = tail_.begin(row);
    if (tail_.arena.size() - begin < size) [[unlikely]]
        growArena(begin + size);
    if (size != 0) std::memcpy(tail_.arena.data() + begin, data, size);
    tail_.put(row, static_cast<std::uint32_t>(begin + size));
    tail_.count = row + 1;
}

inline bool Column::isNull(std::size_t row) const {
    assert(row < size());
    return chunkOf(row).isNull(row % Chunk::kRows);
}

inline std::int64_t Column::intAt(std::size_t row) const {
    assert(row < size() && isIntegral(info_->type));
    const Chunk& chunk = chunkOf(row);
    row %= Chunk::kRows;
    switch (width_) {
        case 1:
            return chunk.get<std::uint8_t>(row);
        case 2:
            return chunk.get<std::int16_t>(row);
        case 4:
            return chunk.get<std::int32_t>(row);
        default:
            return chunk.get<std::int64_t>(row);
    }
}

inline std::string_view Column::bytesAt(std::size_t row) const {
    assert(row < size() && (info_->type == FieldType::Text || info_->type == FieldType::Binary));
    const Chunk& chunk = chunkOf(row);
    row %= Chunk::kRows;
    const std::uint32_t begin = chunk.begin(row);
    return {reinterpret_cast<const char*>(chunk.arena.data()) + begin, chunk.end(row) - begin};
}

inline std::string_view Column::textAt(std::size_t row) const {
    return bytesAt(row);
}

}  // namespace basalt
