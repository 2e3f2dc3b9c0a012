// COLLATE, and the order in which texts are compared where expressions of different orders meet.
#include <algorithm>

#include "engines/embedded/binder/binder.h"
#include "engines/embedded/runtime/collation_name.h"

namespace basalt::embedded {

TextOrder Binder::collation(const ast::Identifier& name) const {
    const NamedCollation found = collationNamed(name.text);
    if (!found.known) fail(448, "Invalid collation '" + name.text + "'.", name.range);
    if (!found.order) unsupported("COLLATE " + name.text, name.range);
    return *found.order;
}

void Binder::requireOwnCollation(const ast::Identifier& name) const {
    if (!name.empty() && collation(name) != TextOrder::Database) {
        unsupported("a column with COLLATE " + name.text, name.range);
    }
}

BoundPtr Binder::collated(const ast::CollateExpression& expression, Scope* scope) {
    BoundPtr operand = this->expression(*expression.operand, scope);
    if (!operand->type.isText()) {
        fail(447, "Expression type " + operand->type.name() + " is invalid for COLLATE clause.", expression.range);
    }
    const TextOrder order = collation(expression.collation);
    if (operand->order != order) return boundCollate(std::move(operand), order, expression.collation.text);
    operand->collation = expression.collation.text;
    return operand;
}

TextOrder Binder::orderOf(const std::vector<const BoundExpression*>& parts, SourceRange range) const {
    BoundExpression together;
    try {
        for (const BoundExpression* part : parts)
            takeOrder(together, *part);
    } catch (const DatabaseError& conflict) {
        fail(conflict.nativeCode(), conflict.what(), range);
    }
    return together.order;
}

void Binder::settleOrder(BoundPtr& first, const std::vector<const BoundExpression*>& others, SourceRange range) const {
    std::vector<const BoundExpression*> all = others;
    all.insert(all.begin(), first.get());
    const TextOrder order = orderOf(all, range);
    const bool special = std::any_of(all.begin(), all.end(), [](const BoundExpression* each) {
        return each->type.isText() && each->order != TextOrder::Database;
    });
    // SQLite goes by the COLLATE of the first operand before it looks at any other.
    if (special && first->type.isText()) first = boundCollate(std::move(first), order, {});
}

}  // namespace basalt::embedded
