#include "engines/embedded/lexer/error_context.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

#include "ado/display_width.h"
#include "engines/embedded/lexer/utf8.h"

namespace basalt::embedded {

namespace {

// Wide enough for a statement of this program, narrow enough for a message box.
constexpr std::size_t kShownColumns = 96;
constexpr std::size_t kShownBefore = 60;

// Calls visit(offset, bytes, character) for each character; stops when it answers false.
template <typename Visit>
void forEachCharacter(std::string_view text, Visit visit) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto size = static_cast<std::int32_t>(text.size());
    std::int32_t at = 0;
    while (at < size) {
        const std::int32_t begin = at;
        UChar32 character = 0;
        U8_NEXT_OR_FFFD(bytes, at, size, character);
        if (!visit(static_cast<std::size_t>(begin), static_cast<std::size_t>(at - begin), character)) return;
    }
}

bool isLineBreak(char c) {
    return c == '\n' || c == '\r';
}

std::size_t lineBegin(std::string_view text, std::size_t offset) {
    while (offset > 0 && !isLineBreak(text[offset - 1]))
        --offset;
    return offset;
}

std::size_t lineEnd(std::string_view text, std::size_t offset) {
    while (offset < text.size() && !isLineBreak(text[offset]))
        ++offset;
    return offset;
}

// Control characters would move the mark.
std::string shown(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    }
    return result;
}

// The longest prefix that takes at most `columns` columns.
std::string_view leftPart(std::string_view text, std::size_t columns) {
    std::size_t taken = 0;
    std::size_t end = 0;
    forEachCharacter(text, [&](std::size_t offset, std::size_t bytes, UChar32 character) {
        taken += basalt::displayWidth(static_cast<char32_t>(character));
        if (taken > columns) return false;
        end = offset + bytes;
        return true;
    });
    return text.substr(0, end);
}

// The shortest suffix whose removal leaves out everything beyond `columns` columns from the end.
std::string_view rightPart(std::string_view text, std::size_t columns) {
    const std::size_t width = displayWidth(text);
    if (width <= columns) return text;
    return text.substr(leftPart(text, width - columns).size());
}

}  // namespace

SourcePosition locate(std::string_view text, std::size_t offset) {
    offset = std::min(offset, text.size());
    SourcePosition position;
    for (std::size_t i = 0; i < offset; ++i) {
        // CR LF is one break, and so is each of them alone.
        if (text[i] == '\n' || (text[i] == '\r' && (i + 1 >= text.size() || text[i + 1] != '\n'))) ++position.line;
    }
    const std::size_t begin = lineBegin(text, offset);
    for (std::size_t i = begin; i < offset; ++i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U) ++position.column;
    }
    return position;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    forEachCharacter(text, [&](std::size_t, std::size_t, UChar32 character) {
        width += basalt::displayWidth(static_cast<char32_t>(character));
        return true;
    });
    return width;
}

std::string renderContext(std::string_view text, SourceRange range) {
    const std::size_t offset = std::min<std::size_t>(range.begin, text.size());
    const SourcePosition position = locate(text, offset);
    const std::size_t begin = lineBegin(text, offset);
    const std::size_t end = lineEnd(text, offset);
    const std::size_t markedEnd = std::clamp<std::size_t>(range.end, offset, end);

    const std::string lead = shown(text.substr(begin, offset - begin));
    const std::string rest = shown(text.substr(offset, end - offset));
    std::string before(rightPart(lead, kShownBefore));
    if (before.size() < lead.size()) before.insert(0, "...");
    const std::size_t indent = displayWidth(before);
    std::string after(leftPart(rest, kShownColumns - std::min(indent, kShownBefore + 3)));
    const std::size_t marked = std::max<std::size_t>(
        1, displayWidth(std::string_view(after).substr(0, std::min(after.size(), markedEnd - offset))));
    if (after.size() < rest.size()) after += "...";

    return "Line " + std::to_string(position.line) + ", column " + std::to_string(position.column) + ":\n" + before +
           after + "\n" + std::string(indent, ' ') + std::string(marked, '^');
}

DatabaseError statementError(ErrorCategory category, int number, const std::string& message, std::string_view text,
                             SourceRange range) {
    return DatabaseError(category, "42000", number, message + "\n" + renderContext(text, range), std::string(text));
}

void throwSyntaxError(int number, const std::string& message, std::string_view text, SourceRange range) {
    throw statementError(ErrorCategory::Syntax, number, message, text, range);
}

void throwUnsupported(const std::string& construct, std::string_view text, SourceRange range) {
    throwSyntaxError(40517, "Keyword or statement option '" + construct + "' is not supported in this database.", text,
                     range);
}

}  // namespace basalt::embedded
