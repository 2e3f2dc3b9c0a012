#include "cli/sql_prompt.h"

#include <deque>
#include <iostream>

#include "ado/names.h"
#include "cli/line_editor.h"
#include "cli/name_completion.h"
#include "cli/statement_end.h"
#include "host/services/script_batches.h"

namespace basalt::cli {

namespace {

bool isWord(const std::string& line, const char* word) {
    const std::size_t first = line.find_first_not_of(" \t");
    if (first == std::string::npos) return false;
    const std::size_t last = line.find_last_not_of(" \t;");
    if (last == std::string::npos || last < first) return false;
    return sameName(std::string_view(line).substr(first, last - first + 1), word);
}

bool leaves(const std::string& line) {
    return isWord(line, "exit") || isWord(line, "quit") || SqlConsole::leaves(line);
}

bool isBlank(const std::string& text) {
    return text.find_first_not_of(" \t\r\n;") == std::string::npos;
}

struct PromptBatch {
    std::string text;
    std::size_t times = 1;
};

// How often a line that ends the batch has it run; nullopt for any other line.
std::optional<std::size_t> endOf(const std::string& line) {
    return isWord(line, "go") ? 1 : host::batchEnd(line);
}

// Lines as a person types them. An entry of several lines that is recalled counts as if they were typed again.
class PromptLines {
public:
    explicit PromptLines(LineEditor& editor) : editor_(editor) {}

    // As LineEditor::readLine.
    std::optional<std::string> next(bool first) {
        if (recalled_.empty()) {
            const std::optional<std::string> entry = editor_.readLine(first ? "basalt> " : "     -> ");
            if (!entry) return std::nullopt;
            std::size_t begin = 0;
            for (std::size_t end = 0; (end = entry->find('\n', begin)) != std::string::npos; begin = end + 1)
                recalled_.push_back(entry->substr(begin, end - begin));
            recalled_.push_back(entry->substr(begin));
        }
        std::string line = std::move(recalled_.front());
        recalled_.pop_front();
        return line;
    }

private:
    LineEditor& editor_;
    std::deque<std::string> recalled_;
};

// The batch that the next lines make; nullopt at the end of the input or when the person leaves.
std::optional<PromptBatch> readBatch(LineEditor& editor, PromptLines& lines) {
    std::string batch;
    StatementEnd end;
    while (std::optional<std::string> line = lines.next(batch.empty())) {
        if (batch.empty() && leaves(*line)) return std::nullopt;
        if (batch.empty() && SqlConsole::isCommand(*line)) {
            editor.remember(*line);
            return PromptBatch{*line};
        }
        if (batch.empty() && isBlank(*line)) continue;
        const std::optional<std::size_t> times = end.insideText() ? std::nullopt : endOf(*line);
        if (times) {
            if (isBlank(batch)) continue;
            editor.remember(batch);
            return PromptBatch{batch, *times};
        }
        if (!batch.empty()) batch += '\n';
        batch += *line;
        end.read(*line);
        if (end.reached()) {
            editor.remember(batch);
            return PromptBatch{batch};
        }
    }
    return std::nullopt;
}

}  // namespace

void promptForStatements(Session& session, SqlConsole& console) {
    LineEditor editor("sql_history", [&](const std::string& word) { return completions(word, console.schema()); });
    PromptLines lines(editor);
    std::cout << "Connected to " << session.engine() << ":" << session.location()
              << "\nA statement ends with ; at the end of a line or with a line GO. .help tells more, exit leaves.\n";
    while (true) {
        try {
            const std::optional<PromptBatch> batch = readBatch(editor, lines);
            if (!batch) break;
            for (std::size_t i = 0; i < batch->times; ++i)
                console.run(batch->text);
        } catch (const Interrupted&) {
            // The prompt begins anew.
        } catch (const std::exception& error) {
            std::cerr << error.what() << '\n';
        }
    }
    if (session.inTransaction()) {
        session.rollback();
        std::cerr << "The open transaction has been rolled back.\n";
    }
}

}  // namespace basalt::cli
