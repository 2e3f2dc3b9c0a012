#include "engines/embedded/catalog/system_view.h"

#include <algorithm>
#include <map>

#include "ado/names.h"
#include "engines/embedded/ast/definition_statement.h"
#include "engines/embedded/catalog/data_type.h"
#include "engines/embedded/catalog/included_columns.h"
#include "engines/embedded/catalog/index_condition.h"
#include "engines/embedded/parser/parser.h"

namespace basalt::embedded {

namespace {

using Rows = std::vector<std::vector<Value>>;

SqlType integer() {
    return SqlType::of(TypeKind::Int);
}
SqlType bit() {
    return SqlType::of(TypeKind::Bit);
}
SqlType name() {
    return SqlType::text(TypeKind::NVarChar, 128);
}
SqlType shortText() {
    return SqlType::text(TypeKind::NVarChar, 60);
}
SqlType kindText() {
    return SqlType::text(TypeKind::Char, 2);
}

struct TypeNumber {
    TypeKind kind;
    int number;
    int bytes;
    int precision;
};

// What SQL Server numbers its types by, and what it says of their size.
constexpr TypeNumber kTypes[] = {
    {TypeKind::UniqueIdentifier, 36, 16, 0},
    {TypeKind::Date, 40, 3, 10},
    {TypeKind::Time, 41, 5, 16},
    {TypeKind::DateTime2, 42, 8, 27},
    {TypeKind::TinyInt, 48, 1, 3},
    {TypeKind::SmallInt, 52, 2, 5},
    {TypeKind::Int, 56, 4, 10},
    {TypeKind::SmallDateTime, 58, 4, 16},
    {TypeKind::Real, 59, 4, 24},
    {TypeKind::Money, 60, 8, 19},
    {TypeKind::DateTime, 61, 8, 23},
    {TypeKind::Float, 62, 8, 53},
    {TypeKind::Bit, 104, 1, 1},
    {TypeKind::Decimal, 106, 17, 38},
    {TypeKind::SmallMoney, 122, 4, 10},
    {TypeKind::BigInt, 127, 8, 19},
    {TypeKind::VarBinary, 165, 0, 0},
    {TypeKind::VarChar, 167, 0, 0},
    {TypeKind::Binary, 173, 0, 0},
    {TypeKind::Char, 175, 0, 0},
    {TypeKind::NVarChar, 231, 0, 0},
    {TypeKind::NChar, 239, 0, 0},
};

const TypeNumber& numberOf(const SqlType& type) {
    return *std::find_if(std::begin(kTypes), std::end(kTypes),
                         [&](const TypeNumber& each) { return each.kind == type.kind; });
}

}  // namespace

int bytesOf(const SqlType& type) {
    if (type.kind == TypeKind::Decimal)
        return type.precision <= 9 ? 5 : type.precision <= 19 ? 9 : type.precision <= 28 ? 13 : 17;
    if (!type.isText() && !type.isBinary()) return numberOf(type).bytes;
    if (type.kind == TypeKind::UniqueIdentifier) return 16;
    if (type.length == kMaxLength) return -1;
    return type.isUnicode() ? type.length * 2 : type.length;
}

namespace {

int precisionOf(const SqlType& type) {
    return type.kind == TypeKind::Decimal ? type.precision : numberOf(type).precision;
}

Value number(std::int64_t value) {
    return value;
}
Value text(std::string_view value) {
    return std::string(value);
}

// What is described: the database, or the temporary tables of the session as tempdb.
struct Part {
    Catalog& catalog;
    SqliteDatabase& database;
    bool temporary = false;

