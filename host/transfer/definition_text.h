// Definitions as T-SQL that makes the same object again, on either engine.
//
//   CREATE TABLE dbo.[CostLevel] (
//       [Code] int NOT NULL,
//       ...
#pragma once

#include <string>
#include <vector>

#include "ado/schema.h"

namespace basalt::host {

// CREATE TABLE with its columns, keys, checks and the given of its references.
[[nodiscard]] std::string tableText(const TableSchema& table, const std::vector<ForeignKeySchema>& references);
[[nodiscard]] std::string tableText(const TableSchema& table);
[[nodiscard]] std::string indexText(const TableSchema& table, const IndexSchema& index);
// ALTER TABLE that adds the reference to a table that is there already.
[[nodiscard]] std::string referenceText(const TableSchema& table, const ForeignKeySchema& reference);
// The CREATE statement, also when the module was last changed by ALTER or CREATE OR ALTER.
[[nodiscard]] std::string moduleText(const ModuleSchema& module);

}  // namespace basalt::host
