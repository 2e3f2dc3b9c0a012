#include "cli/sql_console.h"

#include "ado/error.h"
#include "ado/names.h"
#include "host/services/numbered_error.h"
#include "host/transfer/database_dump.h"
#include "host/transfer/definition_text.h"

namespace basalt::cli {

namespace {

constexpr const char* help =
    ".tables                tables, views, procedures and functions\n"
    ".schema [NAME]         what makes an object again; all of them without a name\n"
    ".help                  this list\n"
    ".exit, .quit           ends a script or the prompt, which exit and quit do too\n"
    "Anything else is T-SQL. A line that says only GO ends a batch, GO 3 runs it three times.\n";

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

// The object's own name: without a schema, and out of its brackets.
std::string_view bareName(std::string_view name) {
    for (const std::string_view schema : {"dbo.", "[dbo]."}) {
        if (sameName(name.substr(0, schema.size()), schema)) name.remove_prefix(schema.size());
    }
    if (name.size() > 2 && name.front() == '[' && name.back() == ']') name = name.substr(1, name.size() - 2);
    return name;
}

const char* kindName(ModuleSchema::Kind kind) {
    switch (kind) {
        case ModuleSchema::Kind::View:
            return "view";
        case ModuleSchema::Kind::Procedure:
            return "procedure";
        case ModuleSchema::Kind::Function:
            return "function";
    }
    return "";
}

}  // namespace

bool SqlConsole::isCommand(std::string_view line) {
    return trimmed(line).starts_with('.');
}

bool SqlConsole::leaves(std::string_view line) {
    std::string_view word = trimmed(line);
    while (word.ends_with(';'))
        word = trimmed(word.substr(0, word.size() - 1));
    return sameName(word, ".exit") || sameName(word, ".quit");
}

const DatabaseSchema& SqlConsole::schema() {
    if (!schema_) schema_ = database_.schema();
    return *schema_;
}

void SqlConsole::run(const std::string& batch) {
    if (isCommand(batch)) return follow(trimmed(batch));
    schema_.reset();
    try {
        writer_.write(database_.session().run(batch));
    } catch (const DatabaseError& error) {
        if (error.results()) writer_.write(*error.results());
        writer_.write(error);
        throw host::numbered(error);
    }
}

void SqlConsole::follow(std::string_view line) {
    const std::size_t end = line.find_first_of(" \t;");
    const std::string_view word = line.substr(0, end);
    std::string_view rest = end == std::string_view::npos ? std::string_view() : trimmed(line.substr(end));
    while (rest.ends_with(';'))
        rest = trimmed(rest.substr(0, rest.size() - 1));
    if (sameName(word, ".schema")) return showSchema(rest);
    if (sameName(word, ".tables") && rest.empty()) return listTables();
    if (sameName(word, ".help") && rest.empty()) {
        out_ << help << std::flush;
        return;
    }
    throw UsageError("there is no command " + std::string(line) + "; .help lists them");
}

void SqlConsole::listTables() {
    RowSet rows({{.name = "Name", .type = FieldType::Text}, {.name = "Kind", .type = FieldType::Text}});
    const auto add = [&](const std::string& name, const char* kind) {
        rows.column(0).appendText(name);
        rows.column(1).appendText(kind);
        rows.finishRow();
    };
    for (const TableSchema& table : schema().tables)
        add(table.name, "table");
    for (const ModuleSchema& module : schema().modules)
        add(module.name, kindName(module.kind));
    BatchResult result;
    result.results.push_back({.rows = std::move(rows), .affectedRows = -1});
    writer_.write(result);
}

void SqlConsole::showSchema(std::string_view name) {
    if (name.empty()) return host::dumpDefinitions(schema(), out_);
    const std::string_view wanted = bareName(name);
    bool found = false;
    const auto show = [&](const std::string& text) { out_ << text << (text.ends_with('\n') ? "GO\n" : "\nGO\n"); };
    for (const TableSchema& table : schema().tables) {
        if (!sameName(table.name, wanted)) continue;
        found = true;
        show(host::tableText(table));
        for (const IndexSchema& index : table.indexes)
            show(host::indexText(table, index));
    }
    for (const ModuleSchema& module : schema().modules) {
        if (!sameName(module.name, wanted)) continue;
        found = true;
        show(host::moduleText(module));
    }
    out_.flush();
    if (!found) throw UsageError("there is no table, view, procedure or function " + std::string(name));
}

}  // namespace basalt::cli
