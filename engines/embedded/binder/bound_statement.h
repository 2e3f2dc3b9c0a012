// Statements after binding.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engines/embedded/ast/query.h"
#include "engines/embedded/binder/bound_query.h"
#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

// SELECT @v = expression: the variable that takes the column of that position, converted to its type.
struct SelectAssignment {
    std::string variable;
    SqlType from;
    SqlType to;
};

struct BoundSelectStatement {
    std::unique_ptr<BoundQuery> query;
    std::vector<SelectAssignment> assignments;  // one a column, or none at all
    std::string into;                           // SELECT ... INTO: the new table's name; empty otherwise
};

struct BoundInsert {
    const Table* table = nullptr;
    std::vector<BoundCommonTable> with;
    std::vector<std::size_t> columns;  // positions in the table
    std::vector<std::vector<BoundPtr>> rows;
    std::unique_ptr<BoundQuery> query;  // instead of rows
    std::vector<BoundPtr> values;       // with a query: one a column, over its output
    bool generatesIdentity = false;     // the last column takes the next number
    bool setsIdentity = false;          // an identity column is among the columns
    std::vector<BoundItem> returning;
    std::vector<OutputColumn> outputs;
};

struct BoundUpdate {
    const Table* table = nullptr;
    std::vector<BoundCommonTable> with;
    std::vector<std::size_t> columns;
    std::vector<BoundPtr> values;
    // Plain form: the condition on the table itself. Otherwise `rows` gives key and values of each row to change.
    BoundPtr where;
    bool oneRow = false;  // at the most
    std::string alias;
    std::unique_ptr<BoundQuery> rows;
    std::vector<BoundItem> returning;
    std::vector<OutputColumn> outputs;
    std::vector<SelectAssignment> assignments;  // from the last returned columns
    // With SET @v = expression, and with an OUTPUT that shows deleted.x or other tables: the rows in the order of their
    // key, each read when the variables have the values that the rows before it gave them. `values`, `where` on the
    // key, and `returning` then name these items by slots of Slot::Source::Row. No columns when nothing but variables
    // is set.
    std::unique_ptr<BoundQuery> byRow;
};

struct BoundDelete {
    const Table* table = nullptr;
    std::vector<BoundCommonTable> with;
    BoundPtr where;
    std::string alias;
    std::unique_ptr<BoundQuery> rows;  // the keys of the rows to delete, instead of `where`
    std::vector<BoundItem> returning;
    std::vector<OutputColumn> outputs;
    std::unique_ptr<BoundQuery> byRow;  // as in BoundUpdate, with an OUTPUT that shows other tables
};

}  // namespace basalt::embedded
