// Values: literals, variables, columns, CASE, CAST, subqueries.
#include <algorithm>

#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/type_rules.h"
#include "engines/embedded/lexer/literal_value.h"
#include "engines/embedded/lexer/utf8.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

SqlType typeOf(const Literal& literal) {
    const auto length = [&](std::size_t units) {
        return lengthClassOf(literal) == LiteralLength::Unbounded ? kMaxLength : std::max(1, static_cast<int>(units));
    };
    switch (literal.type) {
        case LiteralType::Int:
            return SqlType::of(TypeKind::Int);
        case LiteralType::Decimal:
            return SqlType::decimal(literal.precision, literal.scale);
        case LiteralType::Float:
            return SqlType::of(TypeKind::Float);
        case LiteralType::Money:
            return SqlType::of(TypeKind::Money);
        case LiteralType::Varchar:
            return SqlType::text(TypeKind::VarChar, length(utf16Length(literal.text)));
        case LiteralType::NVarchar:
            return SqlType::text(TypeKind::NVarChar, length(utf16Length(literal.text)));
        case LiteralType::Varbinary:
            return SqlType::text(TypeKind::VarBinary, length(literal.text.size()));
    }
    return SqlType::of(TypeKind::Null);
}

// What SQL Server takes for the precision of a whole number; 0 for another constant.
int wholeDigits(const Literal& literal) {
    if (literal.type == LiteralType::Int) return Decimal(literal.integer, 0).digits();
    return literal.type == LiteralType::Decimal && literal.scale == 0 ? literal.precision : 0;
}

std::string joined(const ast::ObjectName& name) {
    std::string result;
    for (const ast::Identifier& part : name.parts)
        result += (result.empty() ? "" : ".") + part.text;
    return result;
}

BoundPtr boundSlot(Slot slot) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Slot;
    result->type = slot.from;
    slot.to = slot.from;
    result->nullable = slot.source != Slot::Source::Literal;
    result->slot = std::move(slot);
    return result;
}

BoundPtr boundSystem(SystemValue value, TypeKind kind) {
    Slot slot;
    slot.source = Slot::Source::System;
    slot.system = value;
    slot.from = kind == TypeKind::NVarChar  ? SqlType::text(kind, 4000)
                : kind == TypeKind::Decimal ? SqlType::decimal(38, 0)
                                            : SqlType::of(kind);
    return boundSlot(std::move(slot));
}

}  // namespace

BoundPtr boundSystemValue(SystemValue value) {
    switch (value) {
        case SystemValue::Now:
        case SystemValue::UtcNow:
            return boundSystem(value, TypeKind::DateTime);
        case SystemValue::ScopeIdentity:
        case SystemValue::Identity:
            return boundSystem(value, TypeKind::Decimal);
        case SystemValue::ErrorMessage:
        case SystemValue::ErrorProcedure:
            return boundSystem(value, TypeKind::NVarChar);
        case SystemValue::XactState:
            return boundSystem(value, TypeKind::SmallInt);
        default:
            return boundSystem(value, TypeKind::Int);
    }
}

