#include "cli/statement_end.h"

#include <vector>

#include "ado/names.h"

namespace basalt::cli {

namespace {

std::vector<std::string> wordsOf(std::string_view code) {
    std::vector<std::string> words;
    std::string word;
    for (const char c : code) {
        const bool part = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
                          c == '@' || c == '#' || static_cast<unsigned char>(c) >= 0x80;
        if (part) {
            word += c;
        } else if (!word.empty()) {
            words.push_back(word);
            word.clear();
        }
    }
    if (!word.empty()) words.push_back(word);
    return words;
}

// CREATE PROCEDURE, ALTER FUNCTION, CREATE OR ALTER TRIGGER
bool definesModule(const std::vector<std::string>& words) {
    std::size_t at = 0;
    const auto is = [&](const char* word) { return at < words.size() && sameName(words[at], word); };
    if (!is("create") && !is("alter")) return false;
    ++at;
    if (is("or")) at += 2;
    return is("procedure") || is("proc") || is("function") || is("trigger");
}

// Blocks that have begun and not ended.
int openBlocks(const std::vector<std::string>& words) {
    int depth = 0;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto is = [&](std::size_t at, const char* word) {
            return at < words.size() && sameName(words[at], word);
        };
        const bool transaction = is(i + 1, "tran") || is(i + 1, "transaction");
        if ((is(i, "begin") && !transaction) || is(i, "case")) ++depth;
        if (is(i, "end")) --depth;
    }
    return depth;
}

}  // namespace

void StatementEnd::read(std::string_view line) {
    using Part = host::ScriptScanner::Part;
    scanner_.read(std::string(line) + "\n");
    const std::string& parts = scanner_.parts();
    for (std::size_t i = 0; i < line.size(); ++i) {
        const Part part = static_cast<Part>(parts[i]);
        code_ += part == Part::Code ? line[i] : ' ';
    }
    code_ += ' ';
}

bool StatementEnd::reached() const {
    if (insideText()) return false;
    const std::size_t last = code_.find_last_not_of(" \t\r");
    if (last == std::string::npos || code_[last] != ';') return false;
    const std::vector<std::string> words = wordsOf(code_);
    return !definesModule(words) && openBlocks(words) <= 0;
}

}  // namespace basalt::cli
