#include <utility>

#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

ObjectType parseObjectType(TokenCursor& cursor) {
    switch (cursor.keyword()) {
        case Keyword::Table:
            return ObjectType::Table;
        case Keyword::View:
            return ObjectType::View;
        case Keyword::Proc:
        case Keyword::Procedure:
            return ObjectType::Procedure;
        case Keyword::Function:
            return ObjectType::Function;
        case Keyword::Index:
            return ObjectType::Index;
        case Keyword::Trigger:
            return ObjectType::Trigger;
        default:
            if (cursor.at(TokenKind::Word)) {
                cursor.unsupportedHere("DROP " + std::string(cursor.spelling(cursor.peek())));
            }
            cursor.failHere();
    }
}

DropStatement::Item parseItem(TokenCursor& cursor, ObjectType type) {
    DropStatement::Item item;
    item.name = cursor.objectName();
    if (type != ObjectType::Index) return item;
    const std::size_t parts = item.name.parts.size();
    if (cursor.accept(Keyword::On)) {
        item.table = cursor.objectName();
    } else if (parts > 1 && !item.name.parts[parts - 2].empty()) {
        // DROP INDEX table.index
        Identifier index = std::move(item.name.parts.back());
        item.name.parts.pop_back();
        item.table = std::move(item.name);
        item.table.range.end = item.table.parts.back().range.end;
        item.name = {};
        item.name.range = index.range;
        item.name.parts.push_back(std::move(index));
    } else {
        // An index has no name without its table.
        cursor.fail(159, "Must specify the table name and index name for the DROP INDEX statement.", item.name.range);
    }
    return item;
}

}  // namespace

StatementPtr parseDrop(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    auto statement = std::make_unique<DropStatement>();
    cursor.expect(Keyword::Drop);
    statement->type = parseObjectType(cursor);
    cursor.next();
    if (cursor.accept(Keyword::If)) {
        cursor.expect(Keyword::Exists);
        statement->ifExists = true;
    }
    do {
        statement->items.push_back(parseItem(cursor, statement->type));
    } while (cursor.accept(TokenKind::Comma));
    return finish(cursor, std::move(statement), start);
}

}  // namespace basalt::embedded
