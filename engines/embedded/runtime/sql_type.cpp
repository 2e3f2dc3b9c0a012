#include "engines/embedded/runtime/sql_type.h"

#include <array>
#include <charconv>
#include <limits>

#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

struct KindName {
    TypeKind kind;
    std::string_view name;
};

constexpr std::array kNames = {
    KindName{TypeKind::Null, "null"},
    KindName{TypeKind::Binary, "binary"},
    KindName{TypeKind::VarBinary, "varbinary"},
    KindName{TypeKind::Char, "char"},
    KindName{TypeKind::VarChar, "varchar"},
    KindName{TypeKind::NChar, "nchar"},
    KindName{TypeKind::NVarChar, "nvarchar"},
    KindName{TypeKind::UniqueIdentifier, "uniqueidentifier"},
    KindName{TypeKind::Bit, "bit"},
    KindName{TypeKind::TinyInt, "tinyint"},
    KindName{TypeKind::SmallInt, "smallint"},
    KindName{TypeKind::Int, "int"},
    KindName{TypeKind::BigInt, "bigint"},
    KindName{TypeKind::SmallMoney, "smallmoney"},
    KindName{TypeKind::Money, "money"},
    KindName{TypeKind::Decimal, "decimal"},
    KindName{TypeKind::Real, "real"},
    KindName{TypeKind::Float, "float"},
    KindName{TypeKind::Time, "time"},
    KindName{TypeKind::Date, "date"},
    KindName{TypeKind::SmallDateTime, "smalldatetime"},
    KindName{TypeKind::DateTime, "datetime"},
    KindName{TypeKind::DateTime2, "datetime2"},
};

struct Synonym {
    std::string_view name;
    std::string_view meaning;
};

constexpr std::array kSynonyms = {
    Synonym{"integer", "int"},          Synonym{"numeric", "decimal"},      Synonym{"dec", "decimal"},
    Synonym{"character", "char"},       Synonym{"nvarchar2", "nvarchar"},   Synonym{"text", "varchar(max)"},
    Synonym{"ntext", "nvarchar(max)"},  Synonym{"image", "varbinary(max)"}, Synonym{"sysname", "nvarchar(128)"},
    Synonym{"rowversion", "binary(8)"}, Synonym{"timestamp", "binary(8)"},
};

std::string lowered(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

void requireRange(std::string_view name, std::int64_t value, std::int64_t low, std::int64_t high) {
    if (value < low || value > high) {
        throwSqlError(131, "The size (" + std::to_string(value) + ") given to the type '" + std::string(name) +
                               "' is outside of the range " + std::to_string(low) + " to " + std::to_string(high) +
                               ".");
    }
}

}  // namespace

SqlType SqlType::of(TypeKind kind) {
    SqlType type{kind, 0, 0, 0};
    switch (kind) {
        case TypeKind::Money:
            type.precision = 19;
            type.scale = 4;
            break;
        case TypeKind::SmallMoney:
            type.precision = 10;
            type.scale = 4;
            break;
        case TypeKind::Decimal:
            type.precision = 18;
            break;
        case TypeKind::Char:
        case TypeKind::VarChar:
        case TypeKind::NChar:
        case TypeKind::NVarChar:
        case TypeKind::Binary:
        case TypeKind::VarBinary:
            type.length = 1;
            break;
        case TypeKind::UniqueIdentifier:
            type.length = 36;
            break;
        case TypeKind::Time:
        case TypeKind::DateTime2:
            type.scale = 7;
            break;
        default:
            break;
    }
    return type;
}

SqlType SqlType::decimal(int precision, int scale) {
    return {TypeKind::Decimal, 0, static_cast<std::uint8_t>(precision), static_cast<std::uint8_t>(scale)};
}

std::optional<SqlType> SqlType::parse(std::string_view rawName, std::int64_t first, std::int64_t second, bool max) {
    std::string name = lowered(rawName);
    for (const Synonym& synonym : kSynonyms) {
        if (synonym.name != name) continue;
        const std::size_t open = synonym.meaning.find('(');
        if (open == std::string_view::npos) {
            name = synonym.meaning;
        } else {
            return fromDeclaration(synonym.meaning.ends_with("(max)")
                                       ? std::string(synonym.meaning.substr(0, open)) + "(-1)"
                                       : std::string(synonym.meaning));
        }
        break;
    }
    const KindName* found = nullptr;
    for (const KindName& candidate : kNames) {
        if (candidate.name == name && candidate.kind != TypeKind::Null) found = &candidate;
    }
    if (found == nullptr) return std::nullopt;
    SqlType type = of(found->kind);
    if (max) {
        if (type.kind != TypeKind::VarChar && type.kind != TypeKind::NVarChar && type.kind != TypeKind::VarBinary) {
            throwSqlError(error::kSyntax, "The type '" + name + "' takes no (max).");
        }
        type.length = kMaxLength;
        return type;
    }
    if (first < 0) return type;
    if (type.isText() || type.isBinary()) {
        requireRange(name, first, 1, type.isUnicode() ? 4000 : 8000);
        type.length = static_cast<std::int32_t>(first);
    } else if (type.kind == TypeKind::Decimal) {
        requireRange(name, first, 1, kMaxDecimalDigits);
        type.precision = static_cast<std::uint8_t>(first);
        if (second >= 0) {
            requireRange(name, second, 0, first);
            type.scale = static_cast<std::uint8_t>(second);
        }
    } else if (type.kind == TypeKind::Float) {
        requireRange(name, first, 1, 53);
        if (first <= 24) type.kind = TypeKind::Real;
    } else if (type.kind == TypeKind::Time || type.kind == TypeKind::DateTime2) {
        requireRange(name, first, 0, 7);
        type.scale = static_cast<std::uint8_t>(first);
    } else {
        throwSqlError(2716, "Column, parameter, or variable: Cannot specify a column width on data type " + name + ".");
    }
    return type;
}

