#include "engines/embedded/runtime/like.h"

#include "engines/embedded/lexer/utf8.h"
#include "engines/embedded/runtime/collation.h"
#include "engines/embedded/runtime/utf16.h"

namespace basalt::embedded {

namespace {

bool same(char32_t a, char32_t b, TextOrder order) {
    return a == b || sameCharacter(a, b, order);
}

// Matches one character against the set that starts behind '['. `at` moves behind the closing bracket.
// A set without an end matches nothing, as in SQL Server.
bool matchesSet(std::string_view pattern, std::size_t& at, char32_t character, char32_t escape, TextOrder order) {
    bool negated = false;
    if (at < pattern.size() && pattern[at] == '^') {
        negated = true;
        ++at;
    }
    bool found = false;
    bool first = true;
    while (at < pattern.size()) {
        char32_t low = nextCharacter(pattern, at);
        if (low == U']' && !first) return found != negated;
        first = false;
        if (escape != 0 && low == escape && at < pattern.size()) low = nextCharacter(pattern, at);
        if (at + 1 < pattern.size() && pattern[at] == '-' && pattern[at + 1] != ']') {
            ++at;
            const char32_t high = nextCharacter(pattern, at);
            if (compareCharacters(low, character, order) <= 0 && compareCharacters(character, high, order) <= 0)
                found = true;
        } else if (same(low, character, order)) {
            found = true;
        }
    }
    return false;
}

// Where a failed match goes back to: the last %, which takes one more character.
struct Resume {
    std::size_t pattern;
    std::size_t text;
};

bool onlyBlanks(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

}  // namespace

bool matchesLike(std::string_view text, std::string_view pattern, char32_t escape, bool unicode, TextOrder order) {
    std::size_t t = 0;
    std::size_t p = 0;
    std::optional<Resume> resume;
    while (true) {
        bool matched = false;
        std::size_t nextPattern = p;
        if (p < pattern.size()) {
            char32_t expected = nextCharacter(pattern, nextPattern);
            const bool escaped = escape != 0 && expected == escape && nextPattern < pattern.size();
            if (escaped) expected = nextCharacter(pattern, nextPattern);
            if (!escaped && expected == U'%') {
                resume = Resume{nextPattern, t};
                p = nextPattern;
                continue;
            }
            if (t < text.size()) {
                std::size_t nextText = t;
                const char32_t character = nextCharacter(text, nextText);
                if (!escaped && expected == U'_') {
                    matched = true;
                } else if (!escaped && expected == U'[') {
                    matched = matchesSet(pattern, nextPattern, character, escape, order);
                } else {
                    matched = same(expected, character, order);
                }
                if (matched) t = nextText;
            }
        } else if (t == text.size() || (!unicode && onlyBlanks(text.substr(t)))) {
            return true;
        }
        if (matched) {
            p = nextPattern;
            continue;
        }
        if (!resume || resume->text >= text.size()) return false;
        static_cast<void>(nextCharacter(text, resume->text));
        t = resume->text;
        p = resume->pattern;
    }
}

int patternIndex(std::string_view pattern, std::string_view text, TextOrder order) {
    if (!pattern.starts_with('%')) return matchesLike(text, pattern, U'\0', true, order) ? 1 : 0;
    while (pattern.starts_with('%'))
        pattern.remove_prefix(1);
    if (pattern.empty()) return 1;
    for (std::size_t offset = 0; offset <= text.size();) {
        if (matchesLike(text.substr(offset), pattern, U'\0', true, order)) {
            return static_cast<int>(utf16Length(text.substr(0, offset))) + 1;
        }
        if (offset == text.size()) break;
        static_cast<void>(nextCharacter(text, offset));
    }
    return 0;
}

}  // namespace basalt::embedded
