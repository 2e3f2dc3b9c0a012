#include "ado/names.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace basalt {

namespace {

constexpr char foldAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

constexpr bool isAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

void appendUtf8(std::string& out, UChar32 c) {
    uint8_t buffer[U8_MAX_LENGTH];
    int32_t length = 0;
    U8_APPEND_UNSAFE(buffer, length, c);
    out.append(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(length));
}

}  // namespace

std::string foldName(std::string_view name) {
    std::string folded;
    folded.reserve(name.size());
    const auto* const bytes = reinterpret_cast<const uint8_t*>(name.data());
    const auto length = static_cast<int32_t>(name.size());
    for (int32_t i = 0; i < length;) {
        const char lead = name[static_cast<std::size_t>(i)];
        if (isAscii(lead)) {
            folded += foldAscii(lead);
            ++i;
            continue;
        }
        const int32_t start = i;
        UChar32 c = 0;
        U8_NEXT(bytes, i, length, c);
        if (c < 0) {
            folded.append(name.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(i - start)));
        } else {
            appendUtf8(folded, u_foldCase(c, U_FOLD_CASE_DEFAULT));
        }
    }
    return folded;
}

bool sameName(std::string_view a, std::string_view b) {
    const std::size_t shorter = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < shorter; ++i) {
        if (a[i] == b[i] && isAscii(a[i])) continue;
        if (!isAscii(a[i]) || !isAscii(b[i])) return a == b || foldName(a) == foldName(b);
        if (foldAscii(a[i]) != foldAscii(b[i])) return false;
    }
    return a.size() == b.size();
}

std::string quotedName(std::string_view name) {
    std::string quoted = "[";
    for (const char c : name) {
        quoted += c;
        if (c == ']') quoted += ']';
    }
    quoted += ']';
    return quoted;
}

}  // namespace basalt
