// Amounts between text and number, and texts inside statements.
//
//   FloatToStr_VRO(12500.5L)        "12500.5"
//   StrToFloat_VRO("۱۲٬۵۰۰٫۵")      12500.5
//   QuotedStr("O'Neil")             "'O''Neil'"
#pragma once

#include <string>
#include <string_view>

#include "ado/value.h"

namespace basalt {

// Plain fixed-point text: at most nine digits after the point (rounded half away from zero), no trailing zeros, never
// an exponent, "." whatever the locale, "0" for negative zero. A value that is not finite is a UsageError.
[[nodiscard]] std::string FloatToStr_VRO(Extended value);

// Reads the same back: optional sign, digits, optional fraction, blanks around. Persian and Arabic digits, the Arabic
// decimal separator U+066B and thousands separators (",", U+066C, U+060C) between digits of the integer part are read
// too. Any other text, the empty one included, is a DatabaseError of category Conversion that quotes it.
[[nodiscard]] Extended StrToFloat_VRO(std::string_view text);

// Null becomes the integer 0; any other value comes back as it is.
[[nodiscard]] Value VarIsNull_VRO(const Value& value);

// The text between single quotes, inner quotes doubled.
[[nodiscard]] std::string QuotedStr(std::string_view text);

// Fills "%d" and "%s" in order with the given texts ("%%" is a percent sign). A count that does not match is a
// UsageError.
[[nodiscard]] std::string Format(std::string_view pattern, std::initializer_list<std::string> arguments);

}  // namespace basalt
