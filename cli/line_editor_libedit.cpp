#include <editline/readline.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "cli/line_editor.h"
#include "host/services/platform/user_folders.h"

namespace basalt::cli {

namespace {

constexpr int keptEntries = 1000;

// The library calls functions without an argument of ours.
Completer completerInUse;
std::vector<std::string> candidates;

char* nextCandidate(const char*, int state) {
    const auto index = static_cast<std::size_t>(state);
    return index < candidates.size() ? strdup(candidates[index].c_str()) : nullptr;
}

char** complete(const char* word, int, int) {
    // Nothing else, above all no names of files.
    rl_attempted_completion_over = 1;
    try {
        candidates = completerInUse(word);
    } catch (const std::exception&) {
        // A database that cannot be asked now will say so when the statement is run.
        candidates.clear();
    }
    return candidates.empty() ? nullptr : rl_completion_matches(word, nextCandidate);
}

}  // namespace

LineEditor::LineEditor(const std::string& historyName, Completer completer)
    : history_(host::userDataFolder() / historyName) {
    completerInUse = std::move(completer);
    static char breaks[] = " \t\n,;()=<>+-*/'[]";
    rl_completer_word_break_characters = breaks;
    rl_attempted_completion_function = complete;
    using_history();
    stifle_history(keptEntries);
    read_history(history_.c_str());
}

LineEditor::~LineEditor() {
    std::error_code ignored;
    std::filesystem::create_directories(history_.parent_path(), ignored);
    // A history that cannot be written is no reason to stop anybody.
    write_history(history_.c_str());
    // Statements may hold data of the business.
    std::filesystem::permissions(history_, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write,
                                 ignored);
    completerInUse = {};
}

std::optional<std::string> LineEditor::readLine(const std::string& prompt) {
    const std::unique_ptr<char, decltype(&std::free)> line(readline(prompt.c_str()), &std::free);
    if (!line) return std::nullopt;
    return std::string(line.get());
}

void LineEditor::remember(const std::string& entry) {
    std::string line = entry;
    std::replace(line.begin(), line.end(), '\n', ' ');
    add_history(line.c_str());
}

}  // namespace basalt::cli
