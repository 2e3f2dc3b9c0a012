#include "engines/embedded/parser/token_cursor.h"

#include <algorithm>
#include <utility>

#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/lexer/utf8.h"
#include "engines/embedded/parser/parser.h"

namespace basalt::embedded {

namespace {

std::string capitals(std::string_view word) {
    std::string result(word);
    for (char& c : result) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return result;
}

bool equalsCapitals(std::string_view word, std::string_view wanted) {
    return word.size() == wanted.size() && std::equal(word.begin(), word.end(), wanted.begin(), [](char a, char b) {
               return (a >= 'a' && a <= 'z' ? static_cast<char>(a - 'a' + 'A') : a) == b;
           });
}

// What an error message repeats of a long token.
constexpr std::size_t kShownBytes = 100;

}  // namespace

TokenCursor::TokenCursor(const Lexer& lexer, const LiteralTable& literals) : lexer_(lexer), literals_(literals) {
    keywords_.reserve(lexer.tokens().size());
    for (const Token& token : lexer.tokens()) {
        keywords_.push_back(token.kind == TokenKind::Word ? findKeyword(spelling(token)) : Keyword::None);
    }
}

const Token& TokenCursor::peek(std::size_t ahead) const {
    return lexer_.tokens()[std::min(position_ + ahead, lexer_.tokens().size() - 1)];
}

Keyword TokenCursor::keyword(std::size_t ahead) const {
    return keywords_[std::min(position_ + ahead, keywords_.size() - 1)];
}

bool TokenCursor::atAnyOf(std::initializer_list<Keyword> words) const {
    return std::find(words.begin(), words.end(), keyword()) != words.end() && keyword() != Keyword::None;
}

bool TokenCursor::atName(std::size_t ahead) const {
    const TokenKind kind = peek(ahead).kind;
    return kind == TokenKind::QuotedName || (kind == TokenKind::Word && !isReserved(keyword(ahead)));
}

bool TokenCursor::atText(std::size_t ahead) const {
    const Token& token = peek(ahead);
    if (token.kind != TokenKind::Literal) return false;
    const LiteralType type = literals_[token.literal].type;
    return type == LiteralType::Varchar || type == LiteralType::NVarchar;
}

bool TokenCursor::atWord(std::string_view wanted, std::size_t ahead) const {
    return peek(ahead).kind == TokenKind::Word && equalsCapitals(spelling(peek(ahead)), wanted);
}

std::string_view TokenCursor::spelling(const Token& token) const {
    return lexer_.text().substr(token.range.begin, token.range.size());
}

const Token& TokenCursor::next() {
    const Token& token = peek();
    if (token.kind != TokenKind::End) ++position_;
    return token;
}

bool TokenCursor::accept(TokenKind kind) {
    if (!at(kind)) return false;
    next();
    return true;
}

bool TokenCursor::accept(Keyword word) {
    if (!at(word)) return false;
    next();
    return true;
}

bool TokenCursor::acceptWord(std::string_view wanted) {
    if (!atWord(wanted)) return false;
    next();
    return true;
}

const Token& TokenCursor::expect(TokenKind kind) {
    if (!at(kind)) failHere();
    return next();
}

void TokenCursor::expect(Keyword word) {
    if (!accept(word)) failHere();
}

void TokenCursor::expectWord(std::string_view wanted) {
    if (!acceptWord(wanted)) failHere();
}

ast::Identifier TokenCursor::name() {
    if (!atName()) failHere();
    const Token& token = next();
    ast::Identifier identifier;
    identifier.quoted = token.kind == TokenKind::QuotedName;
    identifier.range = token.range;
    identifier.text = nameValue(spelling(token));
    requireGoodName(identifier);
    return identifier;
}

void TokenCursor::requireGoodName(const ast::Identifier& identifier) const {
    if (identifier.text.empty()) {
        fail(1038, "An object or column name is missing or empty. Aliases defined as \"\" or [] are not allowed.",
             identifier.range);
    }
    if (utf16Length(identifier.text) > static_cast<std::size_t>(kLongestName)) {
        failLimit(103,
                  "The identifier that starts with '" +
                      identifier.text.substr(0, utf8Prefix(identifier.text, kShownBytes)) +
                      "' is too long. Maximum length is " + std::to_string(kLongestName) + ".",
                  identifier.range);
    }
}

ast::ObjectName TokenCursor::objectName() {
    const std::uint32_t start = begin();
    ast::ObjectName result;
    result.parts.push_back(name());
    while (at(TokenKind::Point)) {
        if (result.parts.size() == 4) failHere();
        next();
        if (at(TokenKind::Point)) {
            ast::Identifier omitted;
            omitted.range = {begin(), begin()};
            result.parts.push_back(std::move(omitted));
        } else {
            result.parts.push_back(name());
        }
    }
    result.range = from(start);
    return result;
}

std::string TokenCursor::capitalWord() {
    if (!at(TokenKind::Word)) failHere();
    return capitals(spelling(next()));
}

std::string TokenCursor::variable() {
    const Token& token = expect(TokenKind::Variable);
    if (token.range.size() < 2) failNear(token);
    if (utf16Length(spelling(token)) > static_cast<std::size_t>(kLongestName)) {
        failLimit(103,
                  "The identifier that starts with '" +
                      std::string(spelling(token).substr(0, utf8Prefix(spelling(token), kShownBytes))) +
                      "' is too long. Maximum length is " + std::to_string(kLongestName) + ".",
                  token.range);
    }
    return std::string(spelling(token));
}

int TokenCursor::fixedInteger() {
    if (!at(TokenKind::Literal)) failHere();
    const Token& token = peek();
    const Literal& value = literals_[token.literal];
    if (value.type != LiteralType::Int) failHere();
    literals_.fix(token.literal);
    next();
    return static_cast<int>(value.integer);
}

LiteralIndex TokenCursor::literal() {
    return expect(TokenKind::Literal).literal;
}

void TokenCursor::skipParentheses() {
    expect(TokenKind::LeftParenthesis);
    for (int open = 1; open > 0;) {
        if (atEnd()) failHere();
        const Token& token = next();
        if (token.kind == TokenKind::LeftParenthesis) ++open;
        if (token.kind == TokenKind::RightParenthesis) --open;
        if (token.kind == TokenKind::Literal) literals_.fix(token.literal);
    }
}

SourceRange TokenCursor::from(std::uint32_t start) const {
    const std::uint32_t end = position_ == 0 ? start : lexer_.tokens()[position_ - 1].range.end;
    return {start, std::max(start, end)};
}

void TokenCursor::failNear(const Token& token) const {
    // At the end of the text the error is said to be near the last token, as the server does.
    const bool ended = token.kind == TokenKind::End && lexer_.tokens().size() > 1;
    const std::size_t index =
        ended ? lexer_.tokens().size() - 2 : static_cast<std::size_t>(&token - lexer_.tokens().data());
    const Token& shown = lexer_.tokens()[index];
    const std::string_view full = spelling(shown);
    std::string near(full.substr(0, utf8Prefix(full, kShownBytes)));
    if (near.size() < full.size()) near += "...";
    const SourceRange place = ended ? SourceRange{shown.range.end, shown.range.end} : shown.range;
    if (!ended && isReserved(keywords_[index])) {
        fail(156, "Incorrect syntax near the keyword '" + near + "'.", place);
    }
    fail(102, "Incorrect syntax near '" + near + "'.", place);
}

void TokenCursor::failAt(std::uint32_t begin) const {
    const auto& tokens = lexer_.tokens();
    failNear(*std::lower_bound(tokens.begin(), tokens.end() - 1, begin,
                               [](const Token& token, std::uint32_t offset) { return token.range.begin < offset; }));
}

void TokenCursor::fail(int number, const std::string& message, SourceRange range) const {
    throwSyntaxError(number, message, text(), range);
}

void TokenCursor::failLimit(int number, const std::string& message, SourceRange range) const {
    throw statementError(ErrorCategory::Limit, number, message, text(), range);
}

void TokenCursor::unsupported(std::string_view construct, SourceRange range) const {
    throwUnsupported(std::string(construct), text(), range);
}

void TokenCursor::failTooDeep() const {
    failLimit(191,
              "Some part of your SQL statement is nested too deeply. Rewrite the query or break it up into smaller "
              "queries.",
              peek().range);
}

void TokenCursor::countOperator() {
    if (++operators_ > kMostOperators) failTooDeep();
}

void TokenCursor::countTableOperator() {
    if (++tableOperators_ > kMostOperators) failTooDeep();
}

Nesting::Nesting(TokenCursor& cursor) : cursor_(cursor) {
    if (cursor_.nesting_ >= kDeepestNesting) cursor_.failTooDeep();
    ++cursor_.nesting_;
}

}  // namespace basalt::embedded
