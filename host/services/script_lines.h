// The lines of a script file, in UTF-8 whatever Unicode it was stored in.
//
//   ScriptLines lines(stream);
//   for (std::string line; lines.next(line);) ...
//
// Editors on Windows store scripts as UTF-16 with a mark at the beginning, or as UTF-8 with one. Without a mark a
// script is UTF-8. Each line is given as soon as it has been read, so that a program can be on the other side of a
// pipe.
#pragma once

#include <istream>
#include <optional>
#include <string>

namespace basalt::host {

class ScriptLines {
public:
    // `script` must be open as binary, and outlive this.
    explicit ScriptLines(std::istream& script) : script_(script) {}

    // The next line with its line break, which the last one may lack; false at the end. UsageError when a script in
    // UTF-16 is not well-formed.
    [[nodiscard]] bool next(std::string& line);

private:
    enum class Encoding { Utf8, Utf16Little, Utf16Big };

    // Reads the mark, if there is one. Bytes that turned out to be none are left in `line`.
    void begin(std::string& line);
    [[nodiscard]] bool nextUtf8(std::string& line);
    [[nodiscard]] bool nextUtf16(std::string& line);
    // nullopt at the end of the script.
    [[nodiscard]] std::optional<char16_t> nextUnit();

    std::istream& script_;
    bool begun_ = false;
    Encoding encoding_ = Encoding::Utf8;
};

}  // namespace basalt::host
