#include "cli/text_table.h"

#include <algorithm>

#include "engines/embedded/lexer/error_context.h"

namespace basalt::cli {

namespace {

// U+200E, a left-to-right mark: between two right-to-left cells it keeps a terminal from swapping them.
constexpr const char* leftToRight = "\u200E";

// Plain ASCII needs no marks, which would be copied along with it.
bool isForeign(const std::string& text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

std::string oneLine(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    }
    return text;
}

}  // namespace

TextTable::TextTable(std::vector<Title> titles) : titles_(std::move(titles)) {
    for (Title& title : titles_) {
        title.text = oneLine(std::move(title.text));
        widths_.push_back(embedded::displayWidth(title.text));
    }
}

void TextTable::add(std::vector<std::string> cells) {
    cells.resize(titles_.size());
    for (std::size_t c = 0; c < cells.size(); ++c) {
        cells[c] = oneLine(std::move(cells[c]));
        widths_[c] = std::max(widths_[c], embedded::displayWidth(cells[c]));
    }
    lines_.push_back(std::move(cells));
}

std::size_t TextTable::width() const {
    std::size_t width = 0;
    for (const std::size_t column : widths_)
        width += column + (width > 0 ? 3 : 0);
    return width;
}

void TextTable::writeBlocks(std::ostream& out) const {
    std::size_t titleWidth = 0;
    for (const Title& title : titles_)
        titleWidth = std::max(titleWidth, embedded::displayWidth(title.text));
    for (std::size_t l = 0; l < lines_.size(); ++l) {
        const std::string head = "--- " + std::to_string(l + 1) + " ";
        out << head << std::string(titleWidth + 2 > head.size() ? titleWidth + 2 - head.size() : 0, '-') << '\n';
        for (std::size_t c = 0; c < titles_.size(); ++c) {
            out << titles_[c].text << std::string(titleWidth - embedded::displayWidth(titles_[c].text), ' ')
                << (isForeign(titles_[c].text) ? leftToRight : "") << ": " << lines_[l][c] << '\n';
        }
    }
}

void TextTable::write(std::ostream& out, bool terminal, const std::string& indent) const {
    std::vector<std::string> titles;
    for (const Title& title : titles_)
        titles.push_back(title.text);
    out << indent;
    writeLine(out, terminal, titles);
    out << indent;
    for (std::size_t c = 0; c < titles_.size(); ++c)
        out << (c > 0 ? "-+-" : "") << std::string(widths_[c], '-');
    out << '\n';
    for (const std::vector<std::string>& line : lines_) {
        out << indent;
        writeLine(out, terminal, line);
    }
}

void TextTable::writeLine(std::ostream& out, bool terminal, const std::vector<std::string>& cells) const {
    for (std::size_t c = 0; c < cells.size(); ++c) {
        const std::string padding(widths_[c] - embedded::displayWidth(cells[c]), ' ');
        if (c > 0) out << " | ";
        out << (titles_[c].right ? padding : "") << cells[c];
        if (terminal && isForeign(cells[c])) out << leftToRight;
        if (!titles_[c].right && c + 1 < cells.size()) out << padding;
    }
    out << '\n';
}

}  // namespace basalt::cli
