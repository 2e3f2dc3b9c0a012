// Conversion between T-SQL types: CAST, CONVERT, assignment and the implicit conversions of expressions.
//
//   convert(std::string("12"), SqlType::of(TypeKind::VarChar), SqlType::of(TypeKind::Int))     std::int64_t 12
//
// A Value of a type is: bool for bit, std::int64_t for the other integers, double for real and float, Decimal at the
// type's scale, std::string for texts, Bytes for binaries, DateTime for dates and times; Null for NULL of any type.
#pragma once

#include "ado/value.h"
#include "engines/embedded/runtime/sql_type.h"

namespace basalt::embedded {

// Throws DatabaseError with SQL Server's number (220, 241, 242, 245, 8114, 8115, 529) when the value does not convert.
// Texts longer than the target are cut, as CAST does; assignment to a column calls requireLength first.
[[nodiscard]] Value convert(const Value& value, const SqlType& from, const SqlType& to, int style = 0);

// The type that a value given from outside (a `?` marker, an argument) has by itself.
[[nodiscard]] SqlType typeOfValue(const Value& value);

// Throws 2628 when a text or binary is longer than the column takes; trailing blanks beyond it do not count. `table` is
// named with its database and schema.
void requireLength(const Value& value, const SqlType& column, std::string_view table, std::string_view columnName);

// Texts as CAST(x AS varchar) writes them.
[[nodiscard]] std::string floatText(double value, int style = 0);

// The decimal at the type's scale; an overflow names both types.
[[nodiscard]] Decimal fitted(const Decimal& value, const SqlType& from, const SqlType& to);

}  // namespace basalt::embedded
