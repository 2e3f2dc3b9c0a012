// An order in which the objects of a database can be made: each behind those that it needs.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "ado/schema.h"

namespace basalt::host {

struct DefinitionOrder {
    struct Item {
        const TableSchema* table = nullptr;  // one of the two
        const ModuleSchema* module = nullptr;
    };

    std::vector<Item> items;
    // References that close a circle of tables and can be made only when all the tables are there, with their rows.
    std::set<const ForeignKeySchema*> late;
};

// Points into the schema. Procedures come last: they find what they need when they run.
[[nodiscard]] DefinitionOrder definitionOrder(const DatabaseSchema& schema);

}  // namespace basalt::host
