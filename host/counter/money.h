// Money of amounts and prices, without what binary fractions lose: 0.139 times 100500 is 13969.5, and so 13970.
//
//   moneyOf(0.139L, 100500, 0)    13970
#pragma once

#include "ado/decimal.h"

namespace basalt::host {

// What the amount costs, with `decimals` (0 to 9) digits after the point, rounded half away from zero. Of amount and
// price nine digits after the point count, as the ledger has them. Throws std::overflow_error for more than 38 digits,
// and for numbers that are not finite.
[[nodiscard]] Decimal moneyOf(Extended amount, Extended price, int decimals);

// Of two with the same count of decimals. Throws std::overflow_error for more than 38 digits.
[[nodiscard]] Decimal sumOf(const Decimal& a, const Decimal& b);

}  // namespace basalt::host
