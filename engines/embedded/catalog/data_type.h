// The meaning of a type as a declaration names it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "engines/embedded/ast/data_type.h"
#include "engines/embedded/runtime/sql_type.h"

namespace basalt::embedded {

// DatabaseError 243 for a type that does not exist; `text` is the batch that it stands in.
[[nodiscard]] SqlType dataTypeOf(const ast::DataType& type, std::string_view text);

[[nodiscard]] bool isKnownType(const ast::DataType& type);
// What error 2715 says of a type that is not.
[[nodiscard]] std::string unknownTypeText(const ast::DataType& type, std::size_t position);
// The same as dataTypeOf for the column, parameter or variable of that position, counted from 1; DatabaseError 2715
// then.
[[nodiscard]] SqlType declaredTypeOf(const ast::DataType& type, std::size_t position, std::string_view text);

}  // namespace basalt::embedded
