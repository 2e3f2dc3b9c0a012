#include "engines/embedded/runtime/guid.h"

#include <array>
#include <charconv>

namespace basalt::embedded {

namespace {

struct Place {
    std::size_t text;  // of the two digits
    std::size_t byte;
};

constexpr std::array<Place, 16> kPlaces = {{{0, 3},
                                            {2, 2},
                                            {4, 1},
                                            {6, 0},
                                            {9, 5},
                                            {11, 4},
                                            {14, 7},
                                            {16, 6},
                                            {19, 8},
                                            {21, 9},
                                            {24, 10},
                                            {26, 11},
                                            {28, 12},
                                            {30, 13},
                                            {32, 14},
                                            {34, 15}}};

}  // namespace

Bytes bytesOfGuid(std::string_view text) {
    Bytes bytes(kPlaces.size());
    for (const Place& place : kPlaces) {
        // Not even that of a damaged file is read beyond its end.
        if (place.text + 2 > text.size()) break;
        const char* digits = text.data() + place.text;
        std::from_chars(digits, digits + 2, bytes[place.byte], 16);
    }
    return bytes;
}

std::string guidOfBytes(const Bytes& bytes) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text = "00000000-0000-0000-0000-000000000000";
    for (const Place& place : kPlaces) {
        if (place.byte >= bytes.size()) continue;
        text[place.text] = digits[bytes[place.byte] >> 4];
        text[place.text + 1] = digits[bytes[place.byte] & 15];
    }
    return text;
}

}  // namespace basalt::embedded
