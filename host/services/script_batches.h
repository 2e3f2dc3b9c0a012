// Scripts of several batches, divided by lines that say only GO.
//
//   for (const std::string& batch : splitBatches(script)) session.run(batch);
//
// A GO inside a quoted text, a name in brackets or a comment is text. GO 3 has its batch run three times.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace basalt::host {

// Reads T-SQL line by line and knows which parts are code, which are quoted and which are comments.
class ScriptScanner {
public:
    enum class Part : char { Code = '.', Quoted = 'q', Comment = 'c' };

    // Takes the next line, with its line break if it has one.
    void read(std::string_view line);
    // For each byte of the last line what it is part of; quotes, brackets and comment marks belong to what they
    // enclose, the line break behind a comment is code.
    [[nodiscard]] const std::string& parts() const { return parts_; }
    // The next line begins inside a text, a name or a comment.
    [[nodiscard]] bool insideText() const { return state_ != State::Code; }

private:
    enum class State { Code, Quoted, Bracketed, DoubleQuoted, LineComment, BlockComment };

    State state_ = State::Code;
    int depth_ = 0;  // of comments
    std::string parts_;
};

// The batches of a script that comes line by line.
class BatchSplitter {
public:
    struct Batch {
        std::string text;
        std::size_t firstLine = 1;  // in the script, counted from 1
        std::size_t times = 1;      // to run it; 0 when its end said GO 0
    };

    // The batch that this line has ended. A batch of blanks is left out. UsageError as batchEnd throws it.
    [[nodiscard]] std::optional<Batch> add(std::string_view line);
    // What stands behind the last GO, once the script is at its end.
    [[nodiscard]] std::optional<Batch> finish();
    // Nothing but blanks since the last GO.
    [[nodiscard]] bool atBegin() const;
    // Passes a line that belongs to no batch. Only at the begin of one.
    void skipLine();

private:
    ScriptScanner scanner_;
    Batch current_;
    std::size_t line_ = 0;
};

// How often a line that ends a batch has it run: 1 for GO, 3 for GO 3, also with a comment behind; nullopt for any
// other line. UsageError for a number beyond int.
[[nodiscard]] std::optional<std::size_t> batchEnd(std::string_view line);

// The batches in the order in which they run, one that is repeated as often as it is.
[[nodiscard]] std::vector<std::string> splitBatches(std::string_view script);

}  // namespace basalt::host
