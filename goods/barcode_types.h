// What a scale barcode is and holds, and what a scan is for. The numbers are stored and exchanged.
#pragma once

#include <cstdint>

namespace basalt {

enum TBarCodeFormulType : std::uint8_t {
    bftNone = 0,        // no layout fits
    bftAmount = 1,      // a good with amount, scale number and price
    bftTotalPrice = 2,  // the total of an invoice, to be compared with it
    bftConstPrice = 3,  // a price to add to a running sum, or to take off it
};

// ItemCodeType of a layout whose good field is the good's code; by every other value the good is looked up.
inline constexpr int kGoodFieldIsItsCode = 1;

enum TBarCodeUseType : std::uint8_t {
    butNone = 0,    // neither adds nor removes
    butNew = 1,     // adds a line
    butDelete = 2,  // removes a line
};

}  // namespace basalt
