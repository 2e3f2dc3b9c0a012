// The tokens of a batch.
#pragma once

#include <cstdint>

#include "engines/embedded/lexer/literal.h"
#include "engines/embedded/lexer/source_range.h"

namespace basalt::embedded {

enum class TokenKind : std::uint8_t {
    End,
    Word,            // a keyword or a plain name; #t and ##t are words
    QuotedName,      // [name] or "name"
    Variable,        // @name
    SystemVariable,  // @@name
    Literal,         // Token::literal says which
    Marker,          // ?
    // Punctuation
    LeftParenthesis,
    RightParenthesis,
    LeftBrace,
    RightBrace,
    Comma,
    Point,
    Semicolon,
    Colon,
    // Operators
    Plus,
    Minus,
    Star,
    Slash,
    Percent,
    Ampersand,
    Bar,
    Caret,
    Tilde,
    Equal,
    NotEqual,  // <> and !=
    Less,
    LessOrEqual,  // <= and !>
    Greater,
    GreaterOrEqual,  // >= and !<
    PlusEqual,
    MinusEqual,
    StarEqual,
    SlashEqual,
    PercentEqual,
    AmpersandEqual,
    BarEqual,
    CaretEqual,
    Unknown,  // a character that no statement can contain
};

struct Token {
    TokenKind kind = TokenKind::End;
    SourceRange range;
    LiteralIndex literal = 0;  // Literal only
};

}  // namespace basalt::embedded
