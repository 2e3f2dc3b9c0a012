#include "engines/embedded/catalog/object_name.h"

#include "engines/embedded/runtime/name_parts.h"

namespace basalt::embedded {

std::string objectPart(std::string_view name) {
    std::string part = nameParts(name).back();
    while (part.ends_with(' '))
        part.pop_back();
    return part;
}

std::string variableTableName(std::uint64_t number, std::string_view variable) {
    return "#@" + std::to_string(number) + std::string(variable);
}

std::string_view shownTable(std::string_view name) {
    const std::size_t at = name.starts_with("#@") ? name.find('@', 2) : std::string_view::npos;
    return at == std::string_view::npos ? name : name.substr(at);
}

std::string shownPlace(std::string_view name) {
    return (isTemporaryName(name) ? "tempdb.dbo." : "basalt.dbo.") + std::string(shownTable(name));
}

}  // namespace basalt::embedded
