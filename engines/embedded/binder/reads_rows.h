// What reads rows while a statement runs.
//
// A change has to see every table as it was before it. SQLite works out subqueries when a row first needs them and
// functions for each row anew, and by then it may have changed other rows.
#pragma once

#include <string>

#include "engines/embedded/binder/bound_query.h"

namespace basalt::embedded {

// t_call('name', arguments...): the value of a user's function, which reads through statements of its own.
inline constexpr const char* kCallUserFunction = "t_call";

[[nodiscard]] bool holdsQuery(const BoundExpression& expression);

// Whether rows of one table, by SQLite's name of it, may be read: by name, or by a user's function, which may read
// whatever it likes. Common tables are read where they are defined.
class RowReading {
public:
    explicit RowReading(std::string table) : table_(std::move(table)) {}
    // The same for a common table, by its generated name; functions cannot name one.
    [[nodiscard]] static RowReading ofCommonTable(std::string name);

    [[nodiscard]] bool in(const BoundExpression& expression) const;
    [[nodiscard]] bool in(const BoundQuery& query) const;
    [[nodiscard]] bool in(const BoundBody& body) const;
    // In a SELECT but for its FROM.
    [[nodiscard]] bool inExpressions(const BoundSelect& select) const;

private:
    [[nodiscard]] bool in(const BoundPtr& expression) const { return expression != nullptr && in(*expression); }
    [[nodiscard]] bool in(const std::vector<BoundPtr>& expressions) const;
    [[nodiscard]] bool in(const BoundOver& over) const;
    [[nodiscard]] bool in(const BoundSource& source) const;

    std::string table_;
    bool common_ = false;
};

// Whether values or the condition (null for none) of a statement that changes the table may read rows of it, be it
// through the common tables of the statement.
[[nodiscard]] bool readsChanged(const std::string& table, const std::vector<BoundCommonTable>& with,
                                const std::vector<BoundPtr>& values, const BoundExpression* condition);

}  // namespace basalt::embedded
