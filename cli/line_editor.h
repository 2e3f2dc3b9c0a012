// Lines from a person at a terminal, with editing, completion by Tab, and a history that lasts from run to run.
//
//   LineEditor editor("sql_history", [](const std::string& word) { return namesThatBeginWith(word); });
//   while (const auto line = editor.readLine("basalt> ")) ...
#pragma once

#include <exception>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace basalt::cli {

// What the word before the cursor can become, the whole words.
using Completer = std::function<std::vector<std::string>(const std::string& word)>;

// The person has pressed Ctrl-C: what they have typed so far is to be forgotten.
class Interrupted : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "interrupted"; }
};

// One at a time: the terminal is one.
class LineEditor {
public:
    // The history is a file of that name in the user's data folder.
    LineEditor(const std::string& historyName, Completer completer);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    // Without the line break at its end; an entry of several lines that is recalled from the history comes with those
    // between them. nullopt at the end of the input. Throws Interrupted.
    [[nodiscard]] std::optional<std::string> readLine(const std::string& prompt);
    // Keeps the entry as it is, with its line breaks.
    void remember(const std::string& entry);

private:
    std::filesystem::path history_;
};

}  // namespace basalt::cli
