// INSERT.
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

BoundInsert Binder::insert(const ast::InsertStatement& statement, bool explicitIdentity) {
    BoundInsert result;
    if (statement.top && (statement.query == nullptr || statement.top->percent || statement.top->withTies))
        unsupported("TOP in INSERT here", statement.top->range);
    if (statement.source == ast::InsertStatement::Source::Execute) unsupported("INSERT ... EXEC", statement.range);
    const std::size_t visible = commonTables_.size();
    if (statement.query != nullptr && statement.query->maxRecursion) maxRecursion_ = *statement.query->maxRecursion;
    commonTables(statement.with, result.with);
    const Table& table = target(statement.target);
    result.table = &table;
    std::vector<bool> given(table.columns.size(), false);
    const TableColumn* const identity = table.identityColumn();
    const auto refuseUnnamedIdentity = [&] {
        fail(8101,
             "An explicit value for the identity column in table '" + table.name +
                 "' can only be specified when a column list is used and IDENTITY_INSERT is ON.",
             statement.range);
    };
    if (explicitIdentity && identity != nullptr && statement.columns.empty()) refuseUnnamedIdentity();
    if (statement.columns.empty()) {
        if (statement.source != ast::InsertStatement::Source::DefaultValues) {
            for (std::size_t i = 0; i < table.columns.size(); ++i) {
                if (table.columns[i].computed || (table.columns[i].identity && !explicitIdentity)) continue;
                result.columns.push_back(i);
                given[i] = true;
            }
        }
    } else {
        for (const ast::Identifier& name : statement.columns) {
            const int position = table.find(name.text);
            if (position < 0) fail(error::kInvalidColumn, "Invalid column name '" + name.text + "'.", name.range);
            const auto index = static_cast<std::size_t>(position);
            if (given[index]) {
                fail(264, "The column name '" + name.text + "' is specified more than once in the column list.",
                     name.range);
            }
            if (table.columns[index].identity && !explicitIdentity) {
                fail(544,
                     "Cannot insert explicit value for identity column in table '" + table.name +
                         "' when IDENTITY_INSERT is set to OFF.",
                     name.range);
            }
            if (table.columns[index].computed) {
                fail(271,
                     "The column \"" + table.columns[index].name +
                         "\" cannot be modified because it is a computed column.",
                     name.range);
            }
            given[index] = true;
            result.columns.push_back(index);
        }
    }
    const std::size_t written = result.columns.size();
    for (const std::size_t index : result.columns)
        result.setsIdentity = result.setsIdentity || table.columns[index].identity;
    // Columns that the statement does not name take their defaults.
    std::vector<std::size_t> defaulted;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const TableColumn& column = table.columns[i];
        if (given[i] || column.computed) continue;
        if (column.identity) {
            if (explicitIdentity) {
                fail(545,
                     "Explicit value must be specified for identity column in table '" + table.name +
                         "' either when IDENTITY_INSERT is set to ON or when a replication user is inserting into a "
                         "NOT FOR REPLICATION identity column.",
                     statement.range);
            }
            result.generatesIdentity = true;
        } else if (!column.defaultText.empty()) {
            defaulted.push_back(i);
        }
    }
    const auto defaultFor = [&](std::size_t index) {
        return assigned(defaultOf(table.columns[index]), table.columns[index], table.name, statement.range);
    };
    const auto mismatch = [&](std::size_t count) {
        if (count == written) return;
        if (statement.columns.empty()) {
            if (identity != nullptr && count == written + 1) refuseUnnamedIdentity();
            fail(213, "Column name or number of supplied values does not match table definition.", statement.range);
        }
        fail(count < written ? 109 : 110,
             count < written
                 ? "There are more columns in the INSERT statement than values specified in the VALUES clause. The "
                   "number of values in the VALUES clause must match the number of columns specified in the INSERT "
                   "statement."
                 : "There are fewer columns in the INSERT statement than values specified in the VALUES clause. The "
                   "number of values in the VALUES clause must match the number of columns specified in the INSERT "
                   "statement.",
             statement.range);
    };
    switch (statement.source) {
        case ast::InsertStatement::Source::Values:
            for (const std::vector<ast::ExpressionPtr>& row : statement.rows) {
                mismatch(row.size());
                std::vector<BoundPtr> values;
                for (std::size_t i = 0; i < row.size(); ++i) {
                    const std::size_t index = result.columns[i];
                    values.push_back(
                        row[i]->kind == ast::ExpressionKind::Default
                            ? defaultFor(index)
                            : assigned(expression(*row[i], nullptr), table.columns[index], table.name, row[i]->range));
                }
                for (const std::size_t index : defaulted)
                    values.push_back(defaultFor(index));
                result.rows.push_back(std::move(values));
            }
            break;
        case ast::InsertStatement::Source::DefaultValues: {
            std::vector<BoundPtr> values;
            values.reserve(defaulted.size());
            for (const std::size_t index : defaulted)
                values.push_back(defaultFor(index));
            result.rows.push_back(std::move(values));
            break;
        }
        default: {
            result.query = query(*statement.query, nullptr);
            if (statement.top) {
                if (result.query->limit != nullptr) unsupported("TOP in INSERT and in its query", statement.top->range);
                result.query->limit = rowLimit(*statement.top->count, nullptr);
            }
            if (result.query->columns.size() != written) {
                if (statement.columns.empty()) mismatch(result.query->columns.size());
                fail(result.query->columns.size() < written ? 120 : 121,
                     std::string("The select list for the INSERT statement contains ") +
                         (result.query->columns.size() < written ? "fewer" : "more") +
                         " items than the insert list. The number of SELECT values must match the number of INSERT "
                         "columns.",
                     statement.range);
            }
            for (std::size_t i = 0; i < written; ++i) {
                auto value = std::make_unique<BoundExpression>();
                value->kind = BoundKind::Column;
                value->type = result.query->columns[i].type;
                value->nullable = result.query->columns[i].nullable;
                value->name = "c" + std::to_string(i + 1);
                value->table = "q";
                result.values.push_back(
                    assigned(std::move(value), table.columns[result.columns[i]], table.name, statement.range));
            }
            for (const std::size_t index : defaulted)
                result.values.push_back(defaultFor(index));
        }
    }
    result.columns.insert(result.columns.end(), defaulted.begin(), defaulted.end());
    outputs(statement.output, table, "inserted", result.returning, result.outputs);
    commonTables_.resize(visible);
    return result;
}

}  // namespace basalt::embedded