    [[nodiscard]] std::string schema() const { return temporary ? "temp." : "main."; }
    [[nodiscard]] std::string name() const { return temporary ? "tempdb" : "basalt"; }
};

std::vector<std::string> temporaryNames(SqliteDatabase& database) {
    // Those that stand behind variables begin with #@.
    SqliteStatement list = database.prepare(
        "SELECT name FROM temp.sqlite_schema WHERE type = 'table' AND name GLOB '[#]*' AND name NOT GLOB '[#]@*' "
        "ORDER BY name");
    std::vector<std::string> names;
    while (list.step())
        names.push_back(list.textAt(0));
    return names;
}

std::vector<Table> tablesOf(const Part& part) {
    std::vector<Table> tables;
    for (const std::string& each : part.temporary ? temporaryNames(part.database) : part.catalog.tableNames()) {
        if (const Table* table = part.catalog.table(each)) tables.push_back(*table);
    }
    return tables;
}

std::vector<Module> modulesOf(const Part& part) {
    if (part.temporary) return {};
    std::vector<std::string> names;
    SqliteStatement list = part.database.prepare("SELECT shown_name FROM main.basalt_module ORDER BY name");
    while (list.step())
        names.push_back(list.textAt(0));
    std::vector<Module> modules;
    for (const std::string& each : names) {
        if (const Module* module = part.catalog.module(each)) modules.push_back(*module);
    }
    return modules;
}

struct Kind {
    const char* code;
    const char* description;
};

Kind kindOf(const Module& module) {
    if (module.kind == ModuleKind::View) return {"V ", "VIEW"};
    if (module.kind == ModuleKind::Procedure) return {"P ", "SQL_STORED_PROCEDURE"};
    const ast::Batch batch = parse(module.text);
    using Returns = ast::CreateFunctionStatement::Returns;
    const auto* function = ast::tryAs<ast::CreateFunctionStatement>(batch.statements.front().get());
    if (function != nullptr && function->returns == Returns::InlineTable)
        return {"IF", "SQL_INLINE_TABLE_VALUED_FUNCTION"};
    if (function != nullptr && function->returns == Returns::TableVariable) return {"TF", "SQL_TABLE_VALUED_FUNCTION"};
    return {"FN", "SQL_SCALAR_FUNCTION"};
}

Kind constraintKind(std::string_view code) {
    if (code == "PK") return {"PK", "PRIMARY_KEY_CONSTRAINT"};
    if (code == "UQ") return {"UQ", "UNIQUE_CONSTRAINT"};
    if (code == "F") return {"F ", "FOREIGN_KEY_CONSTRAINT"};
    return {"C ", "CHECK_CONSTRAINT"};
}

// One object: name, number, number of what it belongs to, kind.
struct Object {
    std::string name;
    std::string parent;
    Kind kind;
};

std::vector<Object> objectsOf(const Part& part) {
    std::vector<Object> objects;
    for (const Table& table : tablesOf(part))
        objects.push_back({table.name, {}, {"U ", "USER_TABLE"}});
    for (const Module& module : modulesOf(part))
        objects.push_back({module.name, {}, kindOf(module)});
    SqliteStatement constraints =
        part.database.prepare("SELECT name, table_name, kind FROM " + part.schema() +
                              "basalt_constraint WHERE kind IN ('PK', 'UQ', 'F', 'C') ORDER BY name");
    while (constraints.step())
        objects.push_back({constraints.textAt(0), constraints.textAt(1), constraintKind(constraints.textAt(2))});
    SqliteStatement defaults = part.database.prepare("SELECT name, table_name FROM " + part.schema() +
                                                     "basalt_default WHERE kind = 'D' AND name <> '' ORDER BY name");
    while (defaults.step())
        objects.push_back({defaults.textAt(0), defaults.textAt(1), {"D ", "DEFAULT_CONSTRAINT"}});
    return objects;
}

const std::vector<SystemColumn> kObjectColumns = {
    {"name", name()},     {"object_id", integer()},   {"schema_id", integer()}, {"parent_object_id", integer()},
    {"type", kindText()}, {"type_desc", shortText()}, {"is_ms_shipped", bit()},
};

// The same with more columns behind them.
std::vector<SystemColumn> objectColumnsWith(std::initializer_list<SystemColumn> more) {
    std::vector<SystemColumn> columns = kObjectColumns;
    columns.insert(columns.end(), more);
    return columns;
}

std::vector<Value> objectRow(std::string_view name, std::int64_t id, std::int64_t parent, Kind kind) {
    return {text(name), number(id), number(1), number(parent), text(kind.code), text(kind.description), false};
}

Rows objectRows(const Part& part, std::initializer_list<std::string_view> kinds) {
    Rows rows;
    for (const Object& object : objectsOf(part)) {
        if (kinds.size() > 0 && std::find(kinds.begin(), kinds.end(), object.kind.code) == kinds.end()) continue;
        const std::int64_t parent = object.parent.empty() ? 0 : Catalog::objectNumber(object.parent);
        rows.push_back(objectRow(object.name, Catalog::objectNumber(object.name), parent, object.kind));
    }
    return rows;
}

// The server keeps expressions in parentheses.
Value expression(const std::string& written) {
    return text("(" + written + ")");
}

// What belongs to a column: its default (kind D) or the expression that computes it (kind C).
struct ColumnText {
    std::string name;  // of the default; empty when it was given none
    std::string definition;
};

std::map<std::string, ColumnText> columnTexts(const Part& part, const Table& table, std::string_view kind) {
    std::map<std::string, ColumnText> texts;
    SqliteStatement list = part.database.prepare("SELECT column_name, name, definition FROM " + part.schema() +
                                                 "basalt_default WHERE table_name = ?1 AND kind = ?2");
    list.bind(1, std::string_view(foldName(table.name)));
    list.bind(2, kind);
    while (list.step())
        texts[foldName(list.textAt(0))] = {list.textAt(1), list.textAt(2)};
    return texts;
}

// Visits each column that has such a text: with its number and its text.
template <typename Visit>
void eachColumnText(const Part& part, const Table& table, std::string_view kind, Visit visit) {
    const auto texts = columnTexts(part, table, kind);
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const auto found = texts.find(foldName(table.columns[i].name));
        if (found != texts.end()) visit(i, found->second);
    }
}

// Defaults without a name are objects as well.
std::int64_t defaultNumber(const Table& table, const TableColumn& column, const ColumnText& its) {
    return Catalog::objectNumber(its.name.empty() ? "default of " + table.name + "." + column.name : its.name);
}

Rows defaultRows(const Part& part) {
    Rows rows;
    for (const Table& table : tablesOf(part)) {
        eachColumnText(part, table, "D", [&](std::size_t i, const ColumnText& its) {
            std::vector<Value> row = objectRow(its.name, defaultNumber(table, table.columns[i], its),
                                               Catalog::objectNumber(table.name), {"D ", "DEFAULT_CONSTRAINT"});
            row.push_back(number(static_cast<std::int64_t>(i) + 1));
            row.push_back(expression(its.definition));
            rows.push_back(std::move(row));
        });
    }
    return rows;
}

Rows computedRows(const Part& part) {
    Rows rows;
    for (const Table& table : tablesOf(part)) {
        eachColumnText(part, table, "C", [&](std::size_t i, const ColumnText& its) {
            rows.push_back({number(Catalog::objectNumber(table.name)), text(table.columns[i].name),
                            number(static_cast<std::int64_t>(i) + 1), expression(its.definition)});
        });
    }
    return rows;
}

Rows checkRows(const Part& part) {
    Rows rows;
    SqliteStatement list = part.database.prepare("SELECT name, table_name, definition FROM " + part.schema() +
                                                 "basalt_constraint WHERE kind = 'C' ORDER BY name");
    while (list.step()) {
        const std::string name = list.textAt(0);
        std::vector<Value> row =
            objectRow(name, Catalog::objectNumber(name), Catalog::objectNumber(list.textAt(1)), constraintKind("C"));
        row.push_back(expression(list.textAt(2)));
        rows.push_back(std::move(row));
    }
    return rows;
}

Rows columnRows(const Part& part) {
    Rows rows;
    for (const Table& table : tablesOf(part)) {
        std::vector<std::int64_t> defaults(table.columns.size());
        eachColumnText(part, table, "D", [&](std::size_t i, const ColumnText& its) {
            defaults[i] = defaultNumber(table, table.columns[i], its);
        });
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const TableColumn& column = table.columns[i];
            rows.push_back({number(Catalog::objectNumber(table.name)), text(column.name),
                            number(static_cast<std::int64_t>(i) + 1), number(numberOf(column.type).number),
                            number(numberOf(column.type).number), number(bytesOf(column.type)),
                            number(precisionOf(column.type)), number(column.type.scale), column.nullable,
                            column.identity, column.computed, number(defaults[i])});
        }
    }
    return rows;
}

