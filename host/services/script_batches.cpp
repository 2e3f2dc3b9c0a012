#include "host/services/script_batches.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <limits>

#include "ado/error.h"

namespace basalt::host {

namespace {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

}  // namespace

void ScriptScanner::read(std::string_view line) {
    parts_.clear();
    const auto mark = [&](Part part, std::size_t length) { parts_.append(length, static_cast<char>(part)); };
    for (std::size_t at = 0; at < line.size(); at = parts_.size()) {
        const char c = line[at];
        const auto sees = [&](std::string_view word) { return line.substr(at, word.size()) == word; };
        switch (state_) {
            case State::Code:
                if (sees("--")) {
                    state_ = State::LineComment;
                    mark(Part::Comment, 2);
                } else if (sees("/*")) {
                    state_ = State::BlockComment;
                    depth_ = 1;
                    mark(Part::Comment, 2);
                } else if (c == '\'' || c == '[' || c == '"') {
                    state_ = c == '\'' ? State::Quoted : c == '[' ? State::Bracketed : State::DoubleQuoted;
                    mark(Part::Quoted, 1);
                } else {
                    mark(Part::Code, 1);
                }
                break;
            // A doubled end mark closes and opens again, which comes to the same.
            case State::Quoted:
            case State::Bracketed:
            case State::DoubleQuoted:
                if (c == (state_ == State::Quoted ? '\'' : state_ == State::Bracketed ? ']' : '"'))
                    state_ = State::Code;
                mark(Part::Quoted, 1);
                break;
            case State::LineComment:
                if (c == '\n') state_ = State::Code;
                mark(c == '\n' ? Part::Code : Part::Comment, 1);
                break;
            case State::BlockComment:
                if (sees("/*")) {
                    ++depth_;
                    mark(Part::Comment, 2);
                } else if (sees("*/")) {
                    if (--depth_ == 0) state_ = State::Code;
                    mark(Part::Comment, 2);
                } else {
                    mark(Part::Comment, 1);
                }
                break;
        }
    }
    if (state_ == State::LineComment && !line.ends_with('\n')) state_ = State::Code;
}

std::optional<BatchSplitter::Batch> BatchSplitter::add(std::string_view line) {
    ++line_;
    // Editors on Windows mark the beginning of a file in UTF-8.
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (line_ == 1 && line.substr(0, mark.size()) == mark) line.remove_prefix(mark.size());
    const std::optional<std::size_t> times = scanner_.insideText() ? std::nullopt : batchEnd(line);
    if (times) {
        std::optional<Batch> ended = finish();
        if (ended) ended->times = *times;
        current_.firstLine = line_ + 1;
        return ended;
    }
    scanner_.read(line);
    current_.text += line;
    return std::nullopt;
}

std::optional<BatchSplitter::Batch> BatchSplitter::finish() {
    Batch ended = std::move(current_);
    current_ = {};
    if (trimmed(ended.text).empty()) return std::nullopt;
    return ended;
}

bool BatchSplitter::atBegin() const {
    return trimmed(current_.text).empty();
}

void BatchSplitter::skipLine() {
    ++line_;
    current_ = {.text = {}, .firstLine = line_ + 1};
}

std::optional<std::size_t> batchEnd(std::string_view line) {
    line = trimmed(line);
    const bool go = line.size() >= 2 && (line[0] == 'g' || line[0] == 'G') && (line[1] == 'o' || line[1] == 'O');
    if (!go) return std::nullopt;
    line.remove_prefix(2);
    // A comment may follow: GO -- the tables are there
    line = line.substr(0, line.find("--"));
    if (trimmed(line).ends_with("*/")) line = line.substr(0, line.find("/*"));
    const std::string_view number = trimmed(line);
    if (number.empty()) return 1;
    const bool apart = number.size() < line.size();
    const bool digits = std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!apart || !digits) return std::nullopt;
    int times = 0;
    if (std::from_chars(number.data(), number.data() + number.size(), times).ec != std::errc()) {
        throw UsageError("GO " + std::string(number) + ": a batch is run " +
                         std::to_string(std::numeric_limits<int>::max()) + " times at most");
    }
    return static_cast<std::size_t>(times);
}

std::vector<std::string> splitBatches(std::string_view script) {
    std::vector<std::string> batches;
    BatchSplitter splitter;
    const auto keep = [&](std::optional<BatchSplitter::Batch> batch) {
        if (batch) batches.insert(batches.end(), batch->times, batch->text);
    };
    while (!script.empty()) {
        const std::size_t end = script.find('\n');
        const std::size_t length = end == std::string_view::npos ? script.size() : end + 1;
        keep(splitter.add(script.substr(0, length)));
        script.remove_prefix(length);
    }
    keep(splitter.finish());
    return batches;
}

}  // namespace basalt::host
