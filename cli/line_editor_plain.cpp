// Where libedit is not at hand: the system's own line input, without a history and completion.
#include <iostream>

#include "cli/line_editor.h"

namespace basalt::cli {

LineEditor::LineEditor(const std::string&, Completer) {}

LineEditor::~LineEditor() = default;

std::optional<std::string> LineEditor::readLine(const std::string& prompt) {
    std::cout << prompt << std::flush;
    std::string line;
    if (!std::getline(std::cin, line)) return std::nullopt;
    return line;
}

void LineEditor::remember(const std::string&) {}

}  // namespace basalt::cli
