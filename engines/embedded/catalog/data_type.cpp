#include "engines/embedded/catalog/data_type.h"

#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

std::optional<SqlType> found(const ast::DataType& type) {
    return SqlType::parse(type.name.last(), type.length ? *type.length : -1, type.scale ? *type.scale : -1, type.max);
}

}  // namespace

bool isKnownType(const ast::DataType& type) {
    return found(type).has_value();
}

std::string unknownTypeText(const ast::DataType& type, std::size_t position) {
    return "Column, parameter, or variable #" + std::to_string(position) + ": Cannot find data type " +
           type.name.last() + ".";
}

SqlType declaredTypeOf(const ast::DataType& type, std::size_t position, std::string_view text) {
    if (const std::optional<SqlType> result = found(type)) return *result;
    throw statementError(categoryOf(2715), 2715, unknownTypeText(type, position), text, type.range);
}

SqlType dataTypeOf(const ast::DataType& type, std::string_view text) {
    const std::optional<SqlType> result = found(type);
    if (!result) {
        throw statementError(categoryOf(243), 243, "Type " + type.name.last() + " is not a defined system type.", text,
                             type.range);
    }
    return *result;
}

}  // namespace basalt::embedded
