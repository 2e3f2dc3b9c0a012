#include <editline/readline.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "cli/line_editor.h"
#include "host/services/platform/user_folders.h"

namespace basalt::cli {

namespace {

constexpr int keptEntries = 1000;

}  // namespace

LineEditor::LineEditor(const std::string& historyName) : history_(host::userDataFolder() / historyName) {
    using_history();
    stifle_history(keptEntries);
    read_history(history_.c_str());
}

LineEditor::~LineEditor() {
    std::error_code ignored;
    std::filesystem::create_directories(history_.parent_path(), ignored);
    // A history that cannot be written is no reason to stop anybody.
    write_history(history_.c_str());
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
