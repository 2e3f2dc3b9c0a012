#include "cli/name_completion.h"

#include <algorithm>
#include <array>
#include <set>

#include "ado/names.h"

namespace basalt::cli {

namespace {

constexpr std::array words = {
    "ALTER",  "AND",    "BEGIN",    "BETWEEN",   "CASE",     "CATCH",  "COMMIT", "COUNT",  "CREATE", "DECLARE",
    "DELETE", "DESC",   "DISTINCT", "DROP",      "ELSE",     "END",    "EXEC",   "EXISTS", "FROM",   "FUNCTION",
    "GROUP",  "HAVING", "INNER",    "INSERT",    "INTO",     "ISNULL", "JOIN",   "LEFT",   "LIKE",   "NULL",
    "ORDER",  "OUTER",  "PRINT",    "PROCEDURE", "ROLLBACK", "SELECT", "TABLE",  "THEN",   "TOP",    "TRANSACTION",
    "UNION",  "UPDATE", "VALUES",   "VIEW",      "WHEN",     "WHERE",  "WHILE",  "WITH"};

bool begins(std::string_view name, std::string_view prefix) {
    return name.size() >= prefix.size() && foldName(name).starts_with(foldName(prefix));
}

// A keyword in the case in which it was begun.
std::string inCaseOf(std::string_view keyword, std::string_view begun) {
    const bool small = std::all_of(begun.begin(), begun.end(), [](char c) { return c < 'A' || c > 'Z'; });
    return small ? foldName(keyword) : std::string(keyword);
}

std::string plainOrBracketed(const std::string& name) {
    const bool plain = std::all_of(name.begin(), name.end(), [](char c) {
        return static_cast<unsigned char>(c) >= 0x80 || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
               (c >= 'a' && c <= 'z') || c == '_' || c == '#' || c == '@' || c == '$';
    });
    return plain ? name : quotedName(name);
}

void addColumns(const TableSchema& table, std::string_view begun, const std::string& before,
                std::set<std::string>& found) {
    for (const ColumnSchema& column : table.columns) {
        if (begins(column.name, begun)) found.insert(before + plainOrBracketed(column.name));
    }
}

void addObjects(const DatabaseSchema& schema, std::string_view begun, const std::string& before,
                std::set<std::string>& found) {
    for (const TableSchema& table : schema.tables) {
        if (begins(table.name, begun)) found.insert(before + plainOrBracketed(table.name));
    }
    for (const ModuleSchema& module : schema.modules) {
        if (begins(module.name, begun)) found.insert(before + plainOrBracketed(module.name));
    }
}

char smallLetter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// What all names begin with is written as the first of them writes it, so that the editor sees how far they agree.
// Names mean the same in any case.
std::vector<std::string> inOneSpelling(std::vector<std::string> names) {
    if (names.empty()) return names;
    std::size_t common = names.front().size();
    for (const std::string& name : names) {
        std::size_t same = 0;
        while (same < common && same < name.size() && smallLetter(name[same]) == smallLetter(names.front()[same]))
            ++same;
        common = same;
    }
    const std::string beginning = names.front().substr(0, common);
    for (std::string& name : names)
        name.replace(0, common, beginning);
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

}  // namespace

std::vector<std::string> completions(std::string_view word, const DatabaseSchema& schema) {
    std::set<std::string> found;
    const std::size_t dot = word.rfind('.');
    if (dot != std::string_view::npos) {
        const std::string before(word.substr(0, dot + 1));
        const std::string_view begun = word.substr(dot + 1);
        std::string_view owner = word.substr(0, dot);
        if (sameName(owner, "dbo")) addObjects(schema, begun, before, found);
        if (const std::size_t second = owner.rfind('.'); second != std::string_view::npos) {
            owner = owner.substr(second + 1);
        }
        const auto named = [&](const TableSchema& table) { return sameName(table.name, owner); };
        const auto table = std::find_if(schema.tables.begin(), schema.tables.end(), named);
        if (table != schema.tables.end()) addColumns(*table, begun, before, found);
        // What is no table is a table's short name in the statement; which, the columns tell well enough.
        const bool shortName = table == schema.tables.end() && !owner.empty() && !sameName(owner, "dbo");
        for (const TableSchema& each : schema.tables) {
            if (shortName) addColumns(each, begun, before, found);
        }
    } else if (!word.empty()) {
        addObjects(schema, word, "", found);
        for (const TableSchema& table : schema.tables)
            addColumns(table, word, "", found);
        for (const char* keyword : words) {
            if (begins(keyword, word)) found.insert(inCaseOf(keyword, word));
        }
    }
    return inOneSpelling({found.begin(), found.end()});
}

}  // namespace basalt::cli
