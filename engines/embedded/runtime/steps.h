// Calls written behind their first argument: x -> t_step('t_replace', a, b) is t_replace(x, a, b).
//
// SQLite's parser keeps a hundred things open at a time, and calls inside each other use that up soon. Operators that
// follow one another take no room.
#pragma once

#include <cstddef>
#include <string_view>

#include "engines/embedded/runtime/function_support.h"

namespace basalt::embedded {

// Remembers a function that steps may name; one of the name and count of arguments is the same in all databases.
void knowStep(std::string_view name, int count, ScalarFunction function, NullRule nulls);
[[nodiscard]] bool isStep(std::string_view name, std::size_t count);

void addSteps(SqliteDatabase& database);

}  // namespace basalt::embedded
