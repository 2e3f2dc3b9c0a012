// The terminal, or whatever stands in for it.
#pragma once

namespace basalt::cli {

// Before the first output: text is UTF-8.
void prepareTerminal();
[[nodiscard]] bool inputIsTerminal();
[[nodiscard]] bool outputIsTerminal();
// True when windows can be shown.
[[nodiscard]] bool hasDisplay();

}  // namespace basalt::cli
