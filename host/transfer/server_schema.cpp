#include "host/transfer/server_schema.h"

#include <algorithm>
#include <map>

#include "ado/names.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

constexpr const char* kColumns =
    "SELECT T.name, C.name, TYPE_NAME(C.system_type_id), C.max_length, C.[precision], C.scale, C.is_nullable, "
    "CAST(I.seed_value AS bigint), CAST(I.increment_value AS bigint), D.name, D.definition, P.definition "
    "FROM sys.tables AS T JOIN sys.columns AS C ON C.object_id = T.object_id "
    "LEFT JOIN sys.identity_columns AS I ON I.object_id = C.object_id AND I.column_id = C.column_id "
    "LEFT JOIN sys.default_constraints AS D ON D.object_id = C.default_object_id "
    "LEFT JOIN sys.computed_columns AS P ON P.object_id = C.object_id AND P.column_id = C.column_id "
    "WHERE T.is_ms_shipped = 0 AND SCHEMA_NAME(T.schema_id) = N'dbo' ORDER BY T.name, C.column_id";

constexpr const char* kIndexes =
    "SELECT T.name, I.name, I.is_primary_key, I.is_unique_constraint, I.is_unique, I.filter_definition, C.name, "
    "K.is_descending_key, K.is_included_column FROM sys.tables AS T JOIN sys.indexes AS I ON I.object_id = T.object_id "
    "JOIN sys.index_columns AS K ON K.object_id = I.object_id AND K.index_id = I.index_id "
    "JOIN sys.columns AS C ON C.object_id = K.object_id AND C.column_id = K.column_id "
    "WHERE T.is_ms_shipped = 0 AND SCHEMA_NAME(T.schema_id) = N'dbo' AND I.type IN (1, 2) "
    "AND (K.key_ordinal > 0 OR K.is_included_column = 1) "
    "ORDER BY T.name, I.is_primary_key DESC, I.name, K.is_included_column, K.key_ordinal, K.index_column_id";

constexpr const char* kReferences =
    "SELECT T.name, F.name, R.name, C.name, O.name, F.delete_referential_action_desc, "
    "F.update_referential_action_desc FROM sys.foreign_keys AS F JOIN sys.tables AS T ON T.object_id = "
    "F.parent_object_id JOIN sys.tables AS R ON R.object_id = F.referenced_object_id "
    "JOIN sys.foreign_key_columns AS K ON K.constraint_object_id = F.object_id "
    "JOIN sys.columns AS C ON C.object_id = K.parent_object_id AND C.column_id = K.parent_column_id "
    "JOIN sys.columns AS O ON O.object_id = K.referenced_object_id AND O.column_id = K.referenced_column_id "
    "WHERE SCHEMA_NAME(T.schema_id) = N'dbo' ORDER BY T.name, F.name, K.constraint_column_id";

constexpr const char* kChecks =
    "SELECT T.name, C.name, C.definition FROM sys.check_constraints AS C JOIN sys.tables AS T ON T.object_id = "
    "C.parent_object_id WHERE SCHEMA_NAME(T.schema_id) = N'dbo' ORDER BY T.name, C.name";

constexpr const char* kModules =
    "SELECT O.name, O.type, M.definition FROM sys.objects AS O JOIN sys.sql_modules AS M ON M.object_id = O.object_id "
    "WHERE O.is_ms_shipped = 0 AND SCHEMA_NAME(O.schema_id) = N'dbo' AND O.type IN ('V', 'P', 'FN', 'IF', 'TF') "
    "ORDER BY O.name";

// The type as it is declared: "nvarchar(50)". Lengths of the catalog are bytes, -1 for (max).
std::string typeText(const std::string& name, std::int64_t bytes, std::int64_t precision, std::int64_t scale) {
    const auto isOneOf = [&](std::initializer_list<const char*> names) {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    const auto length = [&](std::int64_t unit) {
        return name + "(" + (bytes < 0 ? std::string("max") : std::to_string(bytes / unit)) + ")";
    };
    if (isOneOf({"nvarchar", "nchar"})) return length(2);
    if (isOneOf({"varchar", "char", "varbinary", "binary"})) return length(1);
    if (isOneOf({"decimal", "numeric"})) {
        return name + "(" + std::to_string(precision) + "," + std::to_string(scale) + ")";
    }
    if (isOneOf({"datetime2", "time", "datetimeoffset"})) return name + "(" + std::to_string(scale) + ")";
    return name;
}

// The server keeps expressions in parentheses: ((0)), ([Code]>(1)).
std::string bare(std::string text) {
    while (text.size() > 2 && text.front() == '(' && text.back() == ')') {
        int depth = 0;
        bool quoted = false;
        bool one = true;  // the first parenthesis closes at the end
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] == '\'') quoted = !quoted;
            if (quoted) continue;
            if (text[i] == '(') ++depth;
            if (text[i] == ')') --depth;
            if (depth == 0 && i + 1 < text.size()) one = false;
        }
        if (!one) break;
        text = text.substr(1, text.size() - 2);
    }
    return text;
}

class ServerSchemaReader {
public:
    explicit ServerSchemaReader(Session& session) : session_(session) {}

    DatabaseSchema read() {
        readColumns();
        readIndexes();
        readReferences();
        readChecks();
        readModules();
        sortByName();
        return std::move(schema_);
    }

private:
    TableSchema* tableAt(const RowSet& rows, std::size_t row) {
        const auto found = tables_.find(textAt(rows, 0, row));
        return found == tables_.end() ? nullptr : &schema_.tables[found->second];
    }

