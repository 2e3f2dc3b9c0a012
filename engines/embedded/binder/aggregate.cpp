// Aggregates, ranking functions, and their OVER clauses.
#include <algorithm>
#include <array>

#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/function_binder.h"
#include "engines/embedded/runtime/decimal_math.h"

namespace basalt::embedded {

namespace {

constexpr std::array<std::string_view, 10> kAggregates = {"count", "count_big", "sum",    "avg", "min",
                                                          "max",   "stdev",     "stdevp", "var", "varp"};
constexpr std::array<std::string_view, 4> kRankings = {"row_number", "rank", "dense_rank", "ntile"};
constexpr std::array<std::string_view, 2> kShares = {"percent_rank", "cume_dist"};
constexpr std::array<std::string_view, 4> kOffsets = {"lag", "lead", "first_value", "last_value"};

template <typename Names>
bool among(const Names& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::unique_ptr<BoundExpression> newAggregate(std::string name, SqlType type) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Aggregate;
    result->name = std::move(name);
    result->type = type;
    return result;
}

std::string frameBound(const ast::FrameBound& bound, Binder& binder) {
    using Kind = ast::FrameBoundKind;
    switch (bound.kind) {
        case Kind::UnboundedPreceding:
            return "UNBOUNDED PRECEDING";
        case Kind::CurrentRow:
            return "CURRENT ROW";
        case Kind::UnboundedFollowing:
            return "UNBOUNDED FOLLOWING";
        default: {
            const std::optional<std::int64_t> offset = binder.fixedInteger(*bound.offset);
            if (!offset || *offset < 0) {
                binder.fail(4194, "The offset of a window frame must be a whole number that is not negative.",
                            bound.offset->range);
            }
            return std::to_string(*offset) + (bound.kind == Kind::Preceding ? " PRECEDING" : " FOLLOWING");
        }
    }
}

std::string words(const ast::FrameBound& bound) {
    using Kind = ast::FrameBoundKind;
    switch (bound.kind) {
        case Kind::UnboundedPreceding:
            return "UNBOUNDED PRECEDING";
        case Kind::Preceding:
            return "PRECEDING";
        case Kind::CurrentRow:
            return "CURRENT ROW";
        case Kind::Following:
            return "FOLLOWING";
        case Kind::UnboundedFollowing:
            break;
    }
    return "UNBOUNDED FOLLOWING";
}

void requireGoodFrame(const ast::OverClause& clause, Binder& binder) {
    using Kind = ast::FrameBoundKind;
    if (clause.orderBy.empty())
        binder.fail(10756, "Window frame with ROWS or RANGE must have an ORDER BY clause.", clause.range);
    ast::FrameBound current;
    current.kind = Kind::CurrentRow;
    const ast::FrameBound& start = clause.frameStart;
    const ast::FrameBound& end = clause.frameEnd == nullptr ? current : *clause.frameEnd;
    // The kinds are listed from the first row to the last.
    if (start.kind > end.kind || start.kind == Kind::UnboundedFollowing || end.kind == Kind::UnboundedPreceding) {
        binder.fail(4193,
                    "'BETWEEN " + words(start) + " AND " + words(end) +
                        "' is not a valid window frame and cannot be used with the OVER clause.",
                    clause.range);
    }
    if (clause.frame == ast::FrameUnit::Range && (start.offset != nullptr || end.offset != nullptr)) {
        binder.fail(4194, "RANGE is only supported with UNBOUNDED and CURRENT ROW window frame delimiters.",
                    clause.range);
    }
}

}  // namespace

bool isAggregate(std::string_view name) {
    return among(kAggregates, name);
}

std::unique_ptr<BoundOver> Binder::over(const ast::OverClause& clause, Scope* scope) {
    auto result = std::make_unique<BoundOver>();
    for (const ast::ExpressionPtr& part : clause.partitionBy)
        result->partitionBy.push_back(expression(*part, scope));
    for (const ast::OrderItem& item : clause.orderBy) {
        const ast::ExpressionKind kind = item.expression->kind;
        if (kind == ast::ExpressionKind::Literal && fixedInteger(*item.expression)) {
            fail(5308,
                 "Windowed functions, aggregates and NEXT VALUE FOR functions do not support integer indices as ORDER "
                 "BY clause expressions.",
                 item.expression->range);
        }
        if (kind == ast::ExpressionKind::Literal || kind == ast::ExpressionKind::Null) {
            fail(5309,
                 "Windowed functions, aggregates and NEXT VALUE FOR functions do not support constants as ORDER BY "
                 "clause expressions.",
                 item.expression->range);
        }
        result->orderBy.push_back({expression(*item.expression, scope), item.descending});
    }
    if (clause.frame != ast::FrameUnit::None) {
        requireGoodFrame(clause, *this);
        result->frame = clause.frame == ast::FrameUnit::Rows ? "ROWS " : "RANGE ";
        const std::string start = frameBound(clause.frameStart, *this);
        result->frame +=
            clause.frameEnd == nullptr ? start : "BETWEEN " + start + " AND " + frameBound(*clause.frameEnd, *this);
    }
    return result;
}

namespace {

bool hasQuery(const BoundExpression& expression) {
    return expression.query != nullptr || std::any_of(expression.arguments.begin(), expression.arguments.end(),
                                                      [](const BoundPtr& argument) { return hasQuery(*argument); });
}

}  // namespace

namespace {

bool namesColumnOf(const BoundExpression& expression, const Scope& scope) {
    if (expression.kind == BoundKind::Column) return scope.owns(expression.table);
    return std::any_of(expression.arguments.begin(), expression.arguments.end(),
                       [&](const BoundPtr& argument) { return namesColumnOf(*argument, scope); });
}

// Whose rows an aggregate takes together: those of the innermost query that its arguments name a column of.
Scope* ownerOf(const std::vector<BoundPtr>& arguments, Scope* scope) {
    for (Scope* each = scope; each != nullptr; each = each->parent) {
        for (const BoundPtr& argument : arguments) {
            if (namesColumnOf(*argument, *each)) return each;
        }
    }
    return scope;
}

bool allowedOutside(const Scope* scope) {
    return scope != nullptr && (scope->aggregatesAllowed || allowedOutside(scope->parent));
}

// (SELECT aggregate): an aggregate of a query further out, which SQLite takes in a select list only.
BoundPtr alone(BoundPtr aggregate) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Subquery;
    result->type = aggregate->type;
    result->nullable = aggregate->nullable;
    result->order = aggregate->order;
    result->query = std::make_unique<BoundQuery>();
    result->query->columns.push_back({{}, aggregate->type, aggregate->nullable, {}, aggregate->order});
    result->query->singleRow = true;
    result->query->body = std::make_unique<BoundBody>();
    result->query->body->select = std::make_unique<BoundSelect>();
    result->query->body->select->items.push_back({std::move(aggregate), {}});
    return result;
}

}  // namespace