Rows identityRows(const Part& part) {
    Rows rows;
    for (const Table& table : tablesOf(part)) {
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            if (!table.columns[i].identity) continue;
            const IdentityState state = part.catalog.identity(table.name);
            rows.push_back({number(Catalog::objectNumber(table.name)), text(table.columns[i].name),
                            number(static_cast<std::int64_t>(i) + 1), number(state.seed), number(state.increment),
                            state.last ? Value(number(*state.last)) : Value(Null{})});
        }
    }
    return rows;
}

Rows typeRows() {
    Rows rows;
    for (const TypeNumber& type : kTypes) {
        const SqlType sample = SqlType::of(type.kind);
        rows.push_back({text(sample.baseName()), number(type.number), number(type.number), number(4),
                        number(type.bytes == 0 ? 8000 : type.bytes), number(type.precision), number(sample.scale), true,
                        false});
    }
    return rows;
}

struct StoredIndex {
    std::string table, name;
    bool unique = false, primary = false, constraint = false;
    std::vector<std::string> columns;
    std::vector<bool> descending;  // for each of them
    std::vector<std::string> included;
    std::string condition;  // of a filtered one
};

std::vector<StoredIndex> indexesOf(const Part& part) {
    std::vector<StoredIndex> indexes;
    for (const Table& table : tablesOf(part)) {
        for (const Index& index : table.uniques)
            indexes.push_back({table.name, index.name, true, index.primary, index.constraint, index.columns,
                               index.descending,
                               includedColumns(part.database, table, storedIndexName(table.name, index.name)),
                               indexCondition(part.database, table, storedIndexName(table.name, index.name))});
        SqliteStatement others =
            part.database.prepare("SELECT name FROM pragma_index_list(" + sqlText(table.name) + ", " +
                                  sqlText(table.schemaName()) + ") WHERE NOT \"unique\" ORDER BY name");
        while (others.step()) {
            const std::string stored = others.textAt(0);
            StoredIndex index{.table = table.name,
                              .name = shownIndexName(table.name, stored),
                              .columns = {},
                              .descending = {},
                              .included = includedColumns(part.database, table, stored),
                              .condition = indexCondition(part.database, table, stored)};
            SqliteStatement columns =
                part.database.prepare("SELECT name, \"desc\" FROM pragma_index_xinfo(" + sqlText(stored) + ", " +
                                      sqlText(table.schemaName()) + ") WHERE key ORDER BY seqno");
            while (columns.step()) {
                index.columns.push_back(columns.textAt(0));
                index.descending.push_back(columns.integerAt(1) != 0);
            }
            // They stand behind the key.
            index.columns.resize(index.columns.size() - index.included.size());
            indexes.push_back(std::move(index));
        }
    }
    return indexes;
}

