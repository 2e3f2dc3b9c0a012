#include "engines/embedded/executor/definition/schema_reader.h"

#include <algorithm>

#include "ado/names.h"
#include "engines/embedded/catalog/included_columns.h"
#include "engines/embedded/catalog/null_guard.h"
#include "engines/embedded/executor/definition/table_design.h"

namespace basalt::embedded {

namespace {

// Columns in their order, with their directions, which the catalog does not keep.
std::vector<KeyColumnSchema> indexColumns(SqliteDatabase& database, const std::string& index) {
    SqliteStatement list = database.prepare("SELECT name, \"desc\" FROM pragma_index_xinfo(" + sqlText(index) +
                                            ") WHERE key AND cid >= 0 ORDER BY seqno");
    std::vector<KeyColumnSchema> columns;
    while (list.step())
        columns.push_back({list.textAt(0), list.integerAt(1) != 0});
    return columns;
}

bool sameColumns(const std::vector<DesignKeyColumn>& left, const std::vector<KeyColumnSchema>& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const auto& a, const auto& b) { return sameName(a.name, b.name); });
}

void readKeys(SqliteDatabase& database, const TableDesign& design, TableSchema& schema) {
    SqliteStatement list = database.prepare("SELECT name, origin FROM pragma_index_list(" + sqlText(design.name) +
                                            ") WHERE origin <> 'c'");
    while (list.step()) {
        KeySchema key{{}, list.textAt(1) == "pk", indexColumns(database, list.textAt(0))};
        for (const DesignKey& known : design.keys) {
            if (known.primary == key.primary && sameColumns(known.columns, key.columns)) key.name = known.name;
        }
        schema.keys.push_back(std::move(key));
    }
    std::sort(schema.keys.begin(), schema.keys.end(), [](const KeySchema& a, const KeySchema& b) {
        return a.primary != b.primary ? a.primary : a.name < b.name;
    });
}

void readIndexes(SqliteDatabase& database, const Table& table, TableSchema& schema) {
    SqliteStatement list = database.prepare("SELECT name, \"unique\" FROM pragma_index_list(" + sqlText(table.name) +
                                            ") WHERE origin = 'c' ORDER BY name");
    while (list.step()) {
        const std::string stored = list.textAt(0);
        if (isNullGuard(stored)) continue;
        IndexSchema index{shownIndexName(table.name, stored), list.integerAt(1) != 0, indexColumns(database, stored),
                          indexCondition(database, table, stored), includedColumns(database, table, stored)};
        if (!index.unique) index.columns.resize(index.columns.size() - index.included.size());
        schema.indexes.push_back(std::move(index));
    }
}

TableSchema describe(SqliteDatabase& database, Catalog& catalog, const Table& table) {
    const TableDesign design = TableDesign::of(table, database, catalog);
    TableSchema schema;
    schema.name = design.name;
    for (const DesignColumn& column : design.columns) {
        ColumnSchema shown;
        shown.name = column.name;
        shown.type = column.type.name();
        shown.nullable = column.nullable;
        if (column.identity) shown.identity = {column.identity->seed, column.identity->increment};
        shown.defaultName = column.defaultName;
        shown.defaultText = column.defaultText;
        shown.computedText = column.computedText;
        schema.columns.push_back(std::move(shown));
    }
    readKeys(database, design, schema);
    for (const DesignForeignKey& key : design.foreignKeys)
        schema.foreignKeys.push_back({key.name, key.columns, key.table, key.referenced, key.onDelete, key.onUpdate});
    for (const DesignCheck& check : design.checks)
        schema.checks.push_back({check.name, check.text});
    const auto byName = [](const auto& a, const auto& b) { return a.name < b.name; };
    std::sort(schema.foreignKeys.begin(), schema.foreignKeys.end(), byName);
    std::sort(schema.checks.begin(), schema.checks.end(), byName);
    readIndexes(database, table, schema);
    return schema;
}

ModuleSchema::Kind kindOf(std::int64_t stored) {
    switch (static_cast<ModuleKind>(stored)) {
        case ModuleKind::Procedure:
            return ModuleSchema::Kind::Procedure;
        case ModuleKind::Function:
            return ModuleSchema::Kind::Function;
        case ModuleKind::View:
            break;
    }
    return ModuleSchema::Kind::View;
}

}  // namespace

DatabaseSchema readSchema(SqliteDatabase& database, Catalog& catalog) {
    catalog.refresh();
    DatabaseSchema schema;
    for (const std::string& name : catalog.tableNames())
        schema.tables.push_back(describe(database, catalog, catalog.requireTable(name)));
    SqliteStatement modules =
        database.prepare("SELECT shown_name, kind, definition FROM main.basalt_module ORDER BY name");
    while (modules.step())
        schema.modules.push_back({modules.textAt(0), kindOf(modules.integerAt(1)), modules.textAt(2)});
    return schema;
}

}  // namespace basalt::embedded