BoundPtr Binder::expression(const ast::Expression& expression, Scope* scope) {
    using Kind = ast::ExpressionKind;
    // NULLIF and its kin name their operand twice: inside each other they soon are more than any memory holds.
    if (++expressions_ > kMostExpressions + kExpressionsALetter * input_.text.size()) {
        fail(
            8621,
            "The query processor ran out of stack space during query optimization. Expressions that name their operand "
            "more than once stand too deep inside each other; please simplify the query.",
            expression.range);
    }
    switch (expression.kind) {
        case Kind::Literal:
            return literal(ast::as<ast::LiteralExpression>(expression));
        case Kind::Null:
            return boundConstant(Null{}, SqlType::of(TypeKind::Null));
        case Kind::Default:
            fail(156, "Incorrect syntax near the keyword 'DEFAULT'.", expression.range);
        case Kind::ParameterMarker: {
            const auto& marker = ast::as<ast::ParameterMarker>(expression);
            if (marker.ordinal >= input_.markers.size()) {
                fail(error::kSyntax, "A value for the parameter marker '?' is missing.", expression.range);
            }
            Slot slot;
            slot.source = Slot::Source::Marker;
            slot.index = marker.ordinal;
            slot.from = input_.markers[marker.ordinal];
            return boundSlot(std::move(slot));
        }
        case Kind::Variable: {
            const auto& name = ast::as<ast::VariableExpression>(expression).name;
            const bool running = scope != nullptr && scope->parent == nullptr && !scope->insideAggregate;
            if (byRow_ && !running &&
                std::ranges::any_of(running_, [&](const RunningVariable& each) { return sameName(each.name, name); })) {
                unsupported("a subquery that reads " + name + ", which the UPDATE around it assigns", expression.range);
            }
            return running ? runningVariable(name, expression.range) : variable(name, expression.range);
        }
        case Kind::SystemVariable:
            return systemVariable(ast::as<ast::SystemVariableExpression>(expression));
        case Kind::Column:
            return column(ast::as<ast::ColumnExpression>(expression), scope);
        case Kind::Unary:
            return unary(ast::as<ast::UnaryExpression>(expression), scope);
        case Kind::Binary:
            return binary(ast::as<ast::BinaryExpression>(expression), scope);
        case Kind::Case:
            return caseExpression(ast::as<ast::CaseExpression>(expression), scope);
        case Kind::Iif: {
            const auto& iif = ast::as<ast::IifExpression>(expression);
            std::vector<BoundPtr> conditions;
            std::vector<BoundPtr> values;
            conditions.push_back(condition(*iif.condition, scope));
            values.push_back(this->expression(*iif.then, scope));
            return chosen(std::move(conditions), std::move(values), this->expression(*iif.otherwise, scope),
                          expression.range);
        }
        case Kind::Cast: {
            const auto& cast = ast::as<ast::CastExpression>(expression);
            SqlType type = dataType(cast.type);
            // CAST to a text without a length takes 30 characters.
            if ((type.isText() || type.isBinary()) && !cast.type.length && !cast.type.max && type.length == 1)
                type.length = 30;
            return castExplicitly(this->expression(*cast.operand, scope), type, nullptr, cast.tries);
        }
        case Kind::Convert: {
            const auto& convert = ast::as<ast::ConvertExpression>(expression);
            SqlType type = dataType(convert.type);
            if ((type.isText() || type.isBinary()) && !convert.type.length && !convert.type.max && type.length == 1)
                type.length = 30;
            BoundPtr style;
            if (convert.style != nullptr) {
                style = cast(this->expression(*convert.style, scope), SqlType::of(TypeKind::Int));
            }
            return castExplicitly(this->expression(*convert.operand, scope), type, std::move(style), convert.tries);
        }
        case Kind::Function:
            return function(ast::as<ast::FunctionExpression>(expression), scope);
        case Kind::DatePart:
            fail(155, "'" + ast::as<ast::DatePartExpression>(expression).name + "' is not a recognized option.",
                 expression.range);
        case Kind::Subquery:
            return subquery(ast::as<ast::SubqueryExpression>(expression), scope);
        case Kind::XmlValue:
            return xmlValue(ast::as<ast::XmlValueExpression>(expression), scope);
        case Kind::Collate:
            return collated(ast::as<ast::CollateExpression>(expression), scope);
        default:
            fail(4145, "A value is expected here, not a condition.", expression.range);
    }
}

BoundPtr Binder::variable(const std::string& name, SourceRange range) {
    for (const Parameter& parameter : parameters_) {
        if (!sameName(parameter.name, name)) continue;
        if (!canClone(*parameter.value)) unsupported("a subquery as an argument of a function in FROM", range);
        return cloned(*parameter.value);
    }
    const SqlType* type = input_.variables == nullptr ? nullptr : input_.variables->typeOf(name);
    if (type == nullptr) fail(137, "Must declare the scalar variable \"" + name + "\".", range);
    Slot slot;
    slot.source = Slot::Source::Variable;
    slot.variable = name;
    slot.from = *type;
    return boundSlot(std::move(slot));
}

BoundPtr Binder::literal(const ast::LiteralExpression& expression) {
    const Literal& value = (*input_.literals)[expression.literal];
    const SqlType type = typeOf(value);
    BoundPtr result;
    if (input_.inlineLiterals) {
        result = boundConstant(valueOf(value), type);
    } else {
        Slot slot;
        slot.source = Slot::Source::Literal;
        slot.index = expression.literal;
        slot.literals = input_.literals;
        slot.from = type;
        result = boundSlot(std::move(slot));
    }
    result->writtenDigits = wholeDigits(value);
    return result;
}

BoundPtr Binder::systemVariable(const ast::SystemVariableExpression& expression) {
    struct Known {
        std::string_view name;
        SystemValue value;
    };
    static constexpr Known known[] = {
        {"@@ROWCOUNT", SystemValue::RowCount},
        {"@@IDENTITY", SystemValue::Identity},
        {"@@ERROR", SystemValue::Error},
        {"@@TRANCOUNT", SystemValue::TranCount},
        {"@@FETCH_STATUS", SystemValue::FetchStatus},
        {"@@NESTLEVEL", SystemValue::NestLevel},
        {"@@LOCK_TIMEOUT", SystemValue::LockTimeout},
        {"@@PROCID", SystemValue::ProcId},
        {"@@SPID", SystemValue::SpId},
    };
    for (const Known& candidate : known) {
        if (candidate.name == expression.name) return boundSystemValue(candidate.value);
    }
    const auto text = [](std::string value) {
        const auto length = static_cast<int>(value.size());
        return boundConstant(std::move(value), SqlType::text(TypeKind::NVarChar, std::max(1, length)));
    };
    if (expression.name == "@@VERSION") return text("Basalt embedded database");
    if (expression.name == "@@SERVERNAME" || expression.name == "@@SERVICENAME") return text("embedded");
    if (expression.name == "@@LANGUAGE") return text("us_english");
    if (expression.name == "@@DATEFIRST") return boundConstant(std::int64_t{7}, SqlType::of(TypeKind::TinyInt));
    if (expression.name == "@@MAX_PRECISION") return boundConstant(std::int64_t{38}, SqlType::of(TypeKind::TinyInt));
    unsupported(expression.name, expression.range);
}

