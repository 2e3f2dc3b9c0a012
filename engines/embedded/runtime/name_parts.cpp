#include "engines/embedded/runtime/name_parts.h"

namespace basalt::embedded {

std::vector<std::string> nameParts(std::string_view name) {
    std::vector<std::string> parts(1);
    char open = 0;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const char c = name[i];
        if (open != 0) {
            const char close = open == '[' ? ']' : '"';
            if (c != close) {
                parts.back() += c;
            } else if (i + 1 < name.size() && name[i + 1] == close) {
                parts.back() += name[++i];
            } else {
                open = 0;
            }
        } else if (c == '[' || c == '"') {
            open = c;
        } else if (c == '.') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

}  // namespace basalt::embedded
