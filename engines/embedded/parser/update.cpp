#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/query.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

AssignmentOperator expectAssignment(TokenCursor& cursor) {
    const std::optional<AssignmentOperator> op = acceptAssignment(cursor);
    if (!op) cursor.failHere();
    return *op;
}

SetClause parseSetClause(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    SetClause clause;
    if (cursor.at(TokenKind::Variable)) {
        clause.variable = cursor.variable();
        // @v = column = value
        if (cursor.at(TokenKind::Equal) && cursor.atName(1)) {
            std::size_t behind = 2;
            while (cursor.peek(behind).kind == TokenKind::Point)
                behind += 2;
            const TokenKind kind = cursor.peek(behind).kind;
            if (kind == TokenKind::Equal || (kind >= TokenKind::PlusEqual && kind <= TokenKind::CaretEqual)) {
                cursor.next();
                clause.column = cursor.objectName();
            }
        }
    } else {
        clause.column = cursor.objectName();
        if (cursor.at(TokenKind::LeftParenthesis)) cursor.unsupported(".WRITE", clause.column.range);
    }
    clause.op = expectAssignment(cursor);
    clause.value = parseExpressionOrDefault(cursor);
    clause.range = cursor.from(start);
    return clause;
}

}  // namespace

StatementPtr parseUpdate(TokenCursor& cursor, With with) {
    const std::uint32_t start = cursor.begin();
    auto update = std::make_unique<UpdateStatement>();
    update->with = std::move(with);
    cursor.expect(Keyword::Update);
    if (cursor.at(Keyword::Statistics)) cursor.unsupportedHere("UPDATE STATISTICS");
    update->top = parseTop(cursor);
    update->target = parseTarget(cursor);
    cursor.expect(Keyword::Set);
    do {
        update->assignments.push_back(parseSetClause(cursor));
    } while (cursor.accept(TokenKind::Comma));
    update->output = parseOutput(cursor);
    if (cursor.accept(Keyword::From)) update->from = parseFrom(cursor);
    if (cursor.accept(Keyword::Where)) {
        if (cursor.at(Keyword::Current)) cursor.unsupportedHere("CURRENT OF");
        update->where = parseCondition(cursor);
    }
    static_cast<void>(parseQueryHints(cursor));
    return finish(cursor, std::move(update), start);
}

}  // namespace basalt::embedded
