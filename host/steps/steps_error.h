// A steps file that cannot be read, or a step that did not find what it expected. The message begins with FILE:LINE.
#pragma once

#include <stdexcept>
#include <string>

namespace basalt::host {

class StepsError : public std::runtime_error {
public:
    StepsError(const std::string& file, int line, const std::string& message)
        : std::runtime_error(file + ":" + std::to_string(line) + ": " + message), line_(line) {}

    [[nodiscard]] int line() const noexcept { return line_; }  // from 1

private:
    int line_;
};

}  // namespace basalt::host
