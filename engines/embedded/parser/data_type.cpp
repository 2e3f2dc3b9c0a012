#include <utility>

#include "engines/embedded/parser/expression.h"

namespace basalt::embedded {

using namespace ast;

namespace {

// The standard's names of two or three words, under the one word that everything else knows them by.
bool parseStandardName(TokenCursor& cursor, std::string& name) {
    if (cursor.accept(Keyword::Double)) {
        cursor.expect(Keyword::Precision);
        name = "float";
        return true;
    }
    const bool national = cursor.accept(Keyword::National);
    if (national ||
        ((cursor.at(Keyword::Char) || cursor.at(Keyword::Character)) && cursor.keyword(1) == Keyword::Varying)) {
        if (national && cursor.acceptWord("TEXT")) {
            name = "ntext";
            return true;
        }
        if (!cursor.accept(Keyword::Char)) cursor.expect(Keyword::Character);
        const bool varying = cursor.accept(Keyword::Varying);
        name = std::string(national ? "n" : "") + (varying ? "varchar" : "char");
        return true;
    }
    return false;
}

}  // namespace

DataType parseDataType(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    DataType type;
    if (std::string standard; parseStandardName(cursor, standard)) {
        Identifier name;
        name.text = std::move(standard);
        name.range = cursor.from(start);
        type.name.range = name.range;
        type.name.parts.push_back(std::move(name));
    } else {
        if (cursor.at(Keyword::Cursor)) cursor.unsupportedHere("CURSOR");
        type.name = cursor.objectName();
    }
    if (cursor.accept(TokenKind::LeftParenthesis)) {
        if (cursor.accept(Keyword::Max)) {
            type.max = true;
        } else {
            type.length = cursor.fixedInteger();
            if (cursor.accept(TokenKind::Comma)) type.scale = cursor.fixedInteger();
        }
        cursor.expect(TokenKind::RightParenthesis);
    }
    type.range = cursor.from(start);
    return type;
}

}  // namespace basalt::embedded
