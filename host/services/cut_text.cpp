#include "host/services/cut_text.h"

namespace basalt::host {

std::string cutText(const std::string& text, std::size_t length) {
    std::size_t units = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        const auto lead = static_cast<unsigned char>(text[at]);
        const std::size_t bytes = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        units += bytes == 4 ? 2 : 1;
        if (units > length) return text.substr(0, at);
        at += bytes;
    }
    return text;
}

}  // namespace basalt::host