// The number of an index within its table: 1 for the clustered one.
template <typename Visit>
void eachIndex(const std::vector<StoredIndex>& indexes, Visit visit) {
    std::string table;
    int next = 2;
    for (const StoredIndex& index : indexes) {
        if (index.table != table) {
            table = index.table;
            next = 2;
        }
        visit(index, index.primary ? 1 : next++);
    }
}

Rows indexRows(const Part& part) {
    Rows rows;
    eachIndex(indexesOf(part), [&](const StoredIndex& index, int ordinal) {
        rows.push_back({number(Catalog::objectNumber(index.table)), text(index.name), number(ordinal),
                        number(index.primary ? 1 : 2), text(index.primary ? "CLUSTERED" : "NONCLUSTERED"), index.unique,
                        index.primary, index.constraint && !index.primary, !index.condition.empty(),
                        index.condition.empty() ? Value(Null{}) : expression(index.condition)});
    });
    return rows;
}

Rows indexColumnRows(const Part& part) {
    Rows rows;
    eachIndex(indexesOf(part), [&](const StoredIndex& index, int ordinal) {
        const Table* table = part.catalog.table(index.table);
        std::int64_t position = 0;
        const auto add = [&](const std::string& column, bool descending, bool included) {
            ++position;
            rows.push_back({number(Catalog::objectNumber(index.table)), number(ordinal), number(position),
                            number(table->find(column) + 1), number(included ? 0 : position), descending, included});
        };
        for (std::size_t i = 0; i < index.columns.size(); ++i)
            add(index.columns[i], index.descending[i], false);
        for (const std::string& column : index.included)
            add(column, false, true);
    });
    return rows;
}

