// LEN, SUBSTRING, REPLACE, CHARINDEX, LIKE and their kin. Positions and lengths count UTF-16 units.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "engines/embedded/lexer/utf8.h"
#include "engines/embedded/runtime/collation.h"
#include "engines/embedded/runtime/decimal_math.h"
#include "engines/embedded/runtime/function_support.h"
#include "engines/embedded/runtime/like.h"
#include "engines/embedded/runtime/name_parts.h"
#include "engines/embedded/runtime/sql_error.h"
#include "engines/embedded/runtime/utf16.h"

namespace basalt::embedded {

namespace {

// Texts that REPLICATE and SPACE may build at most: those of the bounded types.
constexpr std::int64_t kLongestBounded = 8000;

std::string_view rightTrimmed(std::string_view text) {
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

std::string_view leftTrimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    return text;
}

std::int64_t units(std::string_view text) {
    return static_cast<std::int64_t>(utf16Length(text));
}

// The byte offset of `needle` in `text` from `from` on by the rules of comparison, npos when it is not there.
// `matched` is how many bytes of the text it covers, which may differ from the needle's where case folds differ.
std::size_t find(std::string_view text, std::string_view needle, std::size_t from, TextOrder order,
                 std::size_t& matched) {
    for (std::size_t start = from; start <= text.size();) {
        std::size_t t = start;
        std::size_t n = 0;
        while (n < needle.size() && t < text.size()) {
            std::size_t nextT = t;
            std::size_t nextN = n;
            if (!sameCharacter(nextCharacter(text, nextT), nextCharacter(needle, nextN), order)) break;
            t = nextT;
            n = nextN;
        }
        if (n == needle.size()) {
            matched = t - start;
            return start;
        }
        if (start == text.size()) break;
        static_cast<void>(nextCharacter(text, start));
    }
    return std::string_view::npos;
}

// The order that an expression's COLLATE asks for is the last argument, when there is one.
TextOrder orderAt(const Call& call, int index) {
    return index < call.count() ? static_cast<TextOrder>(call.integer(index)) : TextOrder::Database;
}

void length(Call& call) {
    call.result(units(rightTrimmed(call.text(0))));
}

void left(Call& call) {
    if (call.integer(1) < 0) refuseLength();
    call.result(utf16Substring(call.text(0), 0, call.integer(1)));
}

// t_cut(text, longest length)
void cut(Call& call) {
    const std::string_view text = call.text(0);
    const std::int64_t longest = call.integer(1);
    // No text has more units than bytes.
    call.result(static_cast<std::int64_t>(text.size()) <= longest ? text : utf16Substring(text, 0, longest));
}

void right(Call& call) {
    if (call.integer(1) < 0) throwSqlError(536, "Invalid length parameter passed to the right function.");
    const std::string_view text = call.text(0);
    const std::int64_t count = std::min(call.integer(1), units(text));
    call.result(utf16Substring(text, units(text) - count, count));
}

void substring(Call& call) {
    if (call.integer(2) < 0) refuseLength();
    call.result(utf16Substring(call.text(0), call.integer(1) - 1, call.integer(2)));
}

// REPLACE(text, needle, replacement[, order])
void replace(Call& call) {
    const std::string_view text = call.text(0);
    const std::string_view needle = call.text(1);
    const std::string_view replacement = call.text(2);
    if (needle.empty()) return call.result(text);
    std::string result;
    std::size_t at = 0;
    std::size_t matched = 0;
    for (std::size_t found; (found = find(text, needle, at, orderAt(call, 3), matched)) != std::string_view::npos;) {
        requireRoom(result.size() + (found - at) + replacement.size());
        result.append(text.substr(at, found - at)).append(replacement);
        at = found + matched;
    }
    requireRoom(result.size() + (text.size() - at));
    result.append(text.substr(at));
    call.result(std::string_view(result));
}

// CHARINDEX(needle, text[, start[, order]])
void charIndex(Call& call) {
    const std::string_view needle = call.text(0);
    const std::string_view text = call.text(1);
    const std::int64_t start = call.count() > 2 ? std::max<std::int64_t>(call.integer(2), 1) : 1;
    if (needle.empty() || start > units(text)) return call.result(std::int64_t{0});
    std::size_t matched = 0;
    const std::size_t found = find(text, needle, utf16Offset(text, start - 1), orderAt(call, 3), matched);
    call.result(found == std::string_view::npos ? std::int64_t{0} : units(text.substr(0, found)) + 1);
}

// t_stuff(text, start, count, insert, longest length of the result in characters, 0 for unbounded)
void stuff(Call& call) {
    if (call.isNull(0) || call.isNull(1) || call.isNull(2)) return call.resultNull();
    const std::string_view text = call.text(0);
    const std::int64_t start = call.integer(1);
    const std::int64_t count = call.integer(2);
    if (start < 1 || start > units(text) || count < 0) return call.resultNull();
    const std::string_view insert = call.isNull(3) ? std::string_view() : call.text(3);
    requireRoom(text.size() + insert.size());
    std::string result(utf16Substring(text, 0, start - 1));
    result += insert;
    result += text.substr(utf16Offset(text, start - 1 + std::min(count, units(text))));
    const std::int64_t longest = call.integer(4);
    if (longest > 0 && static_cast<std::int64_t>(result.size()) > longest && units(result) > longest)
        throwSqlError(8152, "String or binary data would be truncated.");
    call.result(std::string_view(result));
}

// t_replicate(text, count, longest length of the result in characters, 0 for unbounded)
void replicate(Call& call) {
    const std::int64_t count = call.integer(1);
    if (count < 0) return call.resultNull();
    const std::string_view text = call.text(0);
    if (text.empty()) return call.result(text);
    const std::int64_t longest = call.integer(2);
    std::int64_t times = count;
    if (longest > 0) times = std::min(times, longest / std::max<std::int64_t>(1, units(text)) + 1);
    requireRoom(static_cast<std::size_t>(std::min<std::int64_t>(times, kLongestValue + 1)) * text.size());
    std::string result;
    result.reserve(text.size() * static_cast<std::size_t>(times));
    for (std::int64_t i = 0; i < times; ++i)
        result += text;
    call.result(longest > 0 ? utf16Substring(result, 0, longest) : std::string_view(result));
}

void space(Call& call) {
    if (call.integer(0) < 0) return call.resultNull();
    const std::string blanks(static_cast<std::size_t>(std::min(call.integer(0), kLongestBounded)), ' ');
    call.result(std::string_view(blanks));
}

void reverse(Call& call) {
    const std::string_view text = call.text(0);
    std::string result(text.size(), '\0');
    std::size_t end = text.size();
    for (std::size_t offset = 0; offset < text.size();) {
        const std::size_t begin = offset;
        static_cast<void>(nextCharacter(text, offset));
        end -= offset - begin;
        text.copy(result.data() + end, offset - begin, begin);
    }
    call.result(std::string_view(result));
}

// Digits with the given count behind the point; halves go away from zero.
std::string fixedText(double value, std::int64_t decimals) {
    const long double unit = std::pow(10.0L, static_cast<long double>(decimals));
    const long double scaled = static_cast<long double>(value) * unit;
    char buffer[400];
    const bool exact = std::fabs(scaled) < 1e18L;
    const int size = std::snprintf(buffer, sizeof buffer, "%.*Lf", static_cast<int>(decimals),
                                   exact ? std::round(scaled) / unit : static_cast<long double>(value));
    return std::string(buffer, static_cast<std::size_t>(size));
}

// STR(float, length, decimals)
void str(Call& call) {
    const std::int64_t width = call.integer(1);
    const std::int64_t decimals = std::min<std::int64_t>(call.integer(2), 16);
    if (width <= 0 || decimals < 0) return call.resultNull();
    std::string text = fixedText(call.real(0), decimals);
    const std::size_t point = std::min(text.find('.'), text.size());
    if (static_cast<std::int64_t>(point) > width) {
        text.assign(static_cast<std::size_t>(width), '*');
    } else if (static_cast<std::int64_t>(text.size()) > width) {
        // Decimals give way to the length, properly rounded.
        const std::int64_t kept = std::max<std::int64_t>(0, width - static_cast<std::int64_t>(point) - 1);
        text = fixedText(call.real(0), kept);
    }
    if (static_cast<std::int64_t>(text.size()) < width) {
        text.insert(0, static_cast<std::size_t>(width) - text.size(), ' ');
    }
    call.result(std::string_view(text));
}

void character(Call& call) {
    const std::int64_t code = call.integer(0);
    if (code < 0 || code > call.integer(1)) return call.resultNull();
    // Half of a surrogate pair has no form in UTF-8.
    const bool isHalf = code >= 0xD800 && code <= 0xDFFF;
    std::string text;
    appendCharacter(text, isHalf ? U'\uFFFD' : static_cast<char32_t>(code));
    call.result(std::string_view(text));
}

void codeOf(Call& call) {
    const std::string_view text = call.text(0);
    if (text.empty()) return call.resultNull();
    std::size_t offset = 0;
    const char32_t code = nextCharacter(text, offset);
    // The first UTF-16 unit of the character.
    call.result(static_cast<std::int64_t>(code > 0xFFFF ? 0xD7C0 + (code >> 10) : code));
}

// t_parsename(name, which part from the right)
void parseName(Call& call) {
    constexpr std::size_t kMostParts = 4;
    constexpr std::int64_t kLongestPart = 128;
    const std::vector<std::string> parts = nameParts(call.text(0));
    const std::int64_t which = call.integer(1);
    if (which < 1 || parts.size() > kMostParts || which > static_cast<std::int64_t>(parts.size()))
        return call.resultNull();
    const std::string& part = parts[parts.size() - static_cast<std::size_t>(which)];
    const bool tooLong = std::ranges::any_of(parts, [](const std::string& each) { return units(each) > kLongestPart; });
    if (tooLong || part.empty()) return call.resultNull();
    call.result(std::string_view(part));
}

void quoteName(Call& call) {
    const std::string_view quote = call.count() > 1 ? call.text(1) : "[";
    const std::string_view text = call.text(0);
    if (units(text) > 128 || quote.empty()) return call.resultNull();
    char open = quote[0];
    char close = open;
    if (open == '[' || open == ']') {
        open = '[';
        close = ']';
    } else if (open == '(' || open == ')') {
        open = '(';
        close = ')';
    } else if (open == '<' || open == '>') {
        open = '<';
        close = '>';
    } else if (open == '{' || open == '}') {
        open = '{';
        close = '}';
    } else if (open != '\'' && open != '"' && open != '`') {
        return call.resultNull();
    }
    std::string result(1, open);
    for (const char c : text) {
        result += c;
        if (c == close) result += c;
    }
    result += close;
    call.result(std::string_view(result));
}

// t_like(text, pattern, escape or '', whether Unicode + 2 * order)
void like(Call& call) {
    const std::string_view escape = call.text(2);
    char32_t mark = 0;
    if (!escape.empty()) {
        std::size_t offset = 0;
        mark = nextCharacter(escape, offset);
        if (offset != escape.size()) {
            throwSqlError(
                506, "The invalid escape character \"" + std::string(escape) + "\" was specified in a LIKE predicate.");
        }
    }
    const std::int64_t how = call.integer(3);
    call.result(
        std::int64_t{matchesLike(call.text(0), call.text(1), mark, (how & 1) != 0, static_cast<TextOrder>(how >> 1))});
}

// t_datalength(x, type)
void dataLength(Call& call) {
    const SqlType type = call.type(1);
    switch (type.storage()) {
        case Storage::Text:
            if (type.kind == TypeKind::UniqueIdentifier) return call.result(std::int64_t{16});
            return call.result(units(call.text(0)) * (type.isUnicode() ? 2 : 1));
        case Storage::Blob:
            return call.result(static_cast<std::int64_t>(sqlite3_value_bytes(call.raw(0))));
        default:
            break;
    }
    switch (type.kind) {
        case TypeKind::Bit:
        case TypeKind::TinyInt:
            return call.result(std::int64_t{1});
        case TypeKind::SmallInt:
            return call.result(std::int64_t{2});
        case TypeKind::Date:
            return call.result(std::int64_t{3});
        case TypeKind::Int:
        case TypeKind::SmallMoney:
        case TypeKind::Real:
        case TypeKind::SmallDateTime:
            return call.result(std::int64_t{4});
        case TypeKind::Decimal: {
            const int digits = type.precision;
            return call.result(std::int64_t{digits <= 9 ? 5 : digits <= 19 ? 9 : digits <= 28 ? 13 : 17});
        }
        default:
            return call.result(std::int64_t{8});
    }
}

void isNumeric(Call& call) {
    if (call.isNull(0)) return call.result(std::int64_t{0});
    std::string_view text = rightTrimmed(leftTrimmed(call.text(0)));
    if (text.empty()) return call.result(std::int64_t{0});
    if ((text.front() == '+' || text.front() == '-' || text.front() == '$')) text.remove_prefix(1);
    bool digits = false;
    bool point = false;
    bool exponent = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c >= '0' && c <= '9') {
            digits = true;
        } else if (c == '.' && !point && !exponent) {
            point = true;
        } else if (c == ',' && !exponent) {
            continue;
        } else if ((c == 'e' || c == 'E' || c == 'd' || c == 'D') && digits && !exponent && i + 1 < text.size()) {
            exponent = true;
            if (text[i + 1] == '+' || text[i + 1] == '-') ++i;
            if (i + 1 == text.size()) digits = false;
        } else {
            return call.result(std::int64_t{0});
        }
    }
    // A lone sign, point or separator is an amount of money to the server.
    call.result(std::int64_t{digits || !exponent});
}

}  // namespace

