// Exact decimal numbers of up to 38 digits, as DECIMAL(p, s) columns hold them.
//
//   Decimal price = *Decimal::parse("12500.50");
//   price.toString()                       "12500.50"
//   price.rescaled(9).toString()           "12500.500000000"
//   price.rescaled(9).toPlainString()      "12500.5"
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace basalt {

using Int128 = __int128;
using Extended = long double;  // amounts at the interface

inline constexpr int kMaxDecimalDigits = 38;

// Value = coefficient / 10^scale. The scale is 0 to 38 and is part of the representation, not of the value:
// 1.5 and 1.50 compare equal and print differently.
class Decimal {
public:
    constexpr Decimal() = default;
    constexpr Decimal(Int128 coefficient, int scale)
        : coefficient_(coefficient), scale_(static_cast<std::uint8_t>(scale)) {}

    // Reads [blanks][sign]digits[.digits][blanks]; at least one digit. nullopt for any other text, for an exponent
    // and for more than 38 significant digits.
    [[nodiscard]] static std::optional<Decimal> parse(std::string_view text);
    // The nearest decimal with `scale` digits after the point; nullopt when not finite or beyond 38 digits.
    [[nodiscard]] static std::optional<Decimal> fromExtended(Extended value, int scale);

    [[nodiscard]] constexpr Int128 coefficient() const { return coefficient_; }
    [[nodiscard]] constexpr int scale() const { return scale_; }
    // Digits of the coefficient, at least 1.
    [[nodiscard]] int digits() const;

    // The same value at another scale, rounded half away from zero when digits are lost.
    // Throws std::overflow_error when the result needs more than 38 digits.
    [[nodiscard]] Decimal rescaled(int scale) const;

    [[nodiscard]] std::string toString() const;       // all `scale` digits: "12.50"
    [[nodiscard]] std::string toPlainString() const;  // no trailing zeros, no lone point: "12.5", "12", "-0.25", "0"
    [[nodiscard]] Extended toExtended() const;
    [[nodiscard]] double toDouble() const;
    // The integer part, truncated toward zero; nullopt when it does not fit.
    [[nodiscard]] std::optional<std::int64_t> toInt64() const;

    // By value: 1.5 == 1.50.
    [[nodiscard]] friend bool operator==(const Decimal& a, const Decimal& b) { return std::is_eq(a <=> b); }
    [[nodiscard]] friend std::strong_ordering operator<=>(const Decimal& a, const Decimal& b) { return compare(a, b); }

private:
    static std::strong_ordering compare(const Decimal& a, const Decimal& b);

    Int128 coefficient_ = 0;
    std::uint8_t scale_ = 0;
};

// 10^exponent for exponent 0 to 38.
[[nodiscard]] Int128 powerOfTen(int exponent);
// Decimal digits of a 128-bit integer, with '-' when negative.
[[nodiscard]] std::string toString(Int128 value);

}  // namespace basalt