Rows parameterRows(const Part& part) {
    Rows rows;
    for (const Module& module : modulesOf(part)) {
        const ast::Batch batch = parse(module.text);
        const ast::Statement* statement = batch.statements.front().get();
        const auto* procedure = ast::tryAs<ast::CreateProcedureStatement>(statement);
        const auto* function = ast::tryAs<ast::CreateFunctionStatement>(statement);
        if (procedure == nullptr && function == nullptr) continue;
        const auto add = [&](std::string_view parameter, std::int64_t position, const ast::DataType& written,
                             bool output, bool hasDefault) {
            const SqlType type = dataTypeOf(written, batch.text);
            rows.push_back({number(Catalog::objectNumber(module.name)), text(parameter), number(position),
                            number(numberOf(type).number), number(numberOf(type).number), number(bytesOf(type)),
                            number(precisionOf(type)), number(type.scale), output, hasDefault});
        };
        if (function != nullptr && function->returns == ast::CreateFunctionStatement::Returns::Scalar)
            add("", 0, function->type, true, false);
        const auto& parameters = procedure != nullptr ? procedure->parameters : function->parameters;
        for (std::size_t i = 0; i < parameters.size(); ++i)
            add(parameters[i].name, static_cast<std::int64_t>(i) + 1, parameters[i].type, parameters[i].output, false);
    }
    return rows;
}

Rows foreignKeyRows(const Part& part) {
    Rows rows;
    for (const Table& table : tablesOf(part)) {
        SqliteStatement list =
            part.database.prepare("SELECT id, \"table\", on_delete, on_update FROM pragma_foreign_key_list(" +
                                  sqlText(table.name) + ", 'main') WHERE seq = 0 ORDER BY id");
        for (std::size_t i = 0; list.step() && i < table.foreignKeys.size(); ++i) {
            const auto action = [](const std::string& name) {
                return name == "CASCADE" ? 1 : name == "SET NULL" ? 2 : name == "SET DEFAULT" ? 3 : 0;
            };
            const auto actionName = [](std::string name) {
                std::replace(name.begin(), name.end(), ' ', '_');
                return text(name);
            };
            const std::string& key = table.foreignKeys[i].name;
            rows.push_back({text(key), number(Catalog::objectNumber(key)), number(1),
                            number(Catalog::objectNumber(table.name)), text("F "), text("FOREIGN_KEY_CONSTRAINT"),
                            number(Catalog::objectNumber(list.textAt(1))), number(action(list.textAt(2))),
                            number(action(list.textAt(3))), actionName(list.textAt(2)), actionName(list.textAt(3)),
                            false});
        }
    }
    return rows;
}

Rows foreignKeyColumnRows(const Part& part) {
    Rows rows;
    for (const Table& table : tablesOf(part)) {
        for (const ForeignKey& key : table.foreignKeys) {
            const Table* other = part.catalog.table(key.referencedTable);
            for (std::size_t i = 0; i < key.columns.size() && other != nullptr; ++i) {
                rows.push_back({number(Catalog::objectNumber(key.name)), number(static_cast<std::int64_t>(i) + 1),
                                number(Catalog::objectNumber(table.name)), number(table.find(key.columns[i]) + 1),
                                number(Catalog::objectNumber(other->name)),
                                number(other->find(key.referenced[i]) + 1)});
            }
        }
    }
    return rows;
}

// This database alone. A transaction reads it as it was when it first read.
Rows databaseRows() {
    return {{text("basalt"), number(kDatabaseNumber), number(1), text("ON"), true}};
}

Rows moduleRows(const Part& part) {
    Rows rows;
    for (const Module& module : modulesOf(part))
        rows.push_back({number(Catalog::objectNumber(module.name)), text(module.text)});
    return rows;
}

Rows informationTables(const Part& part) {
    Rows rows;
    for (const Table& table : tablesOf(part))
        rows.push_back({text(part.name()), text("dbo"), text(table.name), text("BASE TABLE")});
    for (const Module& module : modulesOf(part)) {
        if (module.kind == ModuleKind::View)
            rows.push_back({text(part.name()), text("dbo"), text(module.name), text("VIEW")});
    }
    return rows;
}

Rows informationColumns(const Part& part) {
    Rows rows;
    for (const Table& table : tablesOf(part)) {
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const TableColumn& column = table.columns[i];
            const SqlType& type = column.type;
            const bool sized = (type.isText() && type.kind != TypeKind::UniqueIdentifier) || type.isBinary();
            const bool counted = type.isNumber() && type.kind != TypeKind::Bit;
            rows.push_back({text(part.name()), text("dbo"), text(table.name), text(column.name),
                            number(static_cast<std::int64_t>(i) + 1),
                            column.defaultText.empty() ? Value(Null{}) : text("(" + column.defaultText + ")"),
                            text(column.nullable ? "YES" : "NO"), text(type.baseName()),
                            sized ? number(type.length) : Value(Null{}),
                            counted ? number(precisionOf(type)) : Value(Null{}),
                            counted && !type.isFloat() ? number(type.scale) : Value(Null{}),
                            type.isDate() ? number(type.kind == TypeKind::DateTime ? 3 : type.scale) : Value(Null{})});
        }
    }
    return rows;
}