namespace {

// A text as XML holds it.
void escapeXml(Call& call) {
    std::string result;
    for (const char c : call.text(0)) {
        requireRoom(result.size());
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '\r':
                result += "&#x0D;";
                break;
            default:
                result += c;
        }
    }
    call.result(std::string_view(result));
}

// The text of XML that escapeXml and tags were written into: all of it, or where the second argument is true the first
// piece that stands outside of all elements, NULL when there is none.
void textOfXml(Call& call) {
    static constexpr std::array<std::pair<std::string_view, char>, 4> kEscapes = {
        {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&#x0D;", '\r'}}};
    const std::string_view xml = call.text(0);
    const bool first = call.integer(1) != 0;
    std::string result;
    result.reserve(xml.size());
    int depth = 0;
    for (std::size_t at = 0; at < xml.size();) {
        if (xml[at] == '<') {
            if (first && !result.empty()) break;
            depth += xml.substr(at).starts_with("</") ? -1 : 1;
            at = std::min(xml.find('>', at), xml.size() - 1) + 1;
            continue;
        }
        const auto* const escape = std::ranges::find_if(
            kEscapes, [&](const auto& candidate) { return xml.substr(at).starts_with(candidate.first); });
        const bool escaped = escape != kEscapes.end();
        if (!first || depth == 0) result += escaped ? escape->second : xml[at];
        at += escaped ? escape->first.size() : 1;
    }
    if (first && result.empty()) return call.resultNull();
    call.result(std::string_view(result));
}

}  // namespace

void addTextFunctions(SqliteDatabase& database) {
    addFunction(database, "t_xml", 1, escapeXml);
    addFunction(database, "t_xml_text", 2, textOfXml);
    addFunction(database, "t_len", 1, length);
    addFunction(database, "t_datalength", 2, dataLength);
    addFunction(database, "t_upper", 1, [](Call& call) { call.result(std::string_view(upperCase(call.text(0)))); });
    addFunction(database, "t_lower", 1, [](Call& call) { call.result(std::string_view(lowerCase(call.text(0)))); });
    addFunction(database, "t_ltrim", 1, [](Call& call) { call.result(leftTrimmed(call.text(0))); });
    addFunction(database, "t_rtrim", 1, [](Call& call) { call.result(rightTrimmed(call.text(0))); });
    addFunction(database, "t_trim", 1, [](Call& call) { call.result(leftTrimmed(rightTrimmed(call.text(0)))); });
    addFunction(database, "t_left", 2, left);
    addFunction(database, "t_cut", 2, cut);
    addFunction(database, "t_right", 2, right);
    addFunction(database, "t_substring", 3, substring);
    addFunction(database, "t_replace", 3, replace);
    addFunction(database, "t_replace", 4, replace);
    addFunction(database, "t_charindex", -1, charIndex);
    for (const int count : {2, 3}) {
        addFunction(database, "t_patindex", count, [](Call& call) {
            call.result(std::int64_t{patternIndex(call.text(0), call.text(1), orderAt(call, 2))});
        });
    }
    addFunction(database, "t_stuff", 5, stuff, NullRule::Pass);
    addFunction(database, "t_replicate", 3, replicate);
    addFunction(database, "t_space", 1, space);
    addFunction(database, "t_reverse", 1, reverse);
    addFunction(database, "t_str", 3, str);
    addFunction(database, "t_char", 2, character);
    addFunction(database, "t_code", 1, codeOf);
    addFunction(database, "t_quotename", -1, quoteName);
    addFunction(database, "t_parsename", 2, parseName);
    addFunction(database, "t_like", 4, like);
    addFunction(database, "t_isnumeric", 1, isNumeric, NullRule::Pass);
}

}  // namespace basalt::embedded
