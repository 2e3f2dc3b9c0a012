// Where the text of a tree gathers, and one overload a node.
#pragma once

#include <string>
#include <string_view>

#include "engines/embedded/ast/control_statement.h"
#include "engines/embedded/ast/data_statement.h"
#include "engines/embedded/ast/definition_statement.h"
#include "engines/embedded/ast/query.h"
#include "engines/embedded/printer/printer.h"

namespace basalt::embedded {

class Writer {
public:
    Writer(const LiteralTable& literals, Parentheses parentheses) : literals_(literals), parentheses_(parentheses) {}

    Writer& operator<<(std::string_view text) {
        text_ += text;
        return *this;
    }

    [[nodiscard]] const LiteralTable& literals() const { return literals_; }
    [[nodiscard]] bool all() const { return parentheses_ == Parentheses::All; }
    [[nodiscard]] std::string take() { return std::move(text_); }

    void newLine() {
        text_ += '\n';
        text_.append(static_cast<std::size_t>(indent_) * 4, ' ');
    }
    void indent() { ++indent_; }
    void outdent() { --indent_; }

private:
    const LiteralTable& literals_;
    Parentheses parentheses_;
    std::string text_;
    int indent_ = 0;
};

// Calls write(item) for each, with ", " between them.
template <typename List, typename Write>
void writeList(Writer& writer, const List& list, Write write) {
    bool first = true;
    for (const auto& item : list) {
        if (!first) writer << ", ";
        first = false;
        write(item);
    }
}

void write(Writer& writer, const ast::Identifier& name);
void write(Writer& writer, const ast::ObjectName& name);
void write(Writer& writer, const ast::DataType& type);
void writeNames(Writer& writer, const std::vector<ast::Identifier>& names);  // (a, b)

void write(Writer& writer, const ast::Expression& expression);
// As an operand of + or of a predicate, so that no condition and no looser operation stands bare.
void writeOperand(Writer& writer, const ast::Expression& expression);
void writeExpressions(Writer& writer, const std::vector<ast::ExpressionPtr>& list);  // a, b
void write(Writer& writer, const ast::OrderItem& item);
void writeFunctionName(Writer& writer, const ast::ObjectName& name);

void write(Writer& writer, const ast::QueryExpression& query);
void write(Writer& writer, const ast::TopClause& top);
void write(Writer& writer, const ast::SelectItem& item);
void write(Writer& writer, const ast::TableSource& source);
void writeFrom(Writer& writer, const std::vector<ast::TableSourcePtr>& from);
void writeWith(Writer& writer, const std::vector<ast::CommonTableExpression>& with);
[[nodiscard]] std::string_view spellingOf(ast::AssignmentOperator op);

void write(Writer& writer, const ast::TableDefinition& definition);
void write(Writer& writer, const ast::ColumnDefinition& column);
void writeConstraint(Writer& writer, const ast::Constraint& constraint, bool ofColumn);
void writeKeyColumns(Writer& writer, const std::vector<ast::KeyColumn>& columns);

void write(Writer& writer, const ast::Statement& statement);
void writeStatements(Writer& writer, const ast::Statements& statements);  // each on its line, with semicolons
// By family; the statement is one of that family.
void writeDataStatement(Writer& writer, const ast::Statement& statement);
void writeDefinitionStatement(Writer& writer, const ast::Statement& statement);
void writeControlStatement(Writer& writer, const ast::Statement& statement);
void write(Writer& writer, const ast::ExecuteStatement& statement);

}  // namespace basalt::embedded