Rows informationRoutines(const Part& part) {
    Rows rows;
    for (const Module& module : modulesOf(part)) {
        if (module.kind == ModuleKind::View) continue;
        rows.push_back({text(part.name()), text("dbo"), text(module.name),
                        text(module.kind == ModuleKind::Procedure ? "PROCEDURE" : "FUNCTION"), text(module.text)});
    }
    return rows;
}

using Provider = Rows (*)(const Part&);

struct Entry {
    SystemView view;
    Provider rows;
};

const std::vector<Entry>& entries() {
    static const std::vector<Entry> list = [] {
        const SqlType catalogName = name();
        const SqlType smallest = SqlType::of(TypeKind::TinyInt);
        const SqlType small = SqlType::of(TypeKind::SmallInt);
        const SqlType longText = SqlType::text(TypeKind::NVarChar, kMaxLength);
        std::vector<Entry> made = {
            {{"sys.objects", kObjectColumns}, [](const Part& p) { return objectRows(p, {}); }},
            {{"sys.tables", kObjectColumns}, [](const Part& p) { return objectRows(p, {"U "}); }},
            {{"sys.views", kObjectColumns}, [](const Part& p) { return objectRows(p, {"V "}); }},
            {{"sys.procedures", kObjectColumns}, [](const Part& p) { return objectRows(p, {"P "}); }},
            {{"sys.key_constraints", kObjectColumns},
             [](const Part& p) {
                 return objectRows(p, {"PK", "UQ"});
             }},
            {{"sys.check_constraints", objectColumnsWith({{"definition", longText}})}, checkRows},
            {{"sys.default_constraints",
              objectColumnsWith({{"parent_column_id", integer()}, {"definition", longText}})},
             defaultRows},
            {{"sys.computed_columns",
              {{"object_id", integer()}, {"name", name()}, {"column_id", integer()}, {"definition", longText}}},
             computedRows},
            {{"sys.databases",
              {{"name", name()},
               {"database_id", integer()},
               {"snapshot_isolation_state", smallest},
               {"snapshot_isolation_state_desc", shortText()},
               {"is_read_committed_snapshot_on", bit()}}},
             [](const Part&) { return databaseRows(); }},
            {{"sys.columns",
              {{"object_id", integer()},
               {"name", name()},
               {"column_id", integer()},
               {"system_type_id", smallest},
               {"user_type_id", integer()},
               {"max_length", small},
               {"precision", smallest},
               {"scale", smallest},
               {"is_nullable", bit()},
               {"is_identity", bit()},
               {"is_computed", bit()},
               {"default_object_id", integer()}}},
             columnRows},
            {{"sys.identity_columns",
              {{"object_id", integer()},
               {"name", name()},
               {"column_id", integer()},
               {"seed_value", SqlType::of(TypeKind::BigInt)},
               {"increment_value", SqlType::of(TypeKind::BigInt)},
               {"last_value", SqlType::of(TypeKind::BigInt)}}},
             identityRows},
            {{"sys.types",
              {{"name", name()},
               {"system_type_id", smallest},
               {"user_type_id", integer()},
               {"schema_id", integer()},
               {"max_length", small},
               {"precision", smallest},
               {"scale", smallest},
               {"is_nullable", bit()},
               {"is_user_defined", bit()}}},
             [](const Part&) { return typeRows(); }},
            {{"sys.schemas", {{"name", name()}, {"schema_id", integer()}, {"principal_id", integer()}}},
             [](const Part&) {
                 return Rows{{text("dbo"), number(1), number(1)}};
             }},
            {{"sys.indexes",
              {{"object_id", integer()},
               {"name", name()},
               {"index_id", integer()},
               {"type", smallest},
               {"type_desc", shortText()},
               {"is_unique", bit()},
               {"is_primary_key", bit()},
               {"is_unique_constraint", bit()},
               {"has_filter", bit()},
               {"filter_definition", longText}}},
             indexRows},
            {{"sys.index_columns",
              {{"object_id", integer()},
               {"index_id", integer()},
               {"index_column_id", integer()},
               {"column_id", integer()},
               {"key_ordinal", smallest},
               {"is_descending_key", bit()},
               {"is_included_column", bit()}}},
             indexColumnRows},
            {{"sys.parameters",
              {{"object_id", integer()},
               {"name", name()},
               {"parameter_id", integer()},
               {"system_type_id", smallest},
               {"user_type_id", integer()},
               {"max_length", small},
               {"precision", smallest},
               {"scale", smallest},
               {"is_output", bit()},
               {"has_default_value", bit()}}},
             parameterRows},
            {{"sys.foreign_keys",
              {{"name", name()},
               {"object_id", integer()},
               {"schema_id", integer()},
               {"parent_object_id", integer()},
               {"type", kindText()},
               {"type_desc", shortText()},
               {"referenced_object_id", integer()},
               {"delete_referential_action", smallest},
               {"update_referential_action", smallest},
               {"delete_referential_action_desc", shortText()},
               {"update_referential_action_desc", shortText()},
               {"is_disabled", bit()}}},
             foreignKeyRows},
            {{"sys.foreign_key_columns",
              {{"constraint_object_id", integer()},
               {"constraint_column_id", integer()},
               {"parent_object_id", integer()},
               {"parent_column_id", integer()},
               {"referenced_object_id", integer()},
               {"referenced_column_id", integer()}}},
             foreignKeyColumnRows},
            {{"sys.sql_modules", {{"object_id", integer()}, {"definition", longText}}}, moduleRows},
            {{"INFORMATION_SCHEMA.TABLES",
              {{"TABLE_CATALOG", catalogName},
               {"TABLE_SCHEMA", name()},
               {"TABLE_NAME", name()},
               {"TABLE_TYPE", SqlType::text(TypeKind::VarChar, 10)}}},
             informationTables},
            {{"INFORMATION_SCHEMA.COLUMNS",
              {{"TABLE_CATALOG", catalogName},
               {"TABLE_SCHEMA", name()},
               {"TABLE_NAME", name()},
               {"COLUMN_NAME", name()},
               {"ORDINAL_POSITION", integer()},
               {"COLUMN_DEFAULT", SqlType::text(TypeKind::NVarChar, 4000)},
               {"IS_NULLABLE", SqlType::text(TypeKind::VarChar, 3)},
               {"DATA_TYPE", name()},
               {"CHARACTER_MAXIMUM_LENGTH", integer()},
               {"NUMERIC_PRECISION", smallest},
               {"NUMERIC_SCALE", integer()},
               {"DATETIME_PRECISION", small}}},
             informationColumns},
            {{"INFORMATION_SCHEMA.ROUTINES",
              {{"ROUTINE_CATALOG", catalogName},
               {"ROUTINE_SCHEMA", name()},
               {"ROUTINE_NAME", name()},
               {"ROUTINE_TYPE", shortText()},
               {"ROUTINE_DEFINITION", longText}}},
             informationRoutines},
        };
        return made;
    }();
    return list;
}

}  // namespace