BoundPtr Binder::aggregate(const ast::FunctionExpression& call, Scope* scope) {
    const std::string name = foldName(call.name.last());
    const bool windowed = call.over != nullptr;
    const auto failInWhere = [&] {
        fail(147,
             "An aggregate may not appear in the WHERE clause unless it is in a subquery contained in a HAVING clause "
             "or a select list, and the column being aggregated is an outer reference.",
             call.range);
    };
    if (windowed && (scope == nullptr || !scope->windowsAllowed)) {
        fail(4108, "Windowed functions can only appear in the SELECT or ORDER BY clauses.", call.range);
    }
    if (!windowed && (scope == nullptr || !scope->aggregatesAllowed)) {
        if (scope != nullptr && scope->insideAggregate) {
            fail(130, "Cannot perform an aggregate function on an expression containing an aggregate or a subquery.",
                 call.range);
        }
        if (scope == nullptr || !allowedOutside(scope->parent)) failInWhere();
    }
    std::vector<BoundPtr> arguments;
    Scope* owner = scope;
    {
        const bool allowed = scope->aggregatesAllowed;
        const bool inside = scope->insideAggregate;
        // The arguments of a windowed aggregate may be aggregates of the group: SUM(COUNT(*)) OVER ().
        if (!windowed) {
            scope->aggregatesAllowed = false;
            scope->insideAggregate = true;
        }
        for (const ast::ExpressionPtr& argument : call.arguments) {
            arguments.push_back(expression(*argument, scope));
            if (!windowed && hasQuery(*arguments.back())) {
                fail(130,
                     "Cannot perform an aggregate function on an expression containing an aggregate or a subquery.",
                     argument->range);
            }
        }
        scope->aggregatesAllowed = allowed;
        scope->insideAggregate = inside;
    }
    if (!windowed) {
        owner = ownerOf(arguments, scope);
        if (!owner->aggregatesAllowed) failInWhere();
        owner->aggregated = true;
    }
    const auto requireCount = [&](std::size_t fewest, std::size_t most) {
        if (arguments.size() < fewest || arguments.size() > most) {
            fail(174, "The " + name + " function requires " + std::to_string(fewest) + " argument(s).", call.range);
        }
    };
    const auto requireOrder = [&] {
        if (call.over->orderBy.empty())
            fail(4112, "The function '" + name + "' must have an OVER clause with ORDER BY.", call.range);
    };
    const auto refuseFrame = [&] {
        if (call.over->frame != ast::FrameUnit::None)
            fail(10752, "The function '" + name + "' may not have a window frame.", call.range);
    };
    BoundPtr result;
    const auto oneArgument = [&]() -> SqlType& {
        requireCount(1, 1);
        if (arguments[0]->type.isNull()) {
            fail(8117, "Operand data type NULL is invalid for " + name + " operator.", call.range);
        }
        return arguments[0]->type;
    };
    if (name == "count" || name == "count_big") {
        result = newAggregate("count", SqlType::of(name == "count" ? TypeKind::Int : TypeKind::BigInt));
        result->nullable = false;
        if (call.star) {
            result->star = true;
        } else {
            static_cast<void>(oneArgument());
        }
    } else if (name == "min" || name == "max") {
        const SqlType type = oneArgument();
        if (type.kind == TypeKind::Bit)
            fail(8117, "Operand data type bit is invalid for " + name + " operator.", call.range);
        result = newAggregate(name, type);
    } else if (name == "sum" || name == "avg") {
        const SqlType type = oneArgument();
        if (!type.isNumber() || type.kind == TypeKind::Bit) {
            fail(8117, "Operand data type " + std::string(type.baseName()) + " is invalid for " + name + " operator.",
                 call.range);
        }
        const bool sum = name == "sum";
        if (type.isFloat()) {
            arguments[0] = cast(std::move(arguments[0]), SqlType::of(TypeKind::Float));
            result = newAggregate(sum ? "t_sum_float" : "avg", SqlType::of(TypeKind::Float));
        } else if (type.isInteger()) {
            const bool big = type.kind == TypeKind::BigInt;
            result = newAggregate(std::string(sum ? "t_sum_" : "t_avg_") + (big ? "bigint" : "int"),
                                  SqlType::of(big ? TypeKind::BigInt : TypeKind::Int));
        } else if (type.kind != TypeKind::Decimal) {
            result = newAggregate(sum ? "t_sum_money" : "t_avg_money", SqlType::of(TypeKind::Money));
        } else if (sum) {
            result = newAggregate("t_sum_decimal", SqlType::decimal(kMaxDecimalDigits, type.scale));
        } else {
            const int digits = std::max(0, 6 - type.scale);
            result = newAggregate("t_avg_decimal" + std::to_string(digits),
                                  SqlType::decimal(kMaxDecimalDigits, type.scale + digits));
        }
    } else if (name == "stdev" || name == "stdevp" || name == "var" || name == "varp") {
        const SqlType type = oneArgument();
        if (!type.isNumber()) {
            fail(8117, "Operand data type " + std::string(type.baseName()) + " is invalid for " + name + " operator.",
                 call.range);
        }
        arguments[0] = cast(std::move(arguments[0]), SqlType::of(TypeKind::Float));
        result = newAggregate("t_" + name, SqlType::of(TypeKind::Float));
    } else if (windowed && among(kRankings, name)) {
        requireCount(name == "ntile" ? 1 : 0, name == "ntile" ? 1 : 0);
        result = newAggregate(name, SqlType::of(TypeKind::BigInt));
        result->nullable = false;
        requireOrder();
        refuseFrame();
    } else if (windowed && among(kShares, name)) {
        requireCount(0, 0);
        result = newAggregate(name, SqlType::of(TypeKind::Float));
        result->nullable = false;
        requireOrder();
        refuseFrame();
    } else if (windowed && among(kOffsets, name)) {
        const bool distant = name == "lag" || name == "lead";
        requireCount(1, distant ? 3 : 1);
        requireOrder();
        if (distant) refuseFrame();
        result = newAggregate(name, arguments[0]->type);
        if (arguments.size() == 3) arguments[2] = cast(std::move(arguments[2]), result->type);
    } else {
        fail(195, "'" + call.name.last() + "' is not a recognized function name.", call.name.range);
    }
    if (call.distinct && windowed) {
        fail(10759, "Use of DISTINCT is not allowed with the OVER clause.", call.range);
    }
    // MIN and MAX are the same with DISTINCT.
    result->distinct = call.distinct && name != "min" && name != "max";
    if (result->type.isText()) {
        for (const BoundPtr& argument : arguments)
            takeOrder(*result, *argument);
    }
    result->arguments = std::move(arguments);
    if (windowed) result->over = over(*call.over, scope);
    return owner == scope ? std::move(result) : alone(std::move(result));
}

}  // namespace basalt::embedded
