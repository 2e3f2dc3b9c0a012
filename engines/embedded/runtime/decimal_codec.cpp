#include "engines/embedded/runtime/decimal_codec.h"

#include "ado/error.h"

namespace basalt::embedded {

using UInt128 = unsigned __int128;

EncodedDecimal encodeDecimal(Int128 coefficient) {
    EncodedDecimal result;
    const bool negative = coefficient < 0;
    UInt128 magnitude = negative ? -static_cast<UInt128>(coefficient) : static_cast<UInt128>(coefficient);
    int count = 0;
    for (UInt128 rest = magnitude; rest != 0; rest >>= 8)
        ++count;
    result.bytes[0] = static_cast<std::uint8_t>(negative ? 0x80 - count : 0x80 + count);
    const std::uint8_t mask = negative ? 0xFF : 0;
    for (int i = count; i > 0; --i, magnitude >>= 8)
        result.bytes[static_cast<std::size_t>(i)] =
            static_cast<std::uint8_t>(static_cast<std::uint8_t>(magnitude) ^ mask);
    result.size = count + 1;
    return result;
}

Int128 decodeDecimal(const void* data, int size) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    if (size < 1 || size > 17) {
        throw DatabaseError(ErrorCategory::Corrupt, "HY000", 0, "A stored decimal number is damaged.");
    }
    const int tag = bytes[0];
    const bool negative = tag < 0x80;
    const int count = negative ? 0x80 - tag : tag - 0x80;
    if (count != size - 1) {
        throw DatabaseError(ErrorCategory::Corrupt, "HY000", 0, "A stored decimal number is damaged.");
    }
    const std::uint8_t mask = negative ? 0xFF : 0;
    UInt128 magnitude = 0;
    for (int i = 1; i <= count; ++i)
        magnitude = (magnitude << 8) | static_cast<std::uint8_t>(bytes[i] ^ mask);
    return negative ? static_cast<Int128>(-magnitude) : static_cast<Int128>(magnitude);
}

}  // namespace basalt::embedded
