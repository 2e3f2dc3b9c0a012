#include "engines/embedded/catalog/data_type.h"

#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

SqlType dataTypeOf(const ast::DataType& type, std::string_view text) {
    const std::optional<SqlType> found =
        SqlType::parse(type.name.last(), type.length ? *type.length : -1, type.scale ? *type.scale : -1, type.max);
    if (!found) {
        throw statementError(categoryOf(243), 243, "Type " + type.name.last() + " is not a defined system type.", text,
                             type.range);
    }
    return *found;
}

}  // namespace basalt::embedded
