// The text of a value as fields and parameters give it.
//
//   fieldText(*Decimal::parse("450000.000000000"))     "450000"
//   toText(*Decimal::parse("450000.000000000"))        "450000.000000000", as a server shows it
#pragma once

#include "ado/value.h"

namespace basalt {

// As toText, but a decimal shows only the digits that count.
[[nodiscard]] std::string fieldText(const Value& value);

}  // namespace basalt
