#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/query.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

std::int64_t parseSignedInteger(TokenCursor& cursor) {
    const bool negative = cursor.accept(TokenKind::Minus);
    if (!negative) cursor.accept(TokenKind::Plus);
    if (!cursor.at(TokenKind::Literal)) cursor.failHere();
    const Literal& value = cursor.literals()[cursor.peek().literal];
    std::int64_t number = value.integer;
    if (value.type == LiteralType::Decimal && value.scale == 0 &&
        value.coefficient <= std::numeric_limits<std::int64_t>::max()) {
        number = static_cast<std::int64_t>(value.coefficient);
    } else if (value.type != LiteralType::Int) {
        cursor.failHere();
    }
    cursor.literals().fix(cursor.literal());
    return negative ? -number : number;
}

IdentityClause parseIdentity(TokenCursor& cursor) {
    IdentityClause identity;
    cursor.expect(Keyword::Identity);
    if (cursor.accept(TokenKind::LeftParenthesis)) {
        identity.seed = parseSignedInteger(cursor);
        cursor.expect(TokenKind::Comma);
        identity.increment = parseSignedInteger(cursor);
        cursor.expect(TokenKind::RightParenthesis);
    }
    if (cursor.at(Keyword::Not) && cursor.keyword(1) == Keyword::For) {
        cursor.next();
        cursor.next();
        cursor.expect(Keyword::Replication);
    }
    return identity;
}

ReferentialAction parseAction(TokenCursor& cursor) {
    if (cursor.accept(Keyword::Cascade)) return ReferentialAction::Cascade;
    if (cursor.accept(Keyword::No)) {
        cursor.expect(Keyword::Action);
        return ReferentialAction::NoAction;
    }
    cursor.expect(Keyword::Set);
    if (cursor.accept(Keyword::Null)) return ReferentialAction::SetNull;
    cursor.expect(Keyword::Default);
    return ReferentialAction::SetDefault;
}

void parseReferences(TokenCursor& cursor, Constraint& constraint) {
    cursor.expect(Keyword::References);
    constraint.referencedTable = cursor.objectName();
    if (cursor.at(TokenKind::LeftParenthesis)) constraint.referencedColumns = parseNameList(cursor);
    while (cursor.accept(Keyword::On)) {
        if (cursor.accept(Keyword::Delete)) {
            constraint.onDelete = parseAction(cursor);
        } else {
            cursor.expect(Keyword::Update);
            constraint.onUpdate = parseAction(cursor);
        }
    }
    if (cursor.at(Keyword::Not) && cursor.keyword(1) == Keyword::For) {
        cursor.next();
        cursor.next();
        cursor.expect(Keyword::Replication);
    }
}

std::optional<bool> parseClustered(TokenCursor& cursor) {
    if (cursor.accept(Keyword::Clustered)) return true;
    if (cursor.accept(Keyword::Nonclustered)) return false;
    return std::nullopt;
}

bool atConstraint(const TokenCursor& cursor) {
    return cursor.atAnyOf({Keyword::Constraint, Keyword::Primary, Keyword::Unique, Keyword::Foreign,
                           Keyword::References, Keyword::Check, Keyword::Default});
}

// `ofColumn`: the key's columns are not named, the constraint belongs to the column before it.
Constraint parseConstraint(TokenCursor& cursor, bool ofColumn) {
    const std::uint32_t start = cursor.begin();
    Constraint constraint;
    if (cursor.accept(Keyword::Constraint)) constraint.name = cursor.name();
    if (cursor.at(Keyword::Primary) || cursor.at(Keyword::Unique)) {
        constraint.kind = cursor.at(Keyword::Primary) ? ConstraintKind::PrimaryKey : ConstraintKind::Unique;
        if (cursor.next(); constraint.kind == ConstraintKind::PrimaryKey) cursor.expect(Keyword::Key);
        constraint.clustered = parseClustered(cursor);
        if (!ofColumn || cursor.at(TokenKind::LeftParenthesis)) constraint.columns = parseKeyColumns(cursor);
        skipStorageOptions(cursor);
    } else if (cursor.accept(Keyword::Check)) {
        constraint.kind = ConstraintKind::Check;
        if (cursor.at(Keyword::Not) && cursor.keyword(1) == Keyword::For) {
            cursor.next();
            cursor.next();
            cursor.expect(Keyword::Replication);
        }
        cursor.expect(TokenKind::LeftParenthesis);
        constraint.expression = parseCondition(cursor);
        cursor.expect(TokenKind::RightParenthesis);
    } else if (cursor.accept(Keyword::Default)) {
        constraint.kind = ConstraintKind::Default;
        constraint.expression = parseOperand(cursor);
        if (!ofColumn) {
            cursor.expect(Keyword::For);
            constraint.forColumn = cursor.name();
        }
        if (cursor.at(Keyword::With) && cursor.keyword(1) == Keyword::Values) {
            cursor.next();
            cursor.next();
            constraint.withValues = true;
        }
    } else {
        constraint.kind = ConstraintKind::ForeignKey;
        if (!ofColumn) {
            cursor.expect(Keyword::Foreign);
            cursor.expect(Keyword::Key);
            constraint.columns = parseKeyColumns(cursor);
        } else if (cursor.accept(Keyword::Foreign)) {
            cursor.expect(Keyword::Key);
            if (cursor.at(TokenKind::LeftParenthesis)) constraint.columns = parseKeyColumns(cursor);
        }
        parseReferences(cursor, constraint);
    }
    constraint.range = cursor.from(start);
    return constraint;
}

