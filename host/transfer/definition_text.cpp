#include "host/transfer/definition_text.h"

#include "ado/names.h"

namespace basalt::host {

namespace {

std::string columnList(const std::vector<KeyColumnSchema>& columns) {
    std::string text;
    for (const KeyColumnSchema& column : columns) {
        text += (text.empty() ? "" : ", ") + quotedName(column.name) + (column.descending ? " DESC" : "");
    }
    return "(" + text + ")";
}

std::string columnList(const std::vector<std::string>& columns) {
    std::string text;
    for (const std::string& column : columns)
        text += (text.empty() ? "" : ", ") + quotedName(column);
    return "(" + text + ")";
}

std::string columnText(const ColumnSchema& column) {
    std::string text = quotedName(column.name);
    // PERSISTED, because the values are stored; a server computes others anew whenever they are read.
    if (!column.computedText.empty())
        return text + " AS (" + column.computedText + ") PERSISTED" + (column.nullable ? "" : " NOT NULL");
    text += " " + column.type;
    if (column.identity) {
        text += " IDENTITY(" + std::to_string(column.identity->seed) + "," +
                std::to_string(column.identity->increment) + ")";
    }
    text += column.nullable ? " NULL" : " NOT NULL";
    if (!column.defaultText.empty()) {
        text += " CONSTRAINT " + quotedName(column.defaultName) + " DEFAULT " + column.defaultText;
    }
    return text;
}

std::string referenceClause(const ForeignKeySchema& reference) {
    std::string text = "CONSTRAINT " + quotedName(reference.name) + " FOREIGN KEY " + columnList(reference.columns) +
                       " REFERENCES dbo." + quotedName(reference.referencedTable) + " " +
                       columnList(reference.referencedColumns);
    if (reference.onDelete != "NO ACTION") text += " ON DELETE " + reference.onDelete;
    if (reference.onUpdate != "NO ACTION") text += " ON UPDATE " + reference.onUpdate;
    return text;
}

// Skips blanks and then the word; false, and nothing skipped, when another word is there.
bool skipWord(std::string_view& text, std::string_view word) {
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    if (begin == std::string_view::npos || !sameName(text.substr(begin, word.size()), word)) return false;
    text.remove_prefix(begin + word.size());
    return true;
}

}  // namespace

std::string tableText(const TableSchema& table, const std::vector<ForeignKeySchema>& references) {
    std::vector<std::string> lines;
    for (const ColumnSchema& column : table.columns)
        lines.push_back(columnText(column));
    for (const KeySchema& key : table.keys) {
        lines.push_back("CONSTRAINT " + quotedName(key.name) + (key.primary ? " PRIMARY KEY " : " UNIQUE ") +
                        columnList(key.columns));
    }
    for (const CheckSchema& check : table.checks)
        lines.push_back("CONSTRAINT " + quotedName(check.name) + " CHECK (" + check.text + ")");
    for (const ForeignKeySchema& reference : references)
        lines.push_back(referenceClause(reference));
    std::string text = "CREATE TABLE dbo." + quotedName(table.name) + " (\n";
    for (std::size_t i = 0; i < lines.size(); ++i)
        text += "    " + lines[i] + (i + 1 < lines.size() ? ",\n" : "\n");
    return text + ")";
}

std::string tableText(const TableSchema& table) {
    return tableText(table, table.foreignKeys);
}

std::string indexText(const TableSchema& table, const IndexSchema& index) {
    return std::string("CREATE ") + (index.unique ? "UNIQUE " : "") + "INDEX " + quotedName(index.name) + " ON dbo." +
           quotedName(table.name) + " " + columnList(index.columns) +
           (index.included.empty() ? "" : " INCLUDE " + columnList(index.included)) +
           (index.condition.empty() ? "" : " WHERE " + index.condition);
}

std::string referenceText(const TableSchema& table, const ForeignKeySchema& reference) {
    return "ALTER TABLE dbo." + quotedName(table.name) + " ADD " + referenceClause(reference);
}

std::string moduleText(const ModuleSchema& module) {
    std::string_view rest = module.text;
    if (skipWord(rest, "CREATE")) {
        if (!skipWord(rest, "OR")) return module.text;
        if (!skipWord(rest, "ALTER")) return module.text;
    } else if (!skipWord(rest, "ALTER")) {
        return module.text;
    }
    return "CREATE" + std::string(rest);
}

}  // namespace basalt::host
