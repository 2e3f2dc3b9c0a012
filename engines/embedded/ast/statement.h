// What every statement of the tree has in common. The statements themselves: ast/data_statement.h (SELECT, INSERT,
// UPDATE, DELETE, TRUNCATE), ast/definition_statement.h (CREATE, ALTER, DROP), ast/control_statement.h (the procedural
// ones).
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "engines/embedded/lexer/source_range.h"

namespace basalt::embedded::ast {

enum class StatementKind : std::uint8_t {
    Select,
    Insert,
    Update,
    Delete,
    CheckIdentity,
    Truncate,
    CreateTable,
    AlterTable,
    CreateIndex,
    CreateView,
    CreateProcedure,
    CreateFunction,
    Drop,
    Declare,
    SetVariable,
    SetOption,
    If,
    While,
    Block,
    Break,
    Continue,
    Return,
    Goto,
    Label,
    Print,
    RaisError,
    Throw,
    TryCatch,
    Execute,
    Transaction,
};

struct Statement {
    const StatementKind kind;
    SourceRange range;  // without the semicolon

    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    virtual ~Statement() = default;

protected:
    explicit Statement(StatementKind k) : kind(k) {}
};

using StatementPtr = std::unique_ptr<Statement>;
using Statements = std::vector<StatementPtr>;

template <StatementKind Kind>
struct StatementOf : Statement {
    static constexpr StatementKind kKind = Kind;
    StatementOf() : Statement(Kind) {}
};

template <typename Node>
[[nodiscard]] const Node& as(const Statement& statement) {
    return static_cast<const Node&>(statement);
}
template <typename Node>
[[nodiscard]] const Node* tryAs(const Statement* statement) {
    return statement && statement->kind == Node::kKind ? static_cast<const Node*>(statement) : nullptr;
}

}  // namespace basalt::embedded::ast
