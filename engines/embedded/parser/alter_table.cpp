#include <utility>

#include "engines/embedded/parser/expression.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

void parseDropItems(TokenCursor& cursor, AlterTableStatement& alter) {
    alter.action = AlterTableStatement::Action::Drop;
    // COLUMN and CONSTRAINT hold for the names after them until the other word comes.
    bool column = false;
    do {
        AlterTableStatement::DropItem item;
        if (cursor.accept(Keyword::Column)) {
            column = true;
        } else if (cursor.accept(Keyword::Constraint)) {
            column = false;
        }
        if (cursor.at(Keyword::If)) {
            cursor.next();
            cursor.expect(Keyword::Exists);
            item.ifExists = true;
        }
        item.column = column;
        item.name = cursor.name();
        alter.dropped.push_back(std::move(item));
    } while (cursor.accept(TokenKind::Comma));
}

void parseConstraintSwitch(TokenCursor& cursor, AlterTableStatement& alter) {
    alter.action = cursor.at(Keyword::Check) ? AlterTableStatement::Action::EnableConstraints
                                             : AlterTableStatement::Action::DisableConstraints;
    cursor.next();
    cursor.expect(Keyword::Constraint);
    if (cursor.accept(Keyword::All)) {
        alter.allConstraints = true;
        return;
    }
    do {
        alter.constraints.push_back(cursor.name());
    } while (cursor.accept(TokenKind::Comma));
}

void parseAlterColumn(TokenCursor& cursor, AlterTableStatement& alter) {
    alter.action = AlterTableStatement::Action::AlterColumn;
    cursor.expect(Keyword::Alter);
    cursor.expect(Keyword::Column);
    const std::uint32_t start = cursor.begin();
    ColumnDefinition column;
    column.name = cursor.name();
    if (cursor.at(Keyword::Add) || cursor.at(Keyword::Drop)) cursor.unsupportedHere(cursor.spelling(cursor.peek()));
    column.type = parseDataType(cursor);
    if (cursor.accept(Keyword::Collate)) column.collation = cursor.name();
    if (cursor.accept(Keyword::Null)) {
        column.nullable = true;
    } else if (cursor.accept(Keyword::Not)) {
        cursor.expect(Keyword::Null);
        column.nullable = false;
    }
    column.range = cursor.from(start);
    alter.altered = std::move(column);
}

}  // namespace

StatementPtr parseAlterTable(TokenCursor& cursor, std::uint32_t start) {
    auto alter = std::make_unique<AlterTableStatement>();
    cursor.expect(Keyword::Table);
    alter->name = cursor.objectName();
    // WITH CHECK and WITH NOCHECK say whether rows that are there are looked at; they always are.
    if (cursor.at(Keyword::With) && (cursor.keyword(1) == Keyword::Check || cursor.keyword(1) == Keyword::Nocheck)) {
        cursor.next();
        cursor.next();
        if (cursor.at(Keyword::Check)) {
            parseConstraintSwitch(cursor, *alter);
            return finish(cursor, std::move(alter), start);
        }
        if (!cursor.at(Keyword::Add)) cursor.failHere();
    }
    switch (cursor.keyword()) {
        case Keyword::Add:
            cursor.next();
            alter->action = AlterTableStatement::Action::Add;
            do {
                parseTableElement(cursor, alter->added);
                skipStorageOptions(cursor);
            } while (cursor.accept(TokenKind::Comma));
            break;
        case Keyword::Drop:
            cursor.next();
            parseDropItems(cursor, *alter);
            break;
        case Keyword::Alter:
            parseAlterColumn(cursor, *alter);
            break;
        case Keyword::Check:
        case Keyword::Nocheck:
            parseConstraintSwitch(cursor, *alter);
            break;
        default:
            if (cursor.at(TokenKind::Word)) {
                cursor.unsupportedHere("ALTER TABLE " + std::string(cursor.spelling(cursor.peek())));
            }
            cursor.failHere();
    }
    return finish(cursor, std::move(alter), start);
}

}  // namespace basalt::embedded
