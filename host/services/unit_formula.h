// Formulas that turn a quantity of a good's first unit into its second: numbers, X for the quantity, + - * / and
// parentheses.
//
//   evaluateUnitFormula("X*12", 3)       36
//   evaluateUnitFormula("(X+0.5)/6", 1)  0.25
#pragma once

#include <optional>
#include <string_view>

namespace basalt::host {

// Nullopt for an empty text, for any other text that is not such a formula, and when the result is not a finite number.
[[nodiscard]] std::optional<double> evaluateUnitFormula(std::string_view formula, double quantity);

}  // namespace basalt::host
