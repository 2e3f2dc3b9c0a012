// A type as a declaration names it; the binder gives it its meaning.
//
//   nvarchar(50), decimal(23, 9), varchar(max), dbo.TCode
#pragma once

#include <optional>

#include "engines/embedded/ast/name.h"

namespace basalt::embedded::ast {

struct DataType {
    ObjectName name;
    std::optional<int> length;  // the first number: length, precision
    std::optional<int> scale;   // the second
    bool max = false;           // (max)
    SourceRange range;
};

}  // namespace basalt::embedded::ast
