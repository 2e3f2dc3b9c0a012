// The members that need the complete types of both sides of the tree: expressions hold queries and queries expressions.
#include "engines/embedded/ast/control_statement.h"
#include "engines/embedded/ast/data_statement.h"
#include "engines/embedded/ast/query.h"

namespace basalt::embedded::ast {

SubqueryExpression::SubqueryExpression() = default;
SubqueryExpression::~SubqueryExpression() = default;
InExpression::InExpression() = default;
InExpression::~InExpression() = default;
ExistsExpression::ExistsExpression() = default;
ExistsExpression::~ExistsExpression() = default;
QuantifiedExpression::QuantifiedExpression() = default;
QuantifiedExpression::~QuantifiedExpression() = default;
DerivedTable::DerivedTable() = default;
DerivedTable::~DerivedTable() = default;
InsertStatement::InsertStatement() = default;
InsertStatement::~InsertStatement() = default;

const Select& firstSelect(const QueryBody& body) {
    const QueryBody* current = &body;
    while (current->kind == QueryBodyKind::SetOperation)
        current = as<SetOperation>(*current).left.get();
    return as<Select>(*current);
}

}  // namespace basalt::embedded::ast
