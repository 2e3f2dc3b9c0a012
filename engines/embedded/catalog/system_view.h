// The views that describe the database: those of the schemas sys and INFORMATION_SCHEMA that scripts ask.
//
//   const SystemView* v = systemView(name);          name as written: sys.objects, INFORMATION_SCHEMA.COLUMNS
//   systemRows(v->name, catalog, database)           its rows as they are now
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ado/value.h"
#include "engines/embedded/ast/name.h"
#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

struct SystemColumn {
    std::string_view name;
    SqlType type;
};

struct SystemView {
    std::string name;  // "sys.objects"
    std::vector<SystemColumn> columns;
};

// Null when the name is none of a system view.
[[nodiscard]] const SystemView* systemView(const ast::ObjectName& name);
// What stands before the name of a view of tempdb: it describes the temporary tables of the session.
inline constexpr std::string_view kTemporaryPart = "tempdb.";
// `name` as SystemView has it, behind kTemporaryPart or not. Rows in the order of tables and columns.
[[nodiscard]] std::vector<std::vector<Value>> systemRows(std::string_view name, Catalog& catalog,
                                                         SqliteDatabase& database);
// How many bytes a value of the type takes at most, as COL_LENGTH and max_length say it; -1 without a bound.
[[nodiscard]] int bytesOf(const SqlType& type);
// The name of a built-in type by its number, as TYPE_NAME gives it; empty when there is none.
[[nodiscard]] std::string typeName(std::int64_t number);
// What DB_ID says; the server's own databases have the numbers before.
inline constexpr int kDatabaseNumber = 5;
// The name of the object that has the number, as OBJECT_NAME gives it; empty when there is none.
[[nodiscard]] std::string objectName(std::int64_t number, Catalog& catalog, SqliteDatabase& database);

}  // namespace basalt::embedded
