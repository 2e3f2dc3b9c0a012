// Reads steps files.
//
//   std::vector<Step> steps = parseSteps("click Edit_BTN\nexpect screen TCostLevel_Get_FRM\n", "rename.steps");
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/steps/step.h"

namespace basalt::host {

// One step a line; empty lines and lines that begin with # are skipped. `file` is the name that errors bear. StepsError
// with the line of the first step that is not understood.
[[nodiscard]] std::vector<Step> parseSteps(std::string_view text, const std::string& file);

}  // namespace basalt::host
