// What INSERT, UPDATE and DELETE have in common: the table they write to and OUTPUT.
#include <utility>

#include "engines/embedded/parser/query.h"
#include "engines/embedded/parser/statement.h"

namespace basalt::embedded {

using namespace ast;

TableTarget parseTarget(TokenCursor& cursor) {
    const std::uint32_t start = cursor.begin();
    TableTarget target;
    if (cursor.at(TokenKind::Variable)) {
        target.variable = cursor.variable();
    } else {
        for (const Keyword word : {Keyword::Openquery, Keyword::Openrowset}) {
            if (cursor.at(word)) cursor.unsupportedHere(spelling(word));
        }
        target.name = cursor.objectName();
    }
    target.range = cursor.from(start);
    // Locks are taken for the whole database here, hints cannot change that.
    static_cast<void>(parseTableHints(cursor));
    return target;
}

std::optional<OutputClause> parseOutput(TokenCursor& cursor) {
    if (!cursor.at(Keyword::Output)) return std::nullopt;
    const std::uint32_t start = cursor.begin();
    cursor.next();
    OutputClause output;
    do {
        output.items.push_back(parseSelectItem(cursor));
    } while (cursor.accept(TokenKind::Comma));
    if (cursor.accept(Keyword::Into)) {
        output.into = parseTarget(cursor);
        if (cursor.at(TokenKind::LeftParenthesis) && cursor.atName(1)) output.columns = parseNameList(cursor);
    }
    output.range = cursor.from(start);
    return output;
}

}  // namespace basalt::embedded
