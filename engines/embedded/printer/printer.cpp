#include "engines/embedded/printer/printer.h"

#include "engines/embedded/printer/writer.h"

namespace basalt::embedded {

void write(Writer& writer, const ast::Statement& statement) {
    if (statement.kind <= ast::StatementKind::Truncate) {
        writeDataStatement(writer, statement);
    } else if (statement.kind <= ast::StatementKind::Drop) {
        writeDefinitionStatement(writer, statement);
    } else {
        writeControlStatement(writer, statement);
    }
}

void writeStatements(Writer& writer, const ast::Statements& statements) {
    bool first = true;
    for (const ast::StatementPtr& statement : statements) {
        if (!first) writer.newLine();
        first = false;
        write(writer, *statement);
        writer << ";";
    }
}

std::string print(const ast::Batch& batch, Parentheses parentheses) {
    Writer writer(batch.literals, parentheses);
    writeStatements(writer, batch.statements);
    if (!batch.statements.empty()) writer << "\n";
    return writer.take();
}

std::string print(const ast::Statement& statement, const LiteralTable& literals, Parentheses parentheses) {
    Writer writer(literals, parentheses);
    write(writer, statement);
    return writer.take();
}

std::string print(const ast::Expression& expression, const LiteralTable& literals, Parentheses parentheses) {
    Writer writer(literals, parentheses);
    write(writer, expression);
    return writer.take();
}

std::string print(const ast::QueryExpression& query, const LiteralTable& literals, Parentheses parentheses) {
    Writer writer(literals, parentheses);
    write(writer, query);
    return writer.take();
}

}  // namespace basalt::embedded
