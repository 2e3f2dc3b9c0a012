#include "ado/display_width.h"

#include <unicode/uchar.h>

namespace basalt {

std::size_t displayWidth(char32_t character) {
    const auto code = static_cast<UChar32>(character);
    switch (u_charType(code)) {
        case U_NON_SPACING_MARK:
        case U_ENCLOSING_MARK:
        case U_FORMAT_CHAR:
            return 0;
        default:
            break;
    }
    const int width = u_getIntPropertyValue(code, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

}  // namespace basalt
