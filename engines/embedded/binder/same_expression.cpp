// Whether two expressions say the same: GROUP BY K % 2 and SELECT K % 2.
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/type_rules.h"

namespace basalt::embedded {

namespace {

using SlotPairs = std::vector<std::pair<const Slot*, const Slot*>>;

bool sameSlot(const Slot& a, const Slot& b, SlotPairs& pairs) {
    if (a.source != b.source || a.to != b.to) return false;
    if (a.source == Slot::Source::Literal && a.index != b.index) {
        if (!sameLiteral((*a.literals)[a.index], (*b.literals)[b.index])) return false;
        pairs.emplace_back(&a, &b);
        return true;
    }
    return a.index == b.index && a.variable == b.variable && a.system == b.system;
}

// A conversion to a type that is stored alike leaves the expression as it is but for its type.
bool sameCell(const SqlType& a, const SqlType& b) {
    return isSameStored(a, b) || isSameStored(b, a);
}

bool same(const BoundExpression& a, const BoundExpression& b, SlotPairs& pairs) {
    if (a.kind != b.kind || a.name != b.name || a.table != b.table || !sameCell(a.type, b.type) ||
        a.negated != b.negated || a.distinct != b.distinct || a.star != b.star || a.query || b.query || a.over ||
        b.over || a.arguments.size() != b.arguments.size()) {
        return false;
    }
    if (a.kind == BoundKind::Constant && !(isNull(a.value) ? isNull(b.value) : sameValue(a.value, b.value)))
        return false;
    if (a.kind == BoundKind::Slot && !sameSlot(a.slot, b.slot, pairs)) return false;
    for (std::size_t i = 0; i < a.arguments.size(); ++i) {
        if (!same(*a.arguments[i], *b.arguments[i], pairs)) return false;
    }
    return true;
}

}  // namespace

bool Binder::sameExpression(const BoundExpression& a, const BoundExpression& b) const {
    SlotPairs pairs;
    if (!same(a, b, pairs)) return false;
    // Two literals that happen to be equal make them the same: the plan holds for these values only.
    for (const auto& [first, second] : pairs) {
        first->literals->fix(first->index);
        second->literals->fix(second->index);
    }
    return true;
}

}  // namespace basalt::embedded
