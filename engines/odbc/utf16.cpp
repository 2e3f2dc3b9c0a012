#include "engines/odbc/utf16.h"

#include <unicode/ustring.h>

#include "ado/error.h"

namespace basalt::odbc {

std::u16string toUtf16(std::string_view text) {
    // Never more units than bytes.
    std::u16string result(text.size(), u'\0');
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(result.data(), static_cast<std::int32_t>(result.size()), &length, text.data(),
                  static_cast<std::int32_t>(text.size()), &status);
    if (U_FAILURE(status)) {
        throw DatabaseError(ErrorCategory::Conversion, "22021", 0, "a text for the server is not valid UTF-8");
    }
    result.resize(static_cast<std::size_t>(length));
    return result;
}

void toUtf8(std::u16string_view text, std::string& into) {
    // Never more than three bytes for a unit.
    into.resize(text.size() * 3);
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(into.data(), static_cast<std::int32_t>(into.size()), &length, text.data(),
                       static_cast<std::int32_t>(text.size()), 0xFFFD, nullptr, &status);
    if (U_FAILURE(status)) {
        throw DatabaseError(ErrorCategory::Limit, "HY001", 0, "a text of the server is too long");
    }
    into.resize(static_cast<std::size_t>(length));
}

std::string toUtf8(std::u16string_view text) {
    std::string result;
    toUtf8(text, result);
    return result;
}

}  // namespace basalt::odbc
