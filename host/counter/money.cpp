#include "host/counter/money.h"

#include <stdexcept>

namespace basalt::host {

namespace {

constexpr int kLedgerDecimals = 9;

// Without trailing zeros, so that the product of two has as few digits as it needs.
Decimal shortest(Extended value) {
    const auto exact = Decimal::fromExtended(value, kLedgerDecimals);
    if (!exact) throw std::overflow_error("an amount or a price is beyond 38 digits");
    Int128 coefficient = exact->coefficient();
    int scale = exact->scale();
    while (scale > 0 && coefficient % 10 == 0) {
        coefficient /= 10;
        --scale;
    }
    return {coefficient, scale};
}

Decimal within38Digits(Int128 coefficient, int scale, bool overflows) {
    const Decimal result(coefficient, scale);
    if (overflows || result.digits() > kMaxDecimalDigits)
        throw std::overflow_error("an amount of money is beyond 38 digits");
    return result;
}

}  // namespace

Decimal moneyOf(Extended amount, Extended price, int decimals) {
    const Decimal a = shortest(amount);
    const Decimal b = shortest(price);
    Int128 product = 0;
    const bool overflows = __builtin_mul_overflow(a.coefficient(), b.coefficient(), &product);
    return within38Digits(product, a.scale() + b.scale(), overflows).rescaled(decimals);
}

Decimal sumOf(const Decimal& a, const Decimal& b) {
    Int128 sum = 0;
    const bool overflows = __builtin_add_overflow(a.coefficient(), b.coefficient(), &sum);
    return within38Digits(sum, a.scale(), overflows);
}

}  // namespace basalt::host
