// CREATE and ALTER: which object, and which statement that makes.
#include <utility>

#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

namespace {

StatementPtr parseModule(TokenCursor& cursor, DefinitionMode mode, std::uint32_t start) {
    switch (cursor.keyword()) {
        case Keyword::View:
            return parseCreateView(cursor, mode, start);
        case Keyword::Proc:
        case Keyword::Procedure:
            return parseCreateProcedure(cursor, mode, start);
        case Keyword::Function:
            return parseCreateFunction(cursor, mode, start);
        default:
            return nullptr;
    }
}

[[noreturn]] void refuse(TokenCursor& cursor, std::string_view verb) {
    if (!cursor.at(TokenKind::Word)) cursor.failHere();
    cursor.unsupportedHere(std::string(verb) + " " + std::string(cursor.spelling(cursor.peek())));
}

}  // namespace

StatementPtr parseCreate(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    cursor.expect(Keyword::Create);
    DefinitionMode mode = DefinitionMode::Create;
    if (cursor.accept(Keyword::Or)) {
        cursor.expect(Keyword::Alter);
        mode = DefinitionMode::CreateOrAlter;
    }
    if (StatementPtr module = parseModule(cursor, mode, start)) return module;
    if (mode == DefinitionMode::Create) {
        if (cursor.at(Keyword::Table)) return parseCreateTable(cursor, start);
        if (cursor.atAnyOf({Keyword::Unique, Keyword::Clustered, Keyword::Nonclustered, Keyword::Index})) {
            return parseCreateIndex(cursor, start);
        }
    }
    refuse(cursor, "CREATE");
}

StatementPtr parseAlter(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    cursor.expect(Keyword::Alter);
    if (StatementPtr module = parseModule(cursor, DefinitionMode::Alter, start)) return module;
    if (cursor.at(Keyword::Table)) return parseAlterTable(cursor, start);
    refuse(cursor, "ALTER");
}

}  // namespace basalt::embedded
