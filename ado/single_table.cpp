// Reads just enough of a SELECT to tell whether its rows are the rows of one table. Whatever is not plainly so is
// refused: writing to the wrong row is worse than not writing.

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "ado/names.h"
#include "ado/row_writer.h"

namespace basalt {

namespace {

struct Token {
    enum Kind { Word, Quoted, Literal, Symbol } kind;
    std::string text;  // without brackets or quotes
};

bool isWordByte(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           c == '@' || c == '#' || c == '$';
}

// Everything up to the closing mark, which is doubled when it belongs to the text. Empty when it is never closed.
bool takeQuoted(std::string_view& rest, char close, std::string& text) {
    for (std::size_t i = 1; i < rest.size(); ++i) {
        if (rest[i] != close) {
            text += rest[i];
        } else if (i + 1 < rest.size() && rest[i + 1] == close) {
            text += rest[i++];
        } else {
            rest.remove_prefix(i + 1);
            return true;
        }
    }
    return false;
}

bool skipComment(std::string_view& rest) {
    if (rest.starts_with("--")) {
        rest.remove_prefix(std::min(rest.find('\n'), rest.size()));
        return true;
    }
    if (!rest.starts_with("/*")) return false;
    std::size_t depth = 0;
    std::size_t i = 0;
    do {
        if (rest.substr(i).starts_with("/*")) {
            ++depth;
            i += 2;
        } else if (rest.substr(i).starts_with("*/")) {
            --depth;
            i += 2;
        } else {
            ++i;
        }
    } while (depth > 0 && i < rest.size());
    rest.remove_prefix(std::min(i, rest.size()));
    return true;
}

// False when a text or name is not closed.
bool tokenize(std::string_view rest, std::vector<Token>& tokens) {
    while (!rest.empty()) {
        const char c = rest.front();
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            rest.remove_prefix(1);
        } else if (skipComment(rest)) {
            continue;
        } else if (c == '[' || c == '"' || c == '\'') {
            Token token{c == '\'' ? Token::Literal : Token::Quoted, {}};
            if (!takeQuoted(rest, c == '[' ? ']' : c, token.text)) return false;
            tokens.push_back(std::move(token));
        } else if (isWordByte(c)) {
            std::size_t length = 1;
            while (length < rest.size() && isWordByte(rest[length]))
                ++length;
            tokens.push_back({Token::Word, std::string(rest.substr(0, length))});
            rest.remove_prefix(length);
        } else {
            tokens.push_back({Token::Symbol, std::string(1, c)});
            rest.remove_prefix(1);
        }
    }
    return true;
}

class Reader {
public:
    explicit Reader(const std::vector<Token>& tokens) : tokens_(tokens) {}

    [[nodiscard]] bool atEnd() const { return at_ >= tokens_.size(); }
    bool takeWord(std::string_view word) { return take(Token::Word, word); }
    bool takeSymbol(std::string_view symbol) { return take(Token::Symbol, symbol); }
    // A plain or quoted name that is none of the words which may follow a table.
    bool takeName(std::string& name) {
        if (atEnd() || tokens_[at_].kind == Token::Literal || tokens_[at_].kind == Token::Symbol) return false;
        if (tokens_[at_].kind == Token::Word && isClauseWord(tokens_[at_].text)) return false;
        name = tokens_[at_++].text;
        return true;
    }
    [[nodiscard]] const Token& next() { return tokens_[at_++]; }

private:
    static bool isClauseWord(std::string_view word) {
        static constexpr std::array<std::string_view, 16> kWords = {
            "where", "order", "group", "having", "join",   "inner",  "left",    "right",
            "full",  "cross", "outer", "union",  "except", "option", "compute", "for"};
        for (const std::string_view clause : kWords) {
            if (sameName(clause, word)) return true;
        }
        return false;
    }
    bool take(Token::Kind kind, std::string_view text) {
        if (atEnd() || tokens_[at_].kind != kind || !sameName(tokens_[at_].text, text)) return false;
        ++at_;
        return true;
    }

    const std::vector<Token>& tokens_;
    std::size_t at_ = 0;
};

// Words after which the rows are no longer single rows of the table, or a further statement begins.
bool endsSingleRows(const Token& token) {
    static constexpr std::array<std::string_view, 14> kWords = {"union",  "except",  "intersect", "group",  "having",
                                                                "into",   "compute", "select",    "insert", "update",
                                                                "delete", "exec",    "declare",   "for"};
    if (token.kind == Token::Symbol) return token.text == ";";
    if (token.kind != Token::Word) return false;
    for (const std::string_view word : kWords) {
        if (sameName(word, token.text)) return true;
    }
    return false;
}

// A table name with at most the default schema before it; the alias, AS and table hints behind it.
std::string readTable(Reader& reader) {
    std::string name;
    if (!reader.takeName(name)) return {};
    if (reader.takeSymbol(".")) {
        if (!sameName(name, "dbo") || !reader.takeName(name) || reader.takeSymbol(".")) return {};
    }
    std::string alias;
    if (reader.takeWord("with")) return {};
    if (reader.takeWord("as")) {
        if (!reader.takeName(alias)) return {};
    } else {
        reader.takeName(alias);
    }
    return name;
}

// Passes over the columns up to and over FROM. False when there is anything but names and stars among them: a function,
// a sum or a renamed column may bear a column's name without being that column.
bool skipPlainColumns(Reader& reader) {
    if (reader.takeWord("top") && !reader.atEnd()) static_cast<void>(reader.next());
    bool expectsName = true;
    while (!reader.takeWord("from")) {
        std::string name;
        if (expectsName ? !reader.takeSymbol("*") && !reader.takeName(name)
                        : !reader.takeSymbol(",") && !reader.takeSymbol(".")) {
            return false;
        }
        expectsName = !expectsName;
    }
    return !expectsName;
}

}  // namespace

std::string singleTableOf(std::string_view statement) {
    std::vector<Token> tokens;
    if (!tokenize(statement, tokens)) return {};
    while (!tokens.empty() && tokens.back().kind == Token::Symbol && tokens.back().text == ";")
        tokens.pop_back();
    Reader reader(tokens);
    if (!reader.takeWord("select") || reader.takeWord("distinct")) return {};
    if (!skipPlainColumns(reader)) return {};
    std::string table = readTable(reader);
    if (table.empty()) return {};
    if (reader.atEnd()) return table;
    if (!reader.takeWord("order") && !reader.takeWord("where")) return {};
    int depth = 0;
    while (!reader.atEnd()) {
        const Token& token = reader.next();
        if (token.kind == Token::Symbol && token.text == "(") ++depth;
        if (token.kind == Token::Symbol && token.text == ")") --depth;
        if (depth == 0 && endsSingleRows(token)) return {};
    }
    return table;
}

}  // namespace basalt
