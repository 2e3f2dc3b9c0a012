// The meaning of a type as a declaration names it.
#pragma once

#include <string_view>

#include "engines/embedded/ast/data_type.h"
#include "engines/embedded/runtime/sql_type.h"

namespace basalt::embedded {

// DatabaseError 243 for a type that does not exist; `text` is the batch that it stands in.
[[nodiscard]] SqlType dataTypeOf(const ast::DataType& type, std::string_view text);

}  // namespace basalt::embedded
