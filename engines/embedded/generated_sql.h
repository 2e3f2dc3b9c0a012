// What the engine makes of a query, for those who want to look at it or to measure it.
//
//   const auto database = openDatabase("shop.basalt", {});
//   generatedSql(*database, "select Name from Units where Code = 3")    SELECT s1."Name" COLLATE TSQL AS c1 FROM ...
//   queryPlan(*database, "select Name from Units where Code = 3")       {"SEARCH s1 USING PRIMARY KEY (Code=?)"}
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

// Of one SELECT statement without variables and markers, with its literals in place. Throws DatabaseError.
[[nodiscard]] std::string generatedSql(SqliteDatabase& database, std::string_view query);

// How SQLite carries it out: the steps as it names them, outer ones before those inside of them.
[[nodiscard]] std::vector<std::string> queryPlan(SqliteDatabase& database, std::string_view query);

}  // namespace basalt::embedded
