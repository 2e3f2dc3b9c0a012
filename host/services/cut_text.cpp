#include "host/services/cut_text.h"

#include "ado/unicode.h"

namespace basalt::host {

std::string cutText(const std::string& text, std::size_t length) {
    return text.substr(0, utf16Offset(text, static_cast<std::int64_t>(length)));
}

}  // namespace basalt::host