const SystemView* systemView(const ast::ObjectName& name) {
    if (name.parts.size() < 2) return nullptr;
    const std::string schema = name.schema();
    if (!sameName(schema, "sys") && !sameName(schema, "INFORMATION_SCHEMA")) return nullptr;
    const std::string wanted = schema + "." + name.last();
    for (const Entry& entry : entries()) {
        if (sameName(entry.view.name, wanted)) return &entry.view;
    }
    return nullptr;
}

Rows systemRows(std::string_view name, Catalog& catalog, SqliteDatabase& database) {
    const bool temporary = name.starts_with(kTemporaryPart);
    if (temporary) name.remove_prefix(kTemporaryPart.size());
    // The engine's own tables come with the first temporary one.
    if (temporary && temporaryNames(database).empty()) return {};
    for (const Entry& entry : entries()) {
        if (entry.view.name == name) return entry.rows({catalog, database, temporary});
    }
    return {};
}

std::string typeName(std::int64_t number) {
    const auto found = std::find_if(std::begin(kTypes), std::end(kTypes),
                                    [&](const TypeNumber& each) { return each.number == number; });
    return found == std::end(kTypes) ? std::string() : std::string(SqlType::of(found->kind).baseName());
}

std::string objectName(std::int64_t number, Catalog& catalog, SqliteDatabase& database) {
    for (const Object& object : objectsOf({catalog, database})) {
        if (Catalog::objectNumber(object.name) == number) return object.name;
    }
    return {};
}

}  // namespace basalt::embedded
