#include "ado/decimal.h"

#include <array>
#include <boost/multiprecision/cpp_int.hpp>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace basalt {

namespace {

using UInt128 = unsigned __int128;
using boost::multiprecision::uint256_t;

constexpr std::array<Int128, kMaxDecimalDigits + 1> kPowers = [] {
    std::array<Int128, kMaxDecimalDigits + 1> powers{};
    powers[0] = 1;
    for (std::size_t i = 1; i < powers.size(); ++i)
        powers[i] = powers[i - 1] * 10;
    return powers;
}();

// One past the largest coefficient: 10^38 still fits into 127 bits.
constexpr Int128 kLimit = kPowers[kMaxDecimalDigits];

// Above this power 10^n no longer fits the 64-bit mantissa (27) or the 53-bit mantissa (22) exactly.
constexpr int kExactExtendedPower = 27;
constexpr int kExactDoublePower = 22;

constexpr UInt128 magnitude(Int128 value) {
    return value < 0 ? UInt128{0} - static_cast<UInt128>(value) : static_cast<UInt128>(value);
}

bool withinLimit(Int128 value) {
    return value < kLimit && value > -kLimit;
}

char* writeDigits(UInt128 value, char* end) {
    // 64-bit divisions are an order of magnitude cheaper than 128-bit ones.
    while (value > UINT64_MAX) {
        *--end = static_cast<char>('0' + static_cast<int>(value % 10));
        value /= 10;
    }
    auto low = static_cast<std::uint64_t>(value);
    do {
        *--end = static_cast<char>('0' + static_cast<int>(low % 10));
        low /= 10;
    } while (low != 0);
    return end;
}

// The quotient, rounded half away from zero.
Int128 divideRounded(Int128 value, Int128 divisor) {
    Int128 quotient = value / divisor;
    Int128 remainder = value % divisor;
    if (remainder < 0) remainder = -remainder;
    if (remainder >= divisor - remainder) quotient += value < 0 ? -1 : 1;
    return quotient;
}

template <typename Real>
Real parseReal(const std::string& text) {
    Real value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace

Int128 powerOfTen(int exponent) {
    return kPowers.at(static_cast<std::size_t>(exponent));
}

std::string toString(Int128 value) {
    std::array<char, 40> buffer;
    char* const end = buffer.data() + buffer.size();
    char* begin = writeDigits(magnitude(value), end);
    if (value < 0) *--begin = '-';
    return {begin, end};
}

std::optional<Decimal> Decimal::parse(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    bool negative = false;
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    Int128 coefficient = 0;
    int scale = 0;
    bool point = false;
    bool digit = false;
    for (const char c : text) {
        if (c == '.' && !point) {
            point = true;
            continue;
        }
        if (c < '0' || c > '9') return std::nullopt;
        digit = true;
        if (point && ++scale > kMaxDecimalDigits) return std::nullopt;
        if (coefficient >= kLimit / 10) return std::nullopt;
        coefficient = coefficient * 10 + (c - '0');
    }
    if (!digit) return std::nullopt;
    return Decimal(negative ? -coefficient : coefficient, scale);
}

std::optional<Decimal> Decimal::fromExtended(Extended value, int scale) {
    if (!std::isfinite(value)) return std::nullopt;
    const bool negative = value < 0;
    const Extended positive = std::fabs(value);
    if (positive >= 1e38L) return std::nullopt;

    if (scale <= kExactExtendedPower) {
        const auto power = static_cast<Extended>(kPowers[static_cast<std::size_t>(scale)]);
        const Extended scaled = positive * power;
        if (scaled < 0x1p63L) {
            auto whole = static_cast<Int128>(scaled);
            const Extended fraction = scaled - static_cast<Extended>(whole);
            // The product was itself rounded; at an apparent tie its error tells on which side the value lies.
            const bool up = fraction > 0.5L || (fraction == 0.5L && std::fma(positive, power, -scaled) >= 0);
            if (up) ++whole;
            return Decimal(negative ? -whole : whole, scale);
        }
    }

    int exponent = 0;
    const Extended mantissa = std::frexp(positive, &exponent);
    const auto bits = static_cast<std::uint64_t>(std::ldexp(mantissa, 64));
    exponent -= 64;
    uint256_t product = uint256_t(bits) * uint256_t(static_cast<UInt128>(kPowers[static_cast<std::size_t>(scale)]));
    if (exponent >= 0) {
        // Less than 10^38 * 10^38, which 256 bits hold.
        product <<= static_cast<unsigned>(exponent);
    } else if (exponent < -250) {
        product = 0;
    } else {
        const auto shift = static_cast<unsigned>(-exponent);
        product += uint256_t(1) << (shift - 1);
        product >>= shift;
    }
    if (product >= uint256_t(static_cast<UInt128>(kLimit))) return std::nullopt;
    const auto coefficient = static_cast<Int128>(static_cast<UInt128>(product));
    return Decimal(negative ? -coefficient : coefficient, scale);
}

int Decimal::digits() const {
    const UInt128 value = magnitude(coefficient_);
    int count = 1;
    while (count < kMaxDecimalDigits && value >= static_cast<UInt128>(kPowers[static_cast<std::size_t>(count)]))
        ++count;
    return count;
}

Decimal Decimal::rescaled(int scale) const {
    if (scale < 0 || scale > kMaxDecimalDigits) throw std::overflow_error("a scale is 0 to 38");
    if (scale == scale_) return *this;
    if (scale < scale_) {
        return {divideRounded(coefficient_, kPowers[static_cast<std::size_t>(scale_ - scale)]), scale};
    }
    Int128 result = 0;
    if (__builtin_mul_overflow(coefficient_, kPowers[static_cast<std::size_t>(scale - scale_)], &result) ||
        !withinLimit(result)) {
        throw std::overflow_error("the number " + toString() + " needs more than 38 digits at scale " +
                                  std::to_string(scale));
    }
    return {result, scale};
}

std::string Decimal::toString() const {
    std::string text = basalt::toString(coefficient_);
    if (scale_ == 0) return text;
    const std::size_t sign = coefficient_ < 0 ? 1 : 0;
    const std::size_t digitCount = text.size() - sign;
    if (digitCount <= scale_) text.insert(sign, scale_ - digitCount + 1, '0');
    text.insert(text.size() - scale_, 1, '.');
    return text;
}

std::string Decimal::toPlainString() const {
    std::string text = toString();
    if (scale_ == 0) return text;
    while (text.back() == '0')
        text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text;
}

Extended Decimal::toExtended() const {
    if (magnitude(coefficient_) <= UINT64_MAX && scale_ <= kExactExtendedPower) {
        return static_cast<Extended>(coefficient_) / static_cast<Extended>(kPowers[scale_]);
    }
    return parseReal<Extended>(toString());
}

double Decimal::toDouble() const {
    if (magnitude(coefficient_) <= (UInt128{1} << 53) && scale_ <= kExactDoublePower) {
        return static_cast<double>(coefficient_) / static_cast<double>(kPowers[scale_]);
    }
    return parseReal<double>(toString());
}

std::optional<std::int64_t> Decimal::toInt64() const {
    const Int128 whole = coefficient_ / kPowers[scale_];
    if (whole < INT64_MIN || whole > INT64_MAX) return std::nullopt;
    return static_cast<std::int64_t>(whole);
}

std::strong_ordering Decimal::compare(const Decimal& a, const Decimal& b) {
    if (a.scale_ == b.scale_) return a.coefficient_ <=> b.coefficient_;
    // Whole parts first: then the rest is below one and can be aligned without leaving 128 bits.
    const Int128 powerA = kPowers[a.scale_];
    const Int128 powerB = kPowers[b.scale_];
    const auto whole = a.coefficient_ / powerA <=> b.coefficient_ / powerB;
    if (std::is_neq(whole)) return whole;
    Int128 restA = a.coefficient_ % powerA;
    Int128 restB = b.coefficient_ % powerB;
    if (a.scale_ < b.scale_) {
        restA *= kPowers[static_cast<std::size_t>(b.scale_ - a.scale_)];
    } else {
        restB *= kPowers[static_cast<std::size_t>(a.scale_ - b.scale_)];
    }
    return restA <=> restB;
}

}  // namespace basalt
