// Statements that read and change rows.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engines/embedded/ast/query.h"
#include "engines/embedded/ast/statement.h"

namespace basalt::embedded::ast {

struct ExecuteStatement;  // ast/control_statement.h

struct SelectStatement : StatementOf<StatementKind::Select> {
    QueryPtr query;
};

// What INSERT, UPDATE and DELETE write to: a table (or an alias of FROM), or a table variable.
struct TableTarget {
    ObjectName name;       // empty for a variable
    std::string variable;  // @t
    SourceRange range;
};

// OUTPUT inserted.ID, deleted.* [INTO target [(columns)]]
struct OutputClause {
    std::vector<SelectItem> items;
    std::optional<TableTarget> into;
    std::vector<Identifier> columns;
    SourceRange range;
};

struct InsertStatement : StatementOf<StatementKind::Insert> {
    enum class Source : std::uint8_t { Values, Query, Execute, DefaultValues };

    std::vector<CommonTableExpression> with;
    std::optional<TopClause> top;
    TableTarget target;
    std::vector<Identifier> columns;  // empty: all but the identity column
    std::optional<OutputClause> output;
    Source source = Source::Values;
    std::vector<std::vector<ExpressionPtr>> rows;  // Values; DEFAULT may stand for a value
    QueryPtr query;                                // Query
    std::unique_ptr<ExecuteStatement> execute;     // Execute
    InsertStatement();
    ~InsertStatement() override;
};

// column = e, @v = e, @v = column = e; also +=
struct SetClause {
    std::string variable;  // empty when there is none
    ObjectName column;     // empty when only the variable is set
    AssignmentOperator op = AssignmentOperator::Set;
    ExpressionPtr value;
    SourceRange range;
};

struct UpdateStatement : StatementOf<StatementKind::Update> {
    std::vector<CommonTableExpression> with;
    std::optional<TopClause> top;
    TableTarget target;
    std::vector<SetClause> assignments;
    std::optional<OutputClause> output;
    std::vector<TableSourcePtr> from;
    ExpressionPtr where;
};

struct DeleteStatement : StatementOf<StatementKind::Delete> {
    std::vector<CommonTableExpression> with;
    std::optional<TopClause> top;
    TableTarget target;
    std::optional<OutputClause> output;
    std::vector<TableSourcePtr> from;  // the second FROM
    ExpressionPtr where;
};

// DBCC CHECKIDENT(t), (N't', NORESEED), (N't', RESEED, 7)
struct CheckIdentityStatement : StatementOf<StatementKind::CheckIdentity> {
    enum class Action : std::uint8_t { Correct, Report, Set };
    Identifier name;      // when the table is given by its bare name
    ExpressionPtr table;  // otherwise
    Action action = Action::Correct;
    ExpressionPtr value;  // Set
    bool silent = false;  // WITH NO_INFOMSGS
};

struct TruncateStatement : StatementOf<StatementKind::Truncate> {
    ObjectName table;
};

}  // namespace basalt::embedded::ast
