#include "engines/embedded/parser/keyword.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace basalt::embedded {

namespace {

struct Entry {
    std::string_view spelling;
    Keyword keyword;
    bool reserved;
};

#define BASALT_RESERVED(name, spelling) Entry{spelling, Keyword::name, true},
#define BASALT_PLAIN(name, spelling) Entry{spelling, Keyword::name, false},
constexpr std::array kEntries{BASALT_SQL_KEYWORDS(BASALT_RESERVED, BASALT_PLAIN)};
#undef BASALT_RESERVED
#undef BASALT_PLAIN

static_assert(std::is_sorted(kEntries.begin(), kEntries.end(),
                             [](const Entry& a, const Entry& b) { return a.spelling < b.spelling; }));

constexpr std::size_t kLongest = [] {
    std::size_t longest = 0;
    for (const Entry& entry : kEntries)
        longest = std::max(longest, entry.spelling.size());
    return longest;
}();

// Keyword::None comes before the entries.
const Entry& entryOf(Keyword keyword) {
    return kEntries[static_cast<std::size_t>(keyword) - 1];
}

}  // namespace

Keyword findKeyword(std::string_view word) {
    if (word.empty() || word.size() > kLongest) return Keyword::None;
    std::array<char, kLongest> capitals{};
    std::transform(word.begin(), word.end(), capitals.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    const std::string_view wanted(capitals.data(), word.size());
    const auto* const found =
        std::lower_bound(kEntries.begin(), kEntries.end(), wanted,
                         [](const Entry& entry, std::string_view w) { return entry.spelling < w; });
    return found != kEntries.end() && found->spelling == wanted ? found->keyword : Keyword::None;
}

bool isReserved(Keyword keyword) {
    return keyword != Keyword::None && entryOf(keyword).reserved;
}

std::string_view spelling(Keyword keyword) {
    return keyword == Keyword::None ? std::string_view() : entryOf(keyword).spelling;
}

}  // namespace basalt::embedded
