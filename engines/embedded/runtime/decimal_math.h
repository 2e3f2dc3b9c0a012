// Exact arithmetic on decimals by SQL Server's rules for precision and scale.
//
//   SqlType t = productType(SqlType::decimal(5, 2), SqlType::decimal(5, 2));   decimal(11,4)
//   multiply({1050, 2}, {200, 2}, t)                                           210.0000 as the coefficient 2100000
//
// Results that need more digits than the type has throw DatabaseError 8115, a zero divisor 8134.
#pragma once

#include "ado/decimal.h"
#include "engines/embedded/runtime/sql_type.h"

namespace basalt::embedded {

[[nodiscard]] SqlType sumType(const SqlType& a, const SqlType& b);  // of + and -
[[nodiscard]] SqlType productType(const SqlType& a, const SqlType& b);
[[nodiscard]] SqlType quotientType(const SqlType& a, const SqlType& b);
[[nodiscard]] SqlType moduloType(const SqlType& a, const SqlType& b);
// The narrowest decimal that holds every value of both: for CASE, UNION, COALESCE.
[[nodiscard]] SqlType commonDecimal(const SqlType& a, const SqlType& b);
// The decimal that an integer type converts to: decimal(10,0) for int.
[[nodiscard]] SqlType decimalOf(const SqlType& type);

[[nodiscard]] Decimal add(const Decimal& a, const Decimal& b, const SqlType& result);
[[nodiscard]] Decimal subtract(const Decimal& a, const Decimal& b, const SqlType& result);
[[nodiscard]] Decimal multiply(const Decimal& a, const Decimal& b, const SqlType& result);
[[nodiscard]] Decimal divide(const Decimal& a, const Decimal& b, const SqlType& result);
[[nodiscard]] Decimal modulo(const Decimal& a, const Decimal& b, const SqlType& result);

// At the type's scale, rounded half away from zero. Throws 8115 when the type does not hold it.
[[nodiscard]] Decimal fit(const Decimal& value, const SqlType& type);

// Rounds (or cuts, when `truncate`) to `digits` after the point, keeping the scale; negative digits round before it.
[[nodiscard]] Decimal roundTo(const Decimal& value, std::int64_t digits, bool truncate);
[[nodiscard]] Decimal floorOf(const Decimal& value);    // at scale 0
[[nodiscard]] Decimal ceilingOf(const Decimal& value);  // at scale 0

}  // namespace basalt::embedded
