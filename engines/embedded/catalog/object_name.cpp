#include "engines/embedded/catalog/object_name.h"

namespace basalt::embedded {

std::string objectPart(std::string_view name) {
    std::string part;
    char open = 0;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const char c = name[i];
        if (open != 0) {
            const char close = open == '[' ? ']' : '"';
            if (c != close) {
                part += c;
            } else if (i + 1 < name.size() && name[i + 1] == close) {
                part += name[++i];
            } else {
                open = 0;
            }
        } else if (c == '[' || c == '"') {
            open = c;
        } else if (c == '.') {
            part.clear();
        } else {
            part += c;
        }
    }
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
