// What a step found instead of what it needs. The player tries again until its patience ends, because screens paint,
// focus and search a moment after the user's hand.
#pragma once

#include <stdexcept>
#include <string>

namespace basalt::host {

class StepFailure : public std::runtime_error {
public:
    StepFailure(const std::string& expected, const std::string& found)
        : std::runtime_error("expected " + expected + ", found " + found) {}
};

}  // namespace basalt::host
