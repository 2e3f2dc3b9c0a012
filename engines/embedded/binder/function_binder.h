// What the entry of a scalar function is given: its arguments, bound on demand at the types that it asks for.
#pragma once

#include "engines/embedded/binder/binder.h"
#include "engines/embedded/runtime/dates.h"

namespace basalt::embedded {

// Arguments count from 0.
class FunctionBinder {
public:
    FunctionBinder(Binder& binder, const ast::FunctionExpression& call, Scope* scope)
        : binder_(binder), call_(call), scope_(scope) {}

    [[nodiscard]] Binder& binder() { return binder_; }
    [[nodiscard]] const std::string& name() const { return call_.name.last(); }
    [[nodiscard]] std::size_t count() const { return call_.arguments.size(); }
    [[nodiscard]] SourceRange range() const { return call_.range; }
    [[nodiscard]] const ast::Expression& argument(std::size_t i) const { return *call_.arguments[i]; }

    [[nodiscard]] BoundPtr value(std::size_t i);              // at its own type
    [[nodiscard]] BoundPtr as(std::size_t i, TypeKind kind);  // converted
    [[nodiscard]] BoundPtr text(std::size_t i);               // any text type; others are converted
    [[nodiscard]] BoundPtr asText(BoundPtr value);            // the same for one that is bound already
    [[nodiscard]] BoundPtr date(std::size_t i);               // any date type; others are converted
    [[nodiscard]] DatePart datePart(std::size_t i);
    // 9810 for a part that the type has not: a day of a time, an hour of a date.
    void requirePart(DatePart part, const SqlType& type) const;
    [[noreturn]] void refuse(std::size_t i, const SqlType& type) const;

    [[nodiscard]] static SqlType textTypeOf(const SqlType& type);

private:
    Binder& binder_;
    const ast::FunctionExpression& call_;
    Scope* scope_;
};

// Whether the folded name is that of an aggregate function.
[[nodiscard]] bool isAggregate(std::string_view name);

}  // namespace basalt::embedded
