// The procedural statements: variables, flow, errors, procedure calls, transactions, options.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engines/embedded/ast/query.h"
#include "engines/embedded/ast/statement.h"
#include "engines/embedded/ast/table_definition.h"

namespace basalt::embedded::ast {

struct DeclareStatement : StatementOf<StatementKind::Declare> {
    struct Variable {
        std::string name;       // with the leading @
        DataType type;          // of no meaning for a table variable
        ExpressionPtr initial;  // null when there is none
        std::optional<TableDefinition> table;
        SourceRange range;
    };
    std::vector<Variable> variables;
};

// SET @v = e. SET @v += e is read as SET @v = @v + e.
struct SetVariableStatement : StatementOf<StatementKind::SetVariable> {
    std::string name;
    ExpressionPtr value;
};

// SET NOCOUNT, XACT_ABORT ON; SET IDENTITY_INSERT t ON; SET TRANSACTION ISOLATION LEVEL READ COMMITTED;
// SET ROWCOUNT 10; SET DATEFORMAT dmy
struct SetOptionStatement : StatementOf<StatementKind::SetOption> {
    std::vector<std::string> options;  // in capitals; "TRANSACTION ISOLATION LEVEL" is one
    ObjectName table;                  // IDENTITY_INSERT
    std::optional<bool> on;            // ON or OFF
    std::string word;                  // any other word or words, in capitals: "READ COMMITTED", "DMY"
    ExpressionPtr value;               // a number, text or variable
};

struct IfStatement : StatementOf<StatementKind::If> {
    ExpressionPtr condition;
    StatementPtr then;
    StatementPtr otherwise;  // null when there is no ELSE
};

struct WhileStatement : StatementOf<StatementKind::While> {
    ExpressionPtr condition;
    StatementPtr body;
};

// BEGIN ... END
struct BlockStatement : StatementOf<StatementKind::Block> {
    Statements statements;
};

struct BreakStatement : StatementOf<StatementKind::Break> {};
struct ContinueStatement : StatementOf<StatementKind::Continue> {};

struct ReturnStatement : StatementOf<StatementKind::Return> {
    ExpressionPtr value;  // null when there is none
};

struct GotoStatement : StatementOf<StatementKind::Goto> {
    Identifier label;
};

struct LabelStatement : StatementOf<StatementKind::Label> {
    Identifier label;
};

struct PrintStatement : StatementOf<StatementKind::Print> {
    ExpressionPtr message;
};

// RAISERROR(message, severity, state, arguments...) WITH NOWAIT
struct RaisErrorStatement : StatementOf<StatementKind::RaisError> {
    ExpressionPtr message;  // a text, a variable, or a message number
    ExpressionPtr severity, state;
    std::vector<ExpressionPtr> arguments;
    std::vector<std::string> options;  // in capitals
};

// THROW number, message, state; or THROW alone, which raises the caught error again
struct ThrowStatement : StatementOf<StatementKind::Throw> {
    ExpressionPtr number, message, state;  // all null for the lone form
};

struct TryCatchStatement : StatementOf<StatementKind::TryCatch> {
    Statements tries;
    Statements catches;
};

struct ExecuteArgument {
    std::string name;     // with the leading @; empty when passed by position
    ExpressionPtr value;  // a literal (signed too), NULL, a variable, DEFAULT, or `?`; a bare word counts as its text
    bool output = false;
    SourceRange range;
};

// EXEC [@r =] p a, @b = c OUTPUT;  {call p(a, b)};  {? = call p(a)};  p a, b  as the first statement of a batch;
// EXEC(@text + N'...')
struct ExecuteStatement : StatementOf<StatementKind::Execute> {
    std::string returnVariable;                 // @r; empty when there is none
    std::optional<std::uint32_t> returnMarker;  // the ordinal of the `?` before = in {? = call ...}
    ObjectName procedure;                       // empty for the other two
    std::string procedureVariable;              // EXEC @name
    ExpressionPtr text;                         // EXEC(...)
    std::vector<ExecuteArgument> arguments;
    bool call = false;  // written {call ...}
};

struct TransactionStatement : StatementOf<StatementKind::Transaction> {
    enum class Action : std::uint8_t { Begin, Commit, Rollback, Save };
    Action action = Action::Begin;
    Identifier name;       // of the transaction or savepoint; empty when there is none
    std::string variable;  // a name held in a variable
};

}  // namespace basalt::embedded::ast
