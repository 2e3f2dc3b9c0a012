// A file or a print that could not be made; the text is Persian and meant for the user.
#pragma once

#include <stdexcept>

namespace basalt::host {

class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The options of the workstation, likewise.
class OptionsError : public OutputError {
public:
    using OutputError::OutputError;
};

}  // namespace basalt::host