BoundPtr Binder::column(const ast::ColumnExpression& expression, Scope* scope) {
    const ast::ObjectName& name = expression.name;
    const std::string& wanted = name.last();
    const std::string qualifier = name.parts.size() > 1 ? name.parts[name.parts.size() - 2].text : std::string();
    bool qualifierFound = qualifier.empty();
    for (Scope* current = scope; current != nullptr; current = current->parent) {
        const ScopeSource* foundSource = nullptr;
        const SourceColumn* found = nullptr;
        for (const ScopeSource& source : current->sources) {
            if (!qualifier.empty() && !sameName(source.name, qualifier)) continue;
            qualifierFound = true;
            for (const SourceColumn& candidate : source.columns) {
                if (!sameName(candidate.shown.name, wanted)) continue;
                if (found != nullptr)
                    fail(error::kAmbiguousColumn, "Ambiguous column name '" + wanted + "'.", name.range);
                found = &candidate;
                foundSource = &source;
            }
        }
        if (found == nullptr) {
            current->correlated = true;
            continue;
        }
        auto result = std::make_unique<BoundExpression>();
        result->kind = BoundKind::Column;
        result->type = found->shown.type;
        result->nullable = found->shown.nullable;
        result->table = foundSource->sqlAlias;
        result->name = found->sqlName;
        result->base = found->shown.base;
        result->ownCollation = found->ownCollation;
        result->order = found->shown.order;
        return result;
    }
    if (qualifierFound) fail(error::kInvalidColumn, "Invalid column name '" + wanted + "'.", name.range);
    fail(4104, "The multi-part identifier \"" + joined(name) + "\" could not be bound.", name.range);
}

BoundPtr Binder::chosen(std::vector<BoundPtr> conditions, std::vector<BoundPtr> values, BoundPtr otherwise,
                        SourceRange range) {
    SqlType type = SqlType::of(TypeKind::Null);
    bool nullable = otherwise == nullptr;
    for (const BoundPtr& value : values) {
        type = commonType(type, value->type);
        nullable = nullable || value->nullable;
    }
    if (otherwise != nullptr) {
        type = commonType(type, otherwise->type);
        nullable = nullable || otherwise->nullable;
    }
    if (type.isNull()) {
        fail(8133,
             "At least one of the result expressions in a CASE specification must be an expression other than the NULL "
             "constant.",
             range);
    }
    for (const BoundPtr& value : values)
        refuseClash(value->type, type, range);
    if (otherwise != nullptr) refuseClash(otherwise->type, type, range);
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Case;
    result->type = type;
    result->nullable = nullable;
    for (std::size_t i = 0; i < values.size(); ++i) {
        takeOrder(*result, *values[i]);
        result->arguments.push_back(std::move(conditions[i]));
        result->arguments.push_back(cast(std::move(values[i]), type));
    }
    if (otherwise != nullptr) takeOrder(*result, *otherwise);
    result->arguments.push_back(otherwise == nullptr ? boundConstant(Null{}, type) : cast(std::move(otherwise), type));
    return result;
}

BoundPtr Binder::caseExpression(const ast::CaseExpression& expression, Scope* scope) {
    std::vector<BoundPtr> conditions;
    std::vector<BoundPtr> values;
    for (const ast::CaseExpression::When& when : expression.whens) {
        if (expression.input == nullptr) {
            conditions.push_back(condition(*when.when, scope));
        } else {
            // The input is bound anew for each branch: its conversion depends on what it is compared with.
            conditions.push_back(comparison(ast::ComparisonOperator::Equal, this->expression(*expression.input, scope),
                                            this->expression(*when.when, scope), when.when->range));
        }
        values.push_back(this->expression(*when.then, scope));
    }
    return chosen(std::move(conditions), std::move(values),
                  expression.otherwise == nullptr ? nullptr : this->expression(*expression.otherwise, scope),
                  expression.range);
}

BoundPtr Binder::subquery(const ast::SubqueryExpression& expression, Scope* scope) {
    auto result = std::make_unique<BoundExpression>();
    result->kind = BoundKind::Subquery;
    result->query = oneColumnQuery(*expression.query, scope);
    result->type = result->query->columns[0].type;
    result->order = result->query->columns[0].order;
    return result;
}

BoundPtr Binder::defaultOf(const TableColumn& column) {
    if (column.defaultText.empty()) return boundConstant(Null{}, column.type);
    return storedExpression(column.defaultText);
}

}  // namespace basalt::embedded