// The one option that changes what an INSERT does: scripts of other programs name it, and turn it off.
void refuseDoublesThatAreIgnored(const TokenCursor& cursor) {
    int open = 0;
    for (std::size_t at = 0; cursor.peek(at).kind != TokenKind::End; ++at) {
        if (cursor.peek(at).kind == TokenKind::LeftParenthesis) ++open;
        if (cursor.peek(at).kind == TokenKind::RightParenthesis && --open == 0) return;
        if (cursor.atWord("IGNORE_DUP_KEY", at) && cursor.keyword(at + 2) == Keyword::On)
            cursor.unsupported("IGNORE_DUP_KEY = ON", cursor.peek(at).range);
    }
}

}  // namespace

void skipStorageOptions(TokenCursor& cursor) {
    for (;;) {
        if (cursor.at(Keyword::With) && cursor.peek(1).kind == TokenKind::LeftParenthesis) {
            cursor.next();
            refuseDoublesThatAreIgnored(cursor);
            cursor.skipParentheses();
        } else if ((cursor.at(Keyword::On) && cursor.atName(1)) || cursor.at(Keyword::TextimageOn)) {
            cursor.next();
            cursor.name();
        } else {
            return;
        }
    }
}

std::vector<KeyColumn> parseKeyColumns(TokenCursor& cursor) {
    std::vector<KeyColumn> columns;
    cursor.expect(TokenKind::LeftParenthesis);
    do {
        KeyColumn column;
        column.name = cursor.name();
        if (cursor.accept(Keyword::Desc)) {
            column.descending = true;
        } else {
            cursor.accept(Keyword::Asc);
        }
        columns.push_back(std::move(column));
    } while (cursor.accept(TokenKind::Comma));
    cursor.expect(TokenKind::RightParenthesis);
    return columns;
}

ColumnDefinition parseColumnDefinition(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    ColumnDefinition column;
    column.name = cursor.name();
    if (cursor.accept(Keyword::As)) {
        column.computed = parseExpression(cursor);
        column.persisted = cursor.accept(Keyword::Persisted);
    } else {
        column.type = parseDataType(cursor);
    }
    for (;;) {
        // A name for NOT NULL is allowed and kept by nobody.
        if (cursor.at(Keyword::Constraint) &&
            (cursor.keyword(2) == Keyword::Not || cursor.keyword(2) == Keyword::Null)) {
            cursor.next();
            cursor.name();
        }
        if (cursor.accept(Keyword::Null)) {
            column.nullable = true;
        } else if (cursor.at(Keyword::Not)) {
            cursor.next();
            cursor.expect(Keyword::Null);
            column.nullable = false;
        } else if (cursor.at(Keyword::Identity)) {
            column.identity = parseIdentity(cursor);
        } else if (cursor.accept(Keyword::Collate)) {
            column.collation = cursor.name();
        } else if (cursor.at(Keyword::Rowguidcol) || cursor.at(Keyword::Sparse)) {
            cursor.next();
        } else if (atConstraint(cursor)) {
            column.constraints.push_back(parseConstraint(cursor, true));
        } else {
            break;
        }
    }
    column.range = cursor.from(start);
    return column;
}

void parseTableElement(TokenCursor& cursor, TableDefinition& definition) {
    if (cursor.at(Keyword::Index)) cursor.unsupportedHere("INDEX");
    if (atConstraint(cursor)) {
        definition.constraints.push_back(parseConstraint(cursor, false));
    } else {
        ColumnDefinition column = parseColumnDefinition(cursor);
        // A key that names its columns is one of the table, only the comma before it is missing.
        const auto ofTable =
            std::stable_partition(column.constraints.begin(), column.constraints.end(),
                                  [](const Constraint& constraint) { return constraint.columns.empty(); });
        std::move(ofTable, column.constraints.end(), std::back_inserter(definition.constraints));
        column.constraints.erase(ofTable, column.constraints.end());
        definition.columns.push_back(std::move(column));
    }
}

TableDefinition parseTableDefinition(TokenCursor& cursor) {
    TableDefinition definition;
    cursor.expect(TokenKind::LeftParenthesis);
    do {
        // The server allows a comma after the last element.
        if (cursor.at(TokenKind::RightParenthesis) && !definition.columns.empty()) break;
        parseTableElement(cursor, definition);
    } while (cursor.accept(TokenKind::Comma) ||
             // and no comma before a constraint of the table
             cursor.atAnyOf({Keyword::Constraint, Keyword::Foreign}));
    cursor.expect(TokenKind::RightParenthesis);
    return definition;
}

StatementPtr parseCreateTable(TokenCursor& cursor, std::uint32_t start) {
    auto statement = std::make_unique<CreateTableStatement>();
    cursor.expect(Keyword::Table);
    statement->name = cursor.objectName();
    statement->definition = parseTableDefinition(cursor);
    skipStorageOptions(cursor);
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