std::optional<SqlType> SqlType::fromDeclaration(std::string_view declaration) {
    const std::size_t open = declaration.find('(');
    if (open == std::string_view::npos) return parse(declaration);
    const std::size_t close = declaration.find(')', open);
    if (close == std::string_view::npos) return std::nullopt;
    const std::string_view arguments = declaration.substr(open + 1, close - open - 1);
    std::int64_t values[2] = {-1, -1};
    const char* at = arguments.data();
    const char* end = at + arguments.size();
    for (std::int64_t& value : values) {
        while (at < end && (*at == ' ' || *at == ','))
            ++at;
        if (at == end) break;
        const auto [next, problem] = std::from_chars(at, end, value);
        if (problem != std::errc()) return std::nullopt;
        at = next;
    }
    if (values[0] == kMaxLength && values[1] == -1) return parse(declaration.substr(0, open), -1, -1, true);
    return parse(declaration.substr(0, open), values[0], values[1]);
}

Storage SqlType::storage() const {
    if (isInteger() || isNull()) return Storage::Integer;
    if (isDecimal()) return Storage::Decimal;
    if (isFloat()) return Storage::Real;
    if (isDate()) return Storage::Ticks;
    if (isBinary()) return Storage::Blob;
    return Storage::Text;
}

std::string_view SqlType::baseName() const {
    return kNames[static_cast<std::size_t>(kind)].name;
}

std::string SqlType::name() const {
    std::string result(baseName());
    if (isText() || isBinary()) {
        result += length == kMaxLength ? "(max)" : "(" + std::to_string(length) + ")";
    } else if (kind == TypeKind::Decimal) {
        result += "(" + std::to_string(precision) + "," + std::to_string(scale) + ")";
    } else if ((kind == TypeKind::DateTime2 || kind == TypeKind::Time) && scale != 7) {
        result += "(" + std::to_string(scale) + ")";
    }
    return result;
}

std::string SqlType::columnDeclaration() const {
    std::string result = length == kMaxLength ? std::string(baseName()) + "(-1)" : name();
    if (storage() == Storage::Text) result += " COLLATE TSQL";
    return result;
}

std::int64_t SqlType::code() const {
    return static_cast<std::int64_t>(kind) | (static_cast<std::int64_t>(length + 1) << 8) |
           (static_cast<std::int64_t>(precision) << 40) | (static_cast<std::int64_t>(scale) << 48);
}

SqlType SqlType::fromCode(std::int64_t code) {
    return {static_cast<TypeKind>(code & 0xFF), static_cast<std::int32_t>((code >> 8) & 0xFFFFFFFF) - 1,
            static_cast<std::uint8_t>((code >> 40) & 0xFF), static_cast<std::uint8_t>((code >> 48) & 0xFF)};
}

FieldType SqlType::fieldType() const {
    switch (kind) {
        case TypeKind::Bit:
            return FieldType::Boolean;
        case TypeKind::TinyInt:
            return FieldType::TinyInt;
        case TypeKind::SmallInt:
            return FieldType::SmallInt;
        case TypeKind::Null:  // SQL Server types an untyped NULL as int
        case TypeKind::Int:
            return FieldType::Integer;
        case TypeKind::BigInt:
            return FieldType::BigInt;
        case TypeKind::SmallMoney:
        case TypeKind::Money:
        case TypeKind::Decimal:
            return FieldType::Decimal;
        case TypeKind::Real:
        case TypeKind::Float:
            return FieldType::Float;
        case TypeKind::Date:
            return FieldType::Date;
        case TypeKind::SmallDateTime:
        case TypeKind::DateTime:
        case TypeKind::DateTime2:
            return FieldType::DateTime;
        case TypeKind::Binary:
        case TypeKind::VarBinary:
            return FieldType::Binary;
        case TypeKind::Time:  // shown as text: data sets know no time of day alone
        case TypeKind::Char:
        case TypeKind::VarChar:
        case TypeKind::NChar:
        case TypeKind::NVarChar:
        case TypeKind::UniqueIdentifier:
            return FieldType::Text;
    }
    return FieldType::Text;
}

void SqlType::describe(ColumnInfo& info) const {
    info.type = fieldType();
    info.size = isText() || isBinary() ? (length == kMaxLength ? 0 : length) : 0;
    if (kind == TypeKind::UniqueIdentifier) info.size = 36;
    if (kind == TypeKind::Time) info.size = 16;
    info.precision = isDecimal() ? precision : 0;
    info.scale = isDecimal() ? scale : 0;
    info.fixedLength = isFixedText();
    info.typeName = kind == TypeKind::Null ? "int" : std::string(baseName());
}

std::int64_t lowest(TypeKind kind) {
    switch (kind) {
        case TypeKind::SmallInt:
            return std::numeric_limits<std::int16_t>::min();
        case TypeKind::Int:
            return std::numeric_limits<std::int32_t>::min();
        case TypeKind::BigInt:
            return std::numeric_limits<std::int64_t>::min();
        default:
            return 0;
    }
}

std::int64_t highest(TypeKind kind) {
    switch (kind) {
        case TypeKind::Bit:
            return 1;
        case TypeKind::TinyInt:
            return 255;
        case TypeKind::SmallInt:
            return std::numeric_limits<std::int16_t>::max();
        case TypeKind::Int:
            return std::numeric_limits<std::int32_t>::max();
        default:
            return std::numeric_limits<std::int64_t>::max();
    }
}

}  // namespace basalt::embedded
