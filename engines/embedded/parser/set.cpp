// SET: variables and options.
#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/query.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

BinaryOperator operationOf(AssignmentOperator op) {
    switch (op) {
        case AssignmentOperator::Subtract:
            return BinaryOperator::Subtract;
        case AssignmentOperator::Multiply:
            return BinaryOperator::Multiply;
        case AssignmentOperator::Divide:
            return BinaryOperator::Divide;
        case AssignmentOperator::Modulo:
            return BinaryOperator::Modulo;
        case AssignmentOperator::BitAnd:
            return BinaryOperator::BitAnd;
        case AssignmentOperator::BitOr:
            return BinaryOperator::BitOr;
        case AssignmentOperator::BitXor:
            return BinaryOperator::BitXor;
        case AssignmentOperator::Set:
        case AssignmentOperator::Add:
            break;
    }
    return BinaryOperator::Add;
}

StatementPtr parseSetVariable(TokenCursor& cursor, std::uint32_t start) {
    auto statement = std::make_unique<SetVariableStatement>();
    const SourceRange variableRange = cursor.peek().range;
    statement->name = cursor.variable();
    const SourceRange operatorRange = cursor.peek().range;
    const std::optional<AssignmentOperator> op = acceptAssignment(cursor);
    if (!op) cursor.failHere();
    if (cursor.at(Keyword::Cursor)) cursor.unsupportedHere("CURSOR");
    statement->value = parseExpression(cursor);
    if (*op != AssignmentOperator::Set) {
        auto variable = std::make_unique<VariableExpression>();
        variable->name = statement->name;
        variable->range = variableRange;
        auto operation = std::make_unique<BinaryExpression>();
        operation->op = operationOf(*op);
        operation->operatorRange = operatorRange;
        operation->left = std::move(variable);
        operation->right = std::move(statement->value);
        operation->range = cursor.from(start);
        statement->value = std::move(operation);
    }
    return finish(cursor, std::move(statement), start);
}

void expectOnOff(TokenCursor& cursor, SetOptionStatement& statement) {
    if (cursor.accept(Keyword::On)) {
        statement.on = true;
    } else {
        cursor.expect(Keyword::Off);
        statement.on = false;
    }
}

void parseIsolationLevel(TokenCursor& cursor, SetOptionStatement& statement) {
    cursor.next();
    cursor.expect(Keyword::Isolation);
    cursor.expect(Keyword::Level);
    statement.options.emplace_back("TRANSACTION ISOLATION LEVEL");
    statement.word = cursor.capitalWord();
    if (statement.word == "READ" || statement.word == "REPEATABLE") statement.word += " " + cursor.capitalWord();
}

// What stands behind an option that is not just ON or OFF.
void parseOptionValue(TokenCursor& cursor, SetOptionStatement& statement) {
    if (cursor.atAnyOf({Keyword::On, Keyword::Off})) {
        expectOnOff(cursor, statement);
    } else if (cursor.at(TokenKind::Word)) {
        statement.word = cursor.capitalWord();
    } else if (cursor.at(TokenKind::Literal) || cursor.at(TokenKind::Variable) || cursor.at(TokenKind::Minus)) {
        statement.value = parseOperand(cursor);
    } else {
        cursor.failHere();
    }
}

}  // namespace

StatementPtr parseSet(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    cursor.expect(Keyword::Set);
    if (cursor.at(TokenKind::Variable)) return parseSetVariable(cursor, start);
    auto statement = std::make_unique<SetOptionStatement>();
    if (cursor.at(Keyword::Transaction) || cursor.at(Keyword::Tran)) {
        parseIsolationLevel(cursor, *statement);
    } else if (cursor.accept(Keyword::IdentityInsert)) {
        statement->options.emplace_back("IDENTITY_INSERT");
        statement->table = cursor.objectName();
        expectOnOff(cursor, *statement);
    } else if (cursor.accept(Keyword::Statistics)) {
        std::string option = "STATISTICS " + cursor.capitalWord();
        statement->options.push_back(std::move(option));
        expectOnOff(cursor, *statement);
    } else {
        do {
            statement->options.push_back(cursor.capitalWord());
        } while (cursor.accept(TokenKind::Comma));
        if (statement->options.size() > 1) {
            expectOnOff(cursor, *statement);
        } else {
            parseOptionValue(cursor, *statement);
        }
    }
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
