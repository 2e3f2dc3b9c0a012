#include "engines/odbc/parameters.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "engines/odbc/diagnostics.h"
#include "engines/odbc/timestamps.h"
#include "engines/odbc/utf16.h"

namespace basalt::odbc {

namespace {

// What nvarchar and varbinary hold with a length, in characters and bytes; size 0 stands for max.
constexpr SQLULEN kLongestText = 4000;
constexpr SQLULEN kLongestBytes = 8000;
// Room for an output parameter whose type has no bound, in characters or bytes.
constexpr std::size_t kUnboundedRoom = 32 * 1024;
constexpr std::size_t kDecimalText = 48;
// "2024-03-20 10:15:00", and the point before a fraction.
constexpr SQLULEN kSecondsText = 19;

SQLSMALLINT integerType(FieldType type) {
    switch (type) {
        // ODBC's own tinyint is signed, the server's is not.
        case FieldType::TinyInt:
        case FieldType::SmallInt:
            return SQL_SMALLINT;
        case FieldType::Integer:
            return SQL_INTEGER;
        default:
            return SQL_BIGINT;
    }
}

template <typename T>
T valueIn(const std::vector<std::byte>& data) {
    T value;
    std::memcpy(&value, data.data(), sizeof(T));
    return value;
}

}  // namespace

void Parameters::putBytes(Slot& slot, const void* data, std::size_t size) {
    // Never empty: drivers want an address even for an empty value.
    slot.data.resize(std::max<std::size_t>(size, 1));
    if (size != 0) std::memcpy(slot.data.data(), data, size);
    slot.length = static_cast<SQLLEN>(size);
}

void Parameters::putText(Slot& slot, const std::string& text) const {
    const std::u16string units = toUtf16(text);
    putBytes(slot, units.data(), units.size() * sizeof(char16_t));
    slot.cType = SQL_C_WCHAR;
    takeLength(slot, units.size());
}

// The SQL type of a text or of bytes. All lengths share one size, so that the server keeps one plan for them.
void Parameters::takeLength(Slot& slot, SQLULEN length) const {
    const bool text = slot.cType == SQL_C_WCHAR;
    const SQLULEN longest = text ? kLongestText : kLongestBytes;
    if (length > longest) return takeMax(slot);
    slot.sqlType = text ? SQL_WVARCHAR : SQL_VARBINARY;
    slot.size = longest;
}

void Parameters::takeMax(Slot& slot) const {
    const bool text = slot.cType == SQL_C_WCHAR;
    slot.sqlType = text ? SQL_WVARCHAR : SQL_VARBINARY;
    slot.size = 0;
    if (!traits_->maxParametersAreLong) return;
    slot.sqlType = text ? SQL_WLONGVARCHAR : SQL_LONGVARBINARY;
    slot.size = std::max<SQLULEN>(slot.data.size(), kUnboundedRoom);
}

// The value with the type that it has by itself.
void Parameters::put(Slot& slot, const Value& value) const {
    const auto number = [&](SQLSMALLINT cType, SQLSMALLINT sqlType, auto bits) {
        slot.cType = cType;
        slot.sqlType = sqlType;
        slot.size = 0;
        putBytes(slot, &bits, sizeof(bits));
    };
    if (const auto* flag = std::get_if<bool>(&value)) {
        number(SQL_C_BIT, SQL_BIT, static_cast<unsigned char>(*flag ? 1 : 0));
    } else if (const auto* integer = std::get_if<std::int64_t>(&value)) {
        number(SQL_C_SBIGINT, SQL_BIGINT, static_cast<SQLBIGINT>(*integer));
    } else if (const auto* real = std::get_if<double>(&value)) {
        number(SQL_C_DOUBLE, SQL_DOUBLE, *real);
    } else if (const auto* decimal = std::get_if<Decimal>(&value)) {
        const std::string text = decimal->toString();
        slot.cType = SQL_C_CHAR;
        slot.sqlType = SQL_DECIMAL;
        slot.size = kMaxDecimalDigits;
        slot.digits = static_cast<SQLSMALLINT>(decimal->scale());
        putBytes(slot, text.data(), text.size());
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        putText(slot, *text);
    } else if (const auto* bytes = std::get_if<Bytes>(&value)) {
        slot.cType = SQL_C_BINARY;
        putBytes(slot, bytes->data(), bytes->size());
        takeLength(slot, bytes->size());
    } else if (const auto* point = std::get_if<DateTime>(&value)) {
        putText(slot, isoText(*point));
    }
}

void Parameters::addMarker(const Value& value) {
    put(slots_.emplace_back(), value);
}

// How a procedure's parameter of this type is bound, whatever its value.
void Parameters::takeType(Slot& slot, const ColumnInfo& type) const {
    const auto as = [&](SQLSMALLINT cType, SQLSMALLINT sqlType, SQLULEN size, int digits = 0) {
        slot.cType = cType;
        slot.sqlType = sqlType;
        slot.size = size;
        slot.digits = static_cast<SQLSMALLINT>(digits);
    };
    // Texts and bytes: as long as the parameter is; a longer value than it takes is for the server to judge.
    const auto asLong = [&](SQLSMALLINT cType, SQLULEN unit) {
        slot.cType = cType;
        const SQLULEN given = (slot.length > 0 ? static_cast<SQLULEN>(slot.length) : 0) / unit;
        const auto own = static_cast<SQLULEN>(type.size);
        // Also varchar(8000): texts go as nvarchar.
        if (own == 0 || own > (unit == 1 ? kLongestBytes : kLongestText)) return takeMax(slot);
        takeLength(slot, given);
        if (given <= own) slot.size = own;
    };
    switch (type.type) {
        case FieldType::Boolean:
            return as(SQL_C_BIT, SQL_BIT, 0);
        case FieldType::TinyInt:
        case FieldType::SmallInt:
        case FieldType::Integer:
        case FieldType::BigInt:
            return as(SQL_C_SBIGINT, integerType(type.type), 0);
        case FieldType::Float:
            return as(SQL_C_DOUBLE, SQL_DOUBLE, 0);
        case FieldType::Decimal:
            return as(SQL_C_CHAR, SQL_DECIMAL, static_cast<SQLULEN>(type.precision), type.scale);
        case FieldType::Text:
            return asLong(SQL_C_WCHAR, sizeof(char16_t));
        case FieldType::Binary:
            return asLong(SQL_C_BINARY, 1);
        case FieldType::Date:
        case FieldType::DateTime: {
            const int digits = type.type == FieldType::Date ? 0 : countsInMilliseconds(type) ? 3 : 7;
            return as(SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP,
                      digits == 0 ? kSecondsText : kSecondsText + 1 + static_cast<SQLULEN>(digits), digits);
        }
    }
}

// An output parameter's buffer holds the longest value, not only the one that goes in.
void Parameters::makeRoom(Slot& slot) {
    std::size_t room = 0;
    switch (slot.cType) {
        case SQL_C_WCHAR:
            room = (slot.size == 0 ? kUnboundedRoom : slot.size) * sizeof(char16_t) + sizeof(char16_t);
            break;
        case SQL_C_BINARY:
            room = slot.size == 0 ? kUnboundedRoom : slot.size;
            break;
        case SQL_C_CHAR:
            room = kDecimalText;
            break;
        case SQL_C_TYPE_TIMESTAMP:
            room = sizeof(SQL_TIMESTAMP_STRUCT);
            break;
        default:
            room = sizeof(std::int64_t);
    }
    if (slot.data.size() < room) slot.data.resize(room);
}

void Parameters::addArgument(const ColumnInfo& type, const Value& value, bool output, std::string name) {
    Slot slot;
    slot.type = type;
    slot.name = std::move(name);
    try {
        const Value fitted = convertValue(type, value);
        if (const auto* point = std::get_if<DateTime>(&fitted)) {
            const SQL_TIMESTAMP_STRUCT stamp = toTimestamp(*point);
            putBytes(slot, &stamp, sizeof(stamp));
        } else {
            put(slot, fitted);
        }
        takeType(slot, type);
    } catch (const DatabaseError&) {
        // What its parameter cannot hold goes as it is, for the server to refuse in its own words.
        if (output) throw;
        put(slot, value);
    }
    if (output) {
        slot.direction = SQL_PARAM_INPUT_OUTPUT;
        makeRoom(slot);
    }
    slots_.push_back(std::move(slot));
}

void Parameters::addReturnValue() {
    ColumnInfo type;
    type.type = FieldType::Integer;
    Slot slot;
    takeType(slot, type);
    slot.type = type;
    slot.direction = SQL_PARAM_OUTPUT;
    makeRoom(slot);
    slots_.push_back(std::move(slot));
}

void Parameters::bind(SQLHSTMT statement, std::string_view sql) {
    SQLUSMALLINT number = 0;
    for (Slot& slot : slots_) {
        // Also a null has an address.
        if (slot.data.empty()) slot.data.resize(sizeof(std::int64_t));
        const SQLRETURN rc =
            SQLBindParameter(statement, ++number, slot.direction, slot.cType, slot.sqlType, slot.size, slot.digits,
                             slot.data.data(), static_cast<SQLLEN>(slot.data.size()), &slot.length);
        if (!SQL_SUCCEEDED(rc)) throw errorOf(diagnosticsOf(SQL_HANDLE_STMT, statement), sql);
    }
}

Value Parameters::valueAt(std::size_t index) const {
    const Slot& slot = slots_.at(index);
    if (slot.length == SQL_NULL_DATA) return Null{};
    switch (slot.cType) {
        case SQL_C_BIT:
            return slot.data.front() != std::byte{0};
        case SQL_C_SBIGINT:
            return static_cast<std::int64_t>(valueIn<SQLBIGINT>(slot.data));
        case SQL_C_DOUBLE:
            return valueIn<double>(slot.data);
        case SQL_C_TYPE_TIMESTAMP:
            return fromTimestamp(valueIn<SQL_TIMESTAMP_STRUCT>(slot.data), countsInMilliseconds(slot.type));
        default:
            break;
    }
    // Also when the length is unknown, which is negative.
    const std::size_t terminator = slot.cType == SQL_C_WCHAR ? sizeof(char16_t) : slot.cType == SQL_C_CHAR ? 1 : 0;
    const auto bytes = static_cast<std::size_t>(slot.length);
    if (slot.length < 0 || bytes + terminator > slot.data.size()) {
        throw DatabaseError(ErrorCategory::Truncation, "22001", 0,
                            "the value of " + slot.name + " is longer than the parameter that receives it");
    }
    const auto* text = reinterpret_cast<const char*>(slot.data.data());
    switch (slot.cType) {
        case SQL_C_WCHAR:
            return toUtf8({reinterpret_cast<const char16_t*>(text), bytes / sizeof(char16_t)});
        case SQL_C_BINARY:
            return Bytes(text, text + bytes);
        default:
            return convertValue(slot.type, std::string(text, bytes));
    }
}

}  // namespace basalt::odbc
