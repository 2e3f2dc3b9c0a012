// What SQL Server's catalog tells about tables and procedures: the statements that ask, and what their results mean.
#pragma once

#include <string>
#include <string_view>

#include "ado/session.h"

namespace basalt::odbc {

// Three results: the table's own name, its columns, its primary key.
[[nodiscard]] std::string tableQuestion(std::string_view name);
// DatabaseError (NotFound, 208) when there is no such table.
[[nodiscard]] TableInfo readTable(const BatchResult& answer, std::string_view name);

// Two results: the procedure's own name, its parameters.
[[nodiscard]] std::string procedureQuestion(std::string_view name);
// DatabaseError (NotFound, 2812) when there is no such procedure.
[[nodiscard]] ProcedureInfo readProcedure(const BatchResult& answer, std::string_view name);

}  // namespace basalt::odbc