    void readColumns() {
        const RowSet rows = rowsOf(session_, kColumns);
        for (std::size_t r = 0; r < rows.rowCount(); ++r) {
            const std::string name = textAt(rows, 0, r);
            if (tables_.emplace(name, schema_.tables.size()).second) {
                schema_.tables.emplace_back();
                schema_.tables.back().name = name;
            }
            ColumnSchema column;
            column.name = textAt(rows, 1, r);
            column.type =
                typeText(textAt(rows, 2, r), integerAt(rows, 3, r), integerAt(rows, 4, r), integerAt(rows, 5, r));
            column.nullable = integerAt(rows, 6, r) != 0;
            if (!rows.column(7).isNull(r)) {
                column.identity = ColumnSchema::Identity{integerAt(rows, 7, r), integerAt(rows, 8, r)};
            }
            column.defaultName = textAt(rows, 9, r);
            column.defaultText = bare(textAt(rows, 10, r));
            column.computedText = bare(textAt(rows, 11, r));
            tableAt(rows, r)->columns.push_back(std::move(column));
        }
    }

    void readIndexes() {
        const RowSet rows = rowsOf(session_, kIndexes);
        for (std::size_t r = 0; r < rows.rowCount(); ++r) {
            TableSchema* table = tableAt(rows, r);
            if (!table) continue;
            const std::string name = textAt(rows, 1, r);
            const KeyColumnSchema column{textAt(rows, 6, r), integerAt(rows, 7, r) != 0};
            const bool primary = integerAt(rows, 2, r) != 0;
            if (primary || integerAt(rows, 3, r) != 0) {
                if (table->keys.empty() || table->keys.back().name != name) table->keys.push_back({name, primary, {}});
                table->keys.back().columns.push_back(column);
            } else {
                if (table->indexes.empty() || table->indexes.back().name != name) {
                    table->indexes.push_back({name, integerAt(rows, 4, r) != 0, {}, bare(textAt(rows, 5, r))});
                }
                if (integerAt(rows, 8, r) != 0) {
                    table->indexes.back().included.push_back(column.name);
                } else {
                    table->indexes.back().columns.push_back(column);
                }
            }
        }
    }

    void readReferences() {
        const RowSet rows = rowsOf(session_, kReferences);
        const auto action = [&](std::size_t column, std::size_t row) {
            std::string text = textAt(rows, column, row);
            std::replace(text.begin(), text.end(), '_', ' ');
            return text;
        };
        for (std::size_t r = 0; r < rows.rowCount(); ++r) {
            TableSchema* table = tableAt(rows, r);
            if (!table) continue;
            const std::string name = textAt(rows, 1, r);
            if (table->foreignKeys.empty() || table->foreignKeys.back().name != name) {
                table->foreignKeys.push_back({name, {}, textAt(rows, 2, r), {}, action(5, r), action(6, r)});
            }
            table->foreignKeys.back().columns.push_back(textAt(rows, 3, r));
            table->foreignKeys.back().referencedColumns.push_back(textAt(rows, 4, r));
        }
    }

    void readChecks() {
        const RowSet rows = rowsOf(session_, kChecks);
        for (std::size_t r = 0; r < rows.rowCount(); ++r) {
            if (TableSchema* table = tableAt(rows, r)) {
                table->checks.push_back({textAt(rows, 1, r), bare(textAt(rows, 2, r))});
            }
        }
    }

    void readModules() {
        const RowSet rows = rowsOf(session_, kModules);
        for (std::size_t r = 0; r < rows.rowCount(); ++r) {
            const std::string type = textAt(rows, 1, r);
            const ModuleSchema::Kind kind = type.front() == 'V'   ? ModuleSchema::Kind::View
                                            : type.front() == 'P' ? ModuleSchema::Kind::Procedure
                                                                  : ModuleSchema::Kind::Function;
            schema_.modules.push_back({textAt(rows, 0, r), kind, textAt(rows, 2, r)});
        }
    }

    // The server sorts as its collation says; the same tables are to give the same text wherever they stand.
    void sortByName() {
        const auto byName = [](const auto& a, const auto& b) { return a.name < b.name; };
        for (TableSchema& table : schema_.tables) {
            std::sort(table.keys.begin(), table.keys.end(), [](const KeySchema& a, const KeySchema& b) {
                return a.primary != b.primary ? a.primary : a.name < b.name;
            });
            std::sort(table.indexes.begin(), table.indexes.end(), byName);
            std::sort(table.foreignKeys.begin(), table.foreignKeys.end(), byName);
            std::sort(table.checks.begin(), table.checks.end(), byName);
        }
        std::sort(schema_.tables.begin(), schema_.tables.end(), byName);
        std::sort(schema_.modules.begin(), schema_.modules.end(),
                  [](const ModuleSchema& a, const ModuleSchema& b) { return foldName(a.name) < foldName(b.name); });
    }

    Session& session_;
    DatabaseSchema schema_;
    std::map<std::string, std::size_t> tables_;  // by name, places in the schema
};

}  // namespace

DatabaseSchema readServerSchema(Session& session) {
    return ServerSchemaReader(session).read();
}

}  // namespace basalt::host
