// T-SQL data types as the engine knows them: of columns, variables, literals and expressions.
//
//   SqlType price = SqlType::decimal(23, 9);
//   price.name()             "decimal(23,9)"
//   SqlType::parse("nvarchar", 50, -1).length      50
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ado/rowset.h"

namespace basalt::embedded {

// In the order of precedence: of two operands, the one of the lower kind is converted to the other's.
enum class TypeKind : std::uint8_t {
    Null,  // the literal NULL before its context gives it a type
    Binary,
    VarBinary,
    Char,
    VarChar,
    NChar,
    NVarChar,
    UniqueIdentifier,
    Bit,
    TinyInt,
    SmallInt,
    Int,
    BigInt,
    SmallMoney,
    Money,
    Decimal,
    Real,
    Float,
    Time,
    Date,
    SmallDateTime,
    DateTime,
    DateTime2,
};

// What a value of a type is for the storage and for expressions.
enum class Storage : std::uint8_t { Integer, Real, Decimal, Text, Blob, Ticks };

inline constexpr int kMaxLength = -1;  // the length of (max) types

struct SqlType {
    TypeKind kind = TypeKind::Null;
    std::int32_t length = 0;     // texts in UTF-16 units, binaries in bytes; kMaxLength = unbounded
    std::uint8_t precision = 0;  // decimals
    std::uint8_t scale = 0;      // decimals; fraction digits of time and datetime2

    [[nodiscard]] static SqlType of(TypeKind kind);
    [[nodiscard]] static SqlType decimal(int precision, int scale);
    [[nodiscard]] static SqlType text(TypeKind kind, int length) { return {kind, length, 0, 0}; }
    // The type that T-SQL's name and arguments mean: `first` and `second` are -1 when absent, `max` for (max).
    // nullopt for a name that is no type. Throws DatabaseError for arguments out of range.
    [[nodiscard]] static std::optional<SqlType> parse(std::string_view name, std::int64_t first = -1,
                                                      std::int64_t second = -1, bool max = false);
    // The reverse of columnDeclaration.
    [[nodiscard]] static std::optional<SqlType> fromDeclaration(std::string_view declaration);

    [[nodiscard]] bool isInteger() const { return kind >= TypeKind::Bit && kind <= TypeKind::BigInt; }
    [[nodiscard]] bool isDecimal() const { return kind >= TypeKind::SmallMoney && kind <= TypeKind::Decimal; }
    [[nodiscard]] bool isFloat() const { return kind == TypeKind::Real || kind == TypeKind::Float; }
    [[nodiscard]] bool isNumber() const { return kind >= TypeKind::Bit && kind <= TypeKind::Float; }
    [[nodiscard]] bool isText() const { return kind >= TypeKind::Char && kind <= TypeKind::NVarChar; }
    [[nodiscard]] bool isUnicode() const { return kind == TypeKind::NChar || kind == TypeKind::NVarChar; }
    [[nodiscard]] bool isFixedText() const { return kind == TypeKind::Char || kind == TypeKind::NChar; }
    [[nodiscard]] bool isBinary() const { return kind == TypeKind::Binary || kind == TypeKind::VarBinary; }
    [[nodiscard]] bool isDate() const { return kind >= TypeKind::Time; }
    [[nodiscard]] bool isNull() const { return kind == TypeKind::Null; }
    [[nodiscard]] Storage storage() const;

    [[nodiscard]] std::string_view baseName() const;  // "nvarchar"
    [[nodiscard]] std::string name() const;           // "nvarchar(50)"
    // The declared type of a column of the SQLite table, collation included.
    [[nodiscard]] std::string columnDeclaration() const;

    // All of the type in one integer, as SQL functions take it.
    [[nodiscard]] std::int64_t code() const;
    [[nodiscard]] static SqlType fromCode(std::int64_t code);

    [[nodiscard]] FieldType fieldType() const;
    // Fills type, size, precision, scale, fixedLength and typeName.
    void describe(ColumnInfo& info) const;

    friend bool operator==(const SqlType&, const SqlType&) = default;
};

// Smallest and largest value of an integer kind (Bit to BigInt).
[[nodiscard]] std::int64_t lowest(TypeKind kind);
[[nodiscard]] std::int64_t highest(TypeKind kind);

}  // namespace basalt::embedded
