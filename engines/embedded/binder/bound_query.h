// Queries after binding. Every source has an alias of the binder's ("s1", "s2", ...) and every column of a derived
// table a name of the binder's ("c1", "c2", ...), so that no name of the user's can clash with another.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engines/embedded/binder/bound_expression.h"

namespace basalt::embedded {

struct OutputColumn {
    std::string name;  // as the result shows it; may be empty
    SqlType type;
    bool nullable = true;
    std::optional<BaseColumn> base;
    TextOrder order = TextOrder::Database;  // texts: how they compare
};

enum class SourceKind : std::uint8_t { Table, Query, CommonTable, Values, Join, Rows };

// A column of a source by its generated names.
struct SourceColumnName {
    std::string table;
    std::string name;
};

struct BoundSource {
    SourceKind kind = SourceKind::Table;
    std::string alias;                                        // of joins only for a FULL JOIN
    std::string table;                                        // Table: SQLite's name; CommonTable: its generated name
    std::unique_ptr<BoundQuery> query;                        // Query
    std::vector<std::vector<BoundPtr>> rows;                  // Values
    std::string join;                                         // Join: "JOIN", "CROSS JOIN", "LEFT JOIN", "FULL JOIN"
    std::unique_ptr<BoundSource> left, right;                 // Join
    BoundPtr condition;                                       // Join; null for a cross join
    std::vector<SourceColumnName> leftColumns, rightColumns;  // FULL JOIN: all that may be named of its sides
    // Rows: what t_rows reads (executor/row_source.h). `table` is the function or system view. With APPLY `query` is
    // worked out for each row of what stands before it, and `outer` are the aliases that it may name.
    std::string rowKind;
    std::vector<BoundPtr> arguments;
    std::vector<std::string> outer;
};

struct BoundItem {
    BoundPtr expression;
    std::string name;
};

struct BoundSelect {
    bool distinct = false;
    std::vector<BoundItem> items;
    std::unique_ptr<BoundSource> from;  // null without FROM
    BoundPtr where;
    std::vector<BoundPtr> groupBy;
    BoundPtr having;
    bool aggregated = false;
    BoundPtr limit;  // TOP inside a set operation
};

// A SELECT or a set operation.
struct BoundBody {
    std::unique_ptr<BoundSelect> select;
    std::string operation;  // "UNION", "UNION ALL", "EXCEPT", "INTERSECT"
    std::unique_ptr<BoundBody> left, right;
};

struct BoundCommonTable {
    std::string name;  // generated
    std::unique_ptr<BoundQuery> query;
    bool materialized = false;  // worked out before the rest
};

// Which clause a number of rows stands in.
enum class RowLimit : std::uint8_t { Top, Fetch, Offset };

// ORDER BY: the position of an output column, or an expression when the position is 0.
struct BoundOrdering {
    std::size_t position = 0;
    BoundPtr expression;
    bool descending = false;
};

struct BoundQuery {
    std::vector<BoundCommonTable> with;
    std::unique_ptr<BoundBody> body;
    std::vector<BoundOrdering> orderBy;
    BoundPtr limit;
    bool percent = false;   // `limit` is a part of the rows, in percent
    bool withTies = false;  // rows that are equal to the last one in `orderBy` come along
    BoundPtr offset;
    std::vector<OutputColumn> columns;
    // At most one row whatever the data: an aggregate without GROUP BY, TOP 1, no FROM.
    bool singleRow = false;
};

}  // namespace basalt::embedded
