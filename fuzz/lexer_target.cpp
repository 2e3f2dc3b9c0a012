#include <string>

#include "ado/error.h"
#include "engines/embedded/lexer/lexer.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"

namespace basalt::fuzz {

void lexer(std::string_view input) {
    using namespace embedded;
    static Lexer reused;
    try {
        reused.scan(input);
    } catch (const DatabaseError& error) {
        require(reused.tokens().empty() && reused.literals().empty() && reused.key().empty(),
                "a failure leaves nothing");
        require(error.what()[0] != '\0', "an error has a message");
        return;
    }
    std::uint32_t end = 0;
    LiteralIndex nextLiteral = 0;
    for (const Token& token : reused.tokens()) {
        require(token.range.begin >= end, "tokens are in order");
        require(token.range.end <= input.size(), "tokens lie in the text");
        end = token.range.end;
        if (token.kind == TokenKind::End) continue;
        require(!token.range.empty(), "tokens are not empty");
        if (token.kind == TokenKind::Literal) require(token.literal == nextLiteral++, "literals are counted in order");
    }
    require(!reused.tokens().empty() && reused.tokens().back().kind == TokenKind::End, "the list ends with End");
    require(nextLiteral == reused.literals().size(), "every literal has a token");

    Lexer fresh;
    const std::string copy(input);
    fresh.scan(copy);
    require(fresh.key() == reused.key(), "the key depends on the text alone");
    require(fresh.tokens().size() == reused.tokens().size(), "the tokens depend on the text alone");
    const LiteralTable table(fresh.literals());
    for (LiteralIndex i = 0; i < table.size(); ++i)
        table.fix(i);
    require(table.fits(reused.literals()), "the literals depend on the text alone");
}

}  // namespace basalt::fuzz
