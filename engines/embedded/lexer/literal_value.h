// What a literal says, as a value.
#pragma once

#include "ado/value.h"
#include "engines/embedded/lexer/literal.h"

namespace basalt::embedded {

[[nodiscard]] Value valueOf(const Literal& literal);

}  // namespace basalt::embedded
