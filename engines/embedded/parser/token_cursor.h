// The parser's place among the tokens of a batch, with the small questions and demands that all rules are made of.
//
//   if (cursor.accept(Keyword::Where)) where = parseCondition(cursor);
//   cursor.expect(TokenKind::RightParenthesis);
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/embedded/ast/name.h"
#include "engines/embedded/lexer/lexer.h"
#include "engines/embedded/lexer/token.h"
#include "engines/embedded/parser/keyword.h"

namespace basalt::embedded {

class TokenCursor {
public:
    TokenCursor(const Lexer& lexer, const LiteralTable& literals);

    // Looking
    [[nodiscard]] const Token& peek(std::size_t ahead = 0) const;
    [[nodiscard]] Keyword keyword(std::size_t ahead = 0) const;
    [[nodiscard]] bool at(TokenKind kind) const { return peek().kind == kind; }
    [[nodiscard]] bool at(Keyword word) const { return keyword() == word; }
    [[nodiscard]] bool atAnyOf(std::initializer_list<Keyword> words) const;
    [[nodiscard]] bool atEnd() const { return at(TokenKind::End); }
    [[nodiscard]] bool isFirst() const { return position_ == 0; }
    // A name: in brackets, or a word that is not reserved.
    [[nodiscard]] bool atName(std::size_t ahead = 0) const;
    // '...' or N'...'
    [[nodiscard]] bool atText(std::size_t ahead = 0) const;
    // The plain word of that spelling (in capitals), for words that are no keywords anywhere else.
    [[nodiscard]] bool atWord(std::string_view capitals, std::size_t ahead = 0) const;
    [[nodiscard]] std::string_view spelling(const Token& token) const;

    // Moving
    const Token& next();
    bool accept(TokenKind kind);
    bool accept(Keyword word);
    bool acceptWord(std::string_view capitals);
    const Token& expect(TokenKind kind);
    void expect(Keyword word);
    void expectWord(std::string_view capitals);

    // One identifier; 102 or 156 when there is none, 103 when it is too long, 1038 when it is empty.
    ast::Identifier name();
    // One to four identifiers with points between them; inner ones may be missing (tempdb..#t).
    ast::ObjectName objectName();
    // The same for what must be one identifier in capitals, for instance an option.
    std::string capitalWord();
    // A variable's name.
    std::string variable();
    // A whole number that is part of the statement's shape; the literal is fixed. Limit errors when it is not an int.
    int fixedInteger();
    // The literal at this place, moved over.
    LiteralIndex literal();
    // From an opening parenthesis over the one that closes it; literals between them are fixed, since they stay unread.
    void skipParentheses();

    [[nodiscard]] bool inLoop() const { return loops_ > 0; }
    // Where RETURN may have a value.
    [[nodiscard]] bool inModule() const { return inModule_; }
    void enterModule() { inModule_ = true; }

    [[nodiscard]] const LiteralTable& literals() const { return literals_; }
    std::uint32_t nextMarker() { return markers_++; }
    [[nodiscard]] std::uint32_t markers() const { return markers_; }

    // Places
    [[nodiscard]] std::uint32_t begin() const { return peek().range.begin; }
    // From `begin` to the end of the token that was last moved over.
    [[nodiscard]] SourceRange from(std::uint32_t begin) const;
    [[nodiscard]] std::string_view text() const { return lexer_.text(); }

    // Errors
    [[noreturn]] void failHere() const { failNear(peek()); }
    [[noreturn]] void failNear(const Token& token) const;
    // The token that begins there.
    [[noreturn]] void failAt(std::uint32_t begin) const;
    [[noreturn]] void fail(int number, const std::string& message, SourceRange range) const;
    [[noreturn]] void failLimit(int number, const std::string& message, SourceRange range) const;
    [[noreturn]] void unsupported(std::string_view construct, SourceRange range) const;
    [[noreturn]] void unsupportedHere(std::string_view construct) const { unsupported(construct, peek().range); }
    [[noreturn]] void failTooDeep() const;
    // 1038 for an empty name, 103 for one that is too long.
    void requireGoodName(const ast::Identifier& identifier) const;

private:
    friend class Nesting;
    friend class ExpressionScope;
    friend class StatementScope;
    friend class LoopScope;

    const Lexer& lexer_;
    const LiteralTable& literals_;
    std::vector<Keyword> keywords_;  // of the tokens
    std::size_t position_ = 0;
    std::uint32_t markers_ = 0;
    int nesting_ = 0;
    int expressions_ = 0;     // expressions inside each other
    int operators_ = 0;       // of the outermost expression so far
    int tableOperators_ = 0;  // of the statement so far
    int loops_ = 0;           // WHILE around this place
    bool inModule_ = false;   // in the body of a procedure or function

public:
    // Counts towards kMostOperators.
    void countOperator();
    void countTableOperator();
};

// Held while a rule that can contain itself runs.
class Nesting {
public:
    explicit Nesting(TokenCursor& cursor);
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() { --cursor_.nesting_; }

private:
    TokenCursor& cursor_;
};

// Held while an expression is read: the outermost one starts the count of operators.
class ExpressionScope {
public:
    explicit ExpressionScope(TokenCursor& cursor) : cursor_(cursor) {
        if (cursor_.expressions_++ == 0) cursor_.operators_ = 0;
    }
    ExpressionScope(const ExpressionScope&) = delete;
    ExpressionScope& operator=(const ExpressionScope&) = delete;
    ~ExpressionScope() { --cursor_.expressions_; }

private:
    TokenCursor& cursor_;
};

// Held while the body of a WHILE is read.
class LoopScope {
public:
    explicit LoopScope(TokenCursor& cursor) : cursor_(cursor) { ++cursor_.loops_; }
    LoopScope(const LoopScope&) = delete;
    LoopScope& operator=(const LoopScope&) = delete;
    ~LoopScope() { --cursor_.loops_; }

private:
    TokenCursor& cursor_;
};

// Held while a statement is read.
class StatementScope {
public:
    explicit StatementScope(TokenCursor& cursor) : cursor_(cursor), before_(cursor.tableOperators_) {
        cursor_.tableOperators_ = 0;
    }
    StatementScope(const StatementScope&) = delete;
    StatementScope& operator=(const StatementScope&) = delete;
    ~StatementScope() { cursor_.tableOperators_ = before_; }

private:
    TokenCursor& cursor_;
    int before_;
};

}  // namespace basalt::embedded
