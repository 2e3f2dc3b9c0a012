// Texts between the data sets (UTF-8) and ODBC's wide calls (UTF-16).
//
//   std::u16string wide = toUtf16("select N'عمده'");
#pragma once

#include <string>
#include <string_view>

#include "engines/odbc/odbc_api.h"

namespace basalt::odbc {

// DatabaseError (Conversion) when the text is not UTF-8.
[[nodiscard]] std::u16string toUtf16(std::string_view text);
// A surrogate without its other half, which a server's column may hold, becomes U+FFFD.
[[nodiscard]] std::string toUtf8(std::u16string_view text);
// The same into a text that is used again for every cell.
void toUtf8(std::u16string_view text, std::string& into);

[[nodiscard]] inline SQLWCHAR* wide(char16_t* text) {
    return reinterpret_cast<SQLWCHAR*>(text);
}
// ODBC's headers do not know const; what is passed so is only read.
[[nodiscard]] inline SQLWCHAR* wide(const std::u16string& text) {
    return wide(const_cast<char16_t*>(text.c_str()));
}

}  // namespace basalt::odbc
