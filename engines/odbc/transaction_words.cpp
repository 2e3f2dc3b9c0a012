#include "engines/odbc/transaction_words.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <utility>

#include "ado/names.h"

namespace basalt::odbc {

namespace {

// Those of statements that begin, end or call something that might.
constexpr std::array<std::string_view, 6> kTelling = {"TRAN", "TRANSACTION", "COMMIT", "ROLLBACK", "EXEC", "EXECUTE"};

constexpr std::array<std::string_view, 2> kImplicit = {"IMPLICIT_TRANSACTIONS", "ANSI_DEFAULTS"};

// A batch that begins with another word calls the procedure of that name, or is a rare statement.
constexpr std::array<std::string_view, 22> kBeginnings = {
    "SELECT", "INSERT", "UPDATE", "DELETE", "MERGE",    "WITH",   "CREATE", "ALTER", "DROP",    "DECLARE", "SET",
    "IF",     "BEGIN",  "WHILE",  "PRINT",  "TRUNCATE", "RETURN", "USE",    "THROW", "WAITFOR", "GRANT",   "RAISERROR"};

template <std::size_t Count>
bool isOneOf(const std::array<std::string_view, Count>& words, std::string_view word) {
    // Words are ASCII, and texts may be long.
    return std::any_of(words.begin(), words.end(),
                       [&](std::string_view each) { return each.size() == word.size() && sameName(each, word); });
}

bool isWordByte(char c) {
    return c == '_' || c == '@' || c == '#' || c == '$' || std::isalnum(static_cast<unsigned char>(c)) != 0;
}

std::string_view firstWord(std::string_view text) {
    const auto end = std::find_if_not(text.begin(), text.end(), isWordByte);
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

template <std::size_t Count>
bool hasOneOf(const std::array<std::string_view, Count>& words, std::string_view text) {
    bool behindSet = false;
    while (!text.empty()) {
        const std::string_view word = firstWord(text);
        // SET TRANSACTION ISOLATION LEVEL is about those to come.
        if (isOneOf(words, word) && !(behindSet && sameName(word, "TRANSACTION"))) return true;
        if (!word.empty()) behindSet = sameName(word, "SET");
        text.remove_prefix(std::max<std::size_t>(word.size(), 1));
    }
    return false;
}

// Without texts, names in brackets or quotes, and comments.
std::string wordsOf(std::string_view sql) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kSpans = {
        {{"'", "'"}, {"[", "]"}, {"\"", "\""}, {"--", "\n"}, {"/*", "*/"}}};
    std::string words;
    while (!sql.empty()) {
        const auto* const span =
            std::find_if(kSpans.begin(), kSpans.end(), [&](const auto& each) { return sql.starts_with(each.first); });
        if (span == kSpans.end()) {
            words += sql.front();
            sql.remove_prefix(1);
            continue;
        }
        // A doubled mark ends one span and begins the next.
        const std::size_t end = sql.find(span->second, span->first.size());
        sql.remove_prefix(end == std::string_view::npos ? sql.size() : end + span->second.size());
        words += ' ';
    }
    return words;
}

// Blanks, semicolons and comments before the first statement.
void skipToStatement(std::string_view& text) {
    const auto skipBehind = [&](std::string_view mark) {
        const std::size_t end = text.find(mark);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + mark.size());
    };
    while (!text.empty()) {
        if (text.starts_with("--")) {
            skipBehind("\n");
        } else if (text.starts_with("/*")) {
            skipBehind("*/");
        } else if (text.front() == ';' || std::isspace(static_cast<unsigned char>(text.front())) != 0) {
            text.remove_prefix(1);
        } else {
            return;
        }
    }
}

// Takes the word off the text, with the blanks behind it, when the text begins with it.
bool take(std::string_view& text, std::string_view word) {
    const std::string_view first = word.size() == 1 ? text.substr(0, 1) : firstWord(text);
    if (!sameName(first, word)) return false;
    text.remove_prefix(first.size());
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())) != 0)
        text.remove_prefix(1);
    return true;
}

bool beginsWithCall(std::string_view sql) {
    skipToStatement(sql);
    return !sql.empty() && sql.front() != '(' && !isOneOf(kBeginnings, firstWord(sql));
}

}  // namespace

bool mayChangeTransaction(std::string_view sql) {
    return beginsWithCall(sql) || hasOneOf(kTelling, sql);
}

bool mayChangeImplicitTransactions(std::string_view sql) {
    return hasOneOf(kImplicit, sql);
}

bool mayBeginTransaction(std::string_view sql) {
    constexpr std::array<std::string_view, 2> kBeginning = {"TRAN", "TRANSACTION"};
    constexpr std::array<std::string_view, 3> kRunningTexts = {"EXEC", "EXECUTE", "SP_EXECUTESQL"};
    const std::string words = wordsOf(sql);
    return hasOneOf(kBeginning, words) || (hasOneOf(kRunningTexts, words) && hasOneOf(kBeginning, sql));
}

TransactionEnd transactionEnd(std::string_view sql) {
    skipToStatement(sql);
    if (take(sql, "IF") && !(take(sql, "@@TRANCOUNT") && take(sql, ">") && take(sql, "0"))) return TransactionEnd::None;
    const TransactionEnd end = take(sql, "COMMIT")     ? TransactionEnd::Commit
                               : take(sql, "ROLLBACK") ? TransactionEnd::Rollback
                                                       : TransactionEnd::None;
    for (const std::string_view word : {"TRAN", "TRANSACTION", "WORK"}) {
        if (take(sql, word)) break;
    }
    skipToStatement(sql);
    return sql.empty() ? end : TransactionEnd::None;
}

}  // namespace basalt::odbc
