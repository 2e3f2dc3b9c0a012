// How decimals stand in the database file: as blobs whose byte order is the order of the numbers.
//
// A blob holds the coefficient of one column's scale: a byte that tells sign and size (0x80 + n for n magnitude bytes
// of a positive number, 0x80 for zero, 0x80 - n for a negative one), then the magnitude, most significant byte first,
// complemented when negative. Comparison, sorting, grouping and indexes of the database work on them as they are.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "ado/decimal.h"

namespace basalt::embedded {

struct EncodedDecimal {
    std::array<std::uint8_t, 17> bytes;
    int size = 0;
};

[[nodiscard]] EncodedDecimal encodeDecimal(Int128 coefficient);

// The coefficient of an encoded decimal. Throws DatabaseError (Corrupt) for bytes that encodeDecimal never writes.
[[nodiscard]] Int128 decodeDecimal(const void* data, int size);

}  // namespace basalt::embedded
