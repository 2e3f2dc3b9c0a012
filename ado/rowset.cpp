#include "ado/rowset.h"

#include <algorithm>
#include <new>

#include "ado/error.h"
#include "ado/field_type_words.h"
#include "ado/names.h"
#include "ado/rows_arriving.h"

namespace basalt {

namespace {

constexpr std::int64_t kTicksPerDay = 864'000'000'000;
// A point query has a row or two; a chunk that starts small and grows in a few steps costs neither much.
constexpr std::uint32_t kFirstCapacity = 4;
constexpr std::uint32_t kGrowth = 4;
constexpr std::size_t kFirstArena = 64;

constexpr std::uint8_t cellWidth(FieldType type) {
    switch (type) {
        case FieldType::Boolean:
        case FieldType::TinyInt:
            return 1;
        case FieldType::SmallInt:
            return 2;
        case FieldType::Integer:
        case FieldType::Text:
        case FieldType::Binary:
        case FieldType::Date:
            return 4;
        default:
            return 8;
    }
}

constexpr bool inArena(FieldType type) {
    return type == FieldType::Text || type == FieldType::Binary;
}

std::int32_t dayOf(DateTime value) {
    std::int64_t day = value.ticks / kTicksPerDay;
    if (value.ticks % kTicksPerDay < 0) --day;
    return static_cast<std::int32_t>(day);
}

struct Range {
    std::int64_t least, most;
};

constexpr Range rangeOf(FieldType type) {
    switch (type) {
        case FieldType::Boolean:
            return {0, 1};
        case FieldType::TinyInt:
            return {0, 255};
        case FieldType::SmallInt:
            return {INT16_MIN, INT16_MAX};
        case FieldType::Integer:
            return {INT32_MIN, INT32_MAX};
        default:
            return {INT64_MIN, INT64_MAX};
    }
}

[[noreturn]] void failConversion(const ColumnInfo& column, const std::string& value, const std::string& why) {
    throw DatabaseError(ErrorCategory::Conversion, "22003", 8115,
                        "column " + column.name + " (" +
                            std::string(kFieldTypeWords[static_cast<std::size_t>(column.type)]) + "): the value '" +
                            value + "' " + why);
}

[[noreturn]] void failRange(const ColumnInfo& column, std::int64_t value) {
    const Range range = rangeOf(column.type);
    failConversion(
        column, std::to_string(value),
        "is out of range; it must lie between " + std::to_string(range.least) + " and " + std::to_string(range.most));
}

Decimal fittedDecimal(const ColumnInfo& info, const Value& value) {
    const Decimal number = toDecimal(value);
    const int precision = info.precision > 0 ? info.precision : kMaxDecimalDigits;
    std::optional<Decimal> fitted;
    try {
        fitted = number.rescaled(info.scale);
    } catch (const std::overflow_error&) {
        // Told below, with the column's own limit.
    }
    if (!fitted || fitted->digits() > precision) {
        failConversion(info, number.toString(),
                       "is out of range; at most " + std::to_string(precision - info.scale) +
                           " digits may stand before the point");
    }
    return *fitted;
}

DateTime fittedDateTime(const ColumnInfo& info, const Value& value) {
    std::optional<DateTime> point;
    if (const auto* given = std::get_if<DateTime>(&value)) point = *given;
    if (const auto* text = std::get_if<std::string>(&value)) point = parseDateTime(*text);
    if (!point) failConversion(info, toText(value), "is not a date");
    if (info.type == FieldType::Date) point->ticks = dayOf(*point) * kTicksPerDay;
    return *point;
}

}  // namespace

namespace detail {

void Block::resize(std::size_t size) {
    if (size == 0) {
        *this = Block();
        return;
    }
    void* moved = std::realloc(lent_ ? nullptr : data_, size);
    if (moved == nullptr) throw std::bad_alloc();
    if (lent_) std::memcpy(moved, data_, std::min(size, size_));
    const std::size_t before = memory();
    data_ = static_cast<std::byte*>(moved);
    size_ = size;
    lent_ = false;
    RowsArriving::resized(before, size);
}

}  // namespace detail

Column::Column(const ColumnInfo& info) : info_(&info), width_(cellWidth(info.type)) {
    tail_.width = width_;
}

std::size_t Column::firstRoom() const {
    return std::size_t{kFirstCapacity} * width_ + (inArena(info_->type) ? kFirstArena : 0);
}

void Column::lend(std::byte* memory) {
    const std::size_t cells = std::size_t{kFirstCapacity} * width_;
    tail_.cells.borrow(memory, cells);
    tail_.capacity = kFirstCapacity;
    if (inArena(info_->type)) tail_.arena.borrow(memory + cells, kFirstArena);
}

Value convertValue(const ColumnInfo& column, const Value& value) {
    if (isNull(value)) return value;
    switch (column.type) {
        case FieldType::Boolean:
            return toBool(value);
        case FieldType::TinyInt:
        case FieldType::SmallInt:
        case FieldType::Integer:
        case FieldType::BigInt: {
            const std::int64_t number = toInt64(value);
            const Range range = rangeOf(column.type);
            if (number < range.least || number > range.most) failRange(column, number);
            return number;
        }
        case FieldType::Float:
            return static_cast<double>(toExtended(value));
        case FieldType::Decimal:
            return fittedDecimal(column, value);
        case FieldType::Text:
            return std::holds_alternative<std::string>(value) ? value : Value(toText(value));
        case FieldType::Binary:
            if (const auto* text = std::get_if<std::string>(&value)) return Bytes(text->begin(), text->end());
            if (!std::holds_alternative<Bytes>(value)) failConversion(column, toText(value), "is not binary");
            return value;
        case FieldType::Date:
        case FieldType::DateTime:
            return fittedDateTime(column, value);
    }
    return value;
}

void Column::failRange(std::int64_t value) const {
    basalt::failRange(*info_, value);
}

void Column::grow() {
    std::uint32_t capacity = tail_.capacity == 0 ? kFirstCapacity : tail_.capacity * kGrowth;
    if (tail_.count == Chunk::kRows) {
        const std::size_t arenaUsed = inArena(info_->type) ? tail_.end(tail_.count - 1) : 0;
        if (tail_.arena.size() != arenaUsed) tail_.arena.resize(arenaUsed);
        full_.push_back(std::move(tail_));
        tail_ = Chunk();
        tail_.width = width_;
        // The next chunk will most likely be as full as this one.
        capacity = Chunk::kRows;
        if (arenaUsed != 0) tail_.arena.resize(arenaUsed + arenaUsed / 16);
    }
    tail_.cells.resize(std::size_t{capacity} * tail_.width);
    if (tail_.nulls.size() != 0) {
        const std::size_t before = tail_.nulls.size();
        tail_.nulls.resize((capacity + 7) / 8);
        std::memset(tail_.nulls.data() + before, 0, tail_.nulls.size() - before);
    }
    tail_.capacity = capacity;
}

void Column::growArena(std::size_t needed) {
    if (needed > UINT32_MAX) {
        throw DatabaseError(ErrorCategory::Limit, "HY001", 0,
                            "column " + info_->name + ": more than 4 GB of text in 4096 rows");
    }
    // Large values in doublings would waste what the values themselves take; half again keeps both bounds.
    const std::size_t wanted = std::max<std::size_t>({needed, tail_.arena.size() + tail_.arena.size() / 2, 32});
    tail_.arena.resize(std::min<std::size_t>(wanted, UINT32_MAX));
}

void Column::widen(Chunk& chunk) {
    chunk.cells.resize(std::size_t{chunk.capacity} * sizeof(Int128));
    // From the last to the first: the wide cells grow over the narrow ones.
    for (std::size_t row = chunk.count; row-- > 0;)
        chunk.put(row, static_cast<Int128>(chunk.get<std::int64_t>(row)));
    chunk.width = sizeof(Int128);
}

void Column::markNull(Chunk& chunk, std::size_t row, bool null) {
    if (chunk.nulls.size() == 0) {
        if (!null) return;
        chunk.nulls.resize((chunk.capacity + 7) / 8);
        std::memset(chunk.nulls.data(), 0, chunk.nulls.size());
    }
    std::byte& bits = chunk.nulls.data()[row / 8];
    const auto bit = static_cast<std::byte>(1U << (row % 8));
    bits = null ? bits | bit : bits & ~bit;
}

void Column::appendNull() {
    const std::uint32_t row = nextRow();
    markNull(tail_, row, true);
    if (inArena(info_->type)) {
        tail_.put(row, tail_.begin(row));
    } else {
        std::memset(tail_.cells.data() + std::size_t{row} * tail_.width, 0, tail_.width);
    }
    tail_.count = row + 1;
}

void Column::appendDateTime(DateTime value) {
    assert(info_->type == FieldType::Date || info_->type == FieldType::DateTime);
    const std::uint32_t row = nextRow();
    if (info_->type == FieldType::Date) {
        tail_.put(row, dayOf(value));
    } else {
        tail_.put(row, value.ticks);
    }
    tail_.count = row + 1;
}

double Column::doubleAt(std::size_t row) const {
    assert(row < size() && info_->type == FieldType::Float);
    return chunkOf(row).get<double>(row % Chunk::kRows);
}

Int128 Column::coefficientAt(std::size_t row) const {
    assert(row < size() && info_->type == FieldType::Decimal);
    const Chunk& chunk = chunkOf(row);
    row %= Chunk::kRows;
    return chunk.width == 8 ? chunk.get<std::int64_t>(row) : chunk.get<Int128>(row);
}

DateTime Column::dateTimeAt(std::size_t row) const {
    assert(row < size() && (info_->type == FieldType::Date || info_->type == FieldType::DateTime));
    const Chunk& chunk = chunkOf(row);
    row %= Chunk::kRows;
    if (info_->type == FieldType::Date) return {chunk.get<std::int32_t>(row) * kTicksPerDay};
    return {chunk.get<std::int64_t>(row)};
}

Value Column::valueAt(std::size_t row) const {
    if (isNull(row)) return Null{};
    switch (info_->type) {
        case FieldType::Boolean:
            return intAt(row) != 0;
        case FieldType::TinyInt:
        case FieldType::SmallInt:
        case FieldType::Integer:
        case FieldType::BigInt:
            return intAt(row);
        case FieldType::Float:
            return doubleAt(row);
        case FieldType::Decimal:
            return Decimal(coefficientAt(row), info_->scale);
        case FieldType::Text:
            return std::string(textAt(row));
        case FieldType::Binary: {
            const std::string_view bytes = bytesAt(row);
            return Bytes(bytes.begin(), bytes.end());
        }
        case FieldType::Date:
        case FieldType::DateTime:
            return dateTimeAt(row);
    }
    return Null{};
}

void Column::appendValue(const Value& value) {
    if (basalt::isNull(value)) return appendNull();
    const Value fitted = convertValue(*info_, value);
    switch (info_->type) {
        case FieldType::Boolean:
            return appendInt(std::get<bool>(fitted) ? 1 : 0);
        case FieldType::TinyInt:
        case FieldType::SmallInt:
        case FieldType::Integer:
        case FieldType::BigInt:
            return appendInt(std::get<std::int64_t>(fitted));
        case FieldType::Float:
            return appendDouble(std::get<double>(fitted));
        case FieldType::Decimal:
            return appendDecimal(std::get<Decimal>(fitted).coefficient());
        case FieldType::Text:
            return appendText(std::get<std::string>(fitted));
        case FieldType::Binary: {
            const auto& bytes = std::get<Bytes>(fitted);
            return appendBytes(bytes.data(), bytes.size());
        }
        case FieldType::Date:
        case FieldType::DateTime:
            return appendDateTime(std::get<DateTime>(fitted));
    }
}

void Column::writeFixed(Chunk& chunk, std::size_t row, const Value& value) {
    if (basalt::isNull(value)) {
        std::memset(chunk.cells.data() + row * chunk.width, 0, chunk.width);
        return;
    }
    switch (info_->type) {
        case FieldType::Boolean:
            return chunk.put(row, static_cast<std::uint8_t>(std::get<bool>(value) ? 1 : 0));
        case FieldType::TinyInt:
            return chunk.put(row, static_cast<std::uint8_t>(std::get<std::int64_t>(value)));
        case FieldType::SmallInt:
            return chunk.put(row, static_cast<std::int16_t>(std::get<std::int64_t>(value)));
        case FieldType::Integer:
            return chunk.put(row, static_cast<std::int32_t>(std::get<std::int64_t>(value)));
        case FieldType::BigInt:
            return chunk.put(row, std::get<std::int64_t>(value));
        case FieldType::Float:
            return chunk.put(row, std::get<double>(value));
        case FieldType::Decimal: {
            const Int128 coefficient = std::get<Decimal>(value).coefficient();
            const auto narrow = static_cast<std::int64_t>(coefficient);
            if (chunk.width == 8 && narrow != coefficient) widen(chunk);
            if (chunk.width == 8) return chunk.put(row, narrow);
            return chunk.put(row, coefficient);
        }
        case FieldType::Date:
            return chunk.put(row, dayOf(std::get<DateTime>(value)));
        case FieldType::DateTime:
            return chunk.put(row, std::get<DateTime>(value).ticks);
        case FieldType::Text:
        case FieldType::Binary:
            break;
    }
}

// Moves the values behind it, at most one chunk's, and writes the new one into the gap.
void Column::writeBytes(Chunk& chunk, std::size_t row, std::string_view value) {
    const std::size_t begin = chunk.begin(row);
    const std::size_t end = chunk.end(row);
    const std::size_t used = chunk.end(chunk.count - 1);
    const std::size_t total = used - (end - begin) + value.size();
    if (total > UINT32_MAX) {
        throw DatabaseError(ErrorCategory::Limit, "HY001", 0,
                            "column " + info_->name + ": more than 4 GB of text in 4096 rows");
    }
    if (total > chunk.arena.size()) chunk.arena.resize(total);
    if (used != end) std::memmove(chunk.arena.data() + begin + value.size(), chunk.arena.data() + end, used - end);
    if (!value.empty()) std::memcpy(chunk.arena.data() + begin, value.data(), value.size());
    const auto shift = static_cast<std::uint32_t>(total - used);  // wraps around for a shorter value, as intended
    for (std::size_t i = row; i < chunk.count; ++i)
        chunk.put(i, chunk.end(i) + shift);
}

void Column::set(std::size_t row, const Value& value) {
    assert(row < size());
    const Value fitted = convertValue(*info_, value);
    Chunk& chunk = chunkOf(row);
    row %= Chunk::kRows;
    if (!inArena(info_->type)) {
        writeFixed(chunk, row, fitted);
    } else if (const auto* text = std::get_if<std::string>(&fitted)) {
        writeBytes(chunk, row, *text);
    } else if (const auto* bytes = std::get_if<Bytes>(&fitted)) {
        writeBytes(chunk, row, {reinterpret_cast<const char*>(bytes->data()), bytes->size()});
    } else {
        writeBytes(chunk, row, {});
    }
    markNull(chunk, row, basalt::isNull(fitted));
}

// Each later chunk hands its first cell to the one before it, so that all but the last stay full.
void Column::remove(std::size_t row) {
    assert(row < size());
    for (std::size_t index = row / Chunk::kRows;; ++index) {
        const bool last = index >= full_.size();
        Chunk& chunk = last ? tail_ : full_[index];
        const std::size_t at = index == row / Chunk::kRows ? row % Chunk::kRows : 0;
        if (inArena(info_->type)) writeBytes(chunk, at, {});
        const std::size_t behind = chunk.count - at - 1;
        std::byte* const cell = chunk.cells.data() + at * chunk.width;
        std::memmove(cell, cell + chunk.width, behind * chunk.width);
        if (chunk.nulls.size() != 0) {
            for (std::size_t i = at; i + 1 < chunk.count; ++i)
                markNull(chunk, i, chunk.isNull(i + 1));
            markNull(chunk, chunk.count - 1, false);
        }
        --chunk.count;
        if (last) break;
        if (index + 1 == full_.size() && tail_.count == 0) {
            // Nothing follows: the shortened chunk is the one to fill now.
            tail_ = std::move(full_.back());
            full_.pop_back();
            break;
        }
        const std::size_t taken = (index + 1) * Chunk::kRows;
        const Value moved = valueAt(taken);
        ++chunk.count;
        const std::size_t end = chunk.count - 1;
        if (inArena(info_->type)) chunk.put(end, chunk.begin(end));
        set(index * Chunk::kRows + end, moved);
    }
}

std::size_t Column::memory() const {
    const auto chunkMemory = [](const Chunk& chunk) {
        return sizeof(Chunk) + chunk.cells.memory() + chunk.arena.memory() + chunk.nulls.memory();
    };
    std::size_t bytes = sizeof(Column) - sizeof(Chunk) + chunkMemory(tail_);
    for (const Chunk& chunk : full_)
        bytes += chunkMemory(chunk);
    return bytes + (full_.capacity() - full_.size()) * sizeof(Chunk);
}

RowSet::RowSet(std::vector<ColumnInfo> columns)
    : RowSet(std::make_shared<const std::vector<ColumnInfo>>(std::move(columns))) {}

RowSet::RowSet(std::shared_ptr<const std::vector<ColumnInfo>> columns) : infos_(std::move(columns)) {
    columns_.reserve(infos_->size());
    std::size_t room = 0;
    for (const ColumnInfo& info : *infos_) {
        columns_.push_back(Column(info));
        room += columns_.back().firstRoom();
    }
    if (room == 0) return;
    first_.resize(room);
    std::byte* memory = first_.data();
    for (Column& column : columns_) {
        column.lend(memory);
        memory += column.firstRoom();
    }
}

int RowSet::indexOf(std::string_view name) const {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (sameName(columns_[i].info().name, name)) return static_cast<int>(i);
    }
    return -1;
}

void RowSet::removeRow(std::size_t row) {
    for (Column& column : columns_)
        column.remove(row);
    --rows_;
}

std::size_t RowSet::memory() const {
    std::size_t bytes = sizeof(RowSet) + first_.memory();
    for (const Column& column : columns_)
        bytes += column.memory();
    return bytes;
}

}  // namespace basalt
