// Lines from a person at a terminal, with editing and a history that lasts from run to run.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace basalt::cli {

class LineEditor {
public:
    // The history is a file of that name in the user's data folder.
    explicit LineEditor(const std::string& historyName);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    // Without the line break; nullopt at the end of the input.
    [[nodiscard]] std::optional<std::string> readLine(const std::string& prompt);
    void remember(const std::string& entry);

private:
    std::filesystem::path history_;
};

}  // namespace basalt::cli
