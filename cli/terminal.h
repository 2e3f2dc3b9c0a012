// The terminal, or whatever stands in for it.
#pragma once

#include <cstddef>

namespace basalt::cli {

// Before the first output: text is UTF-8.
void prepareTerminal();
[[nodiscard]] bool inputIsTerminal();
[[nodiscard]] bool outputIsTerminal();
// Columns of the terminal that the output goes to; 0 when it goes elsewhere.
[[nodiscard]] std::size_t outputColumns();

}  // namespace basalt::cli
