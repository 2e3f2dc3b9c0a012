// Reads the text of a batch once: tokens, literals, and the key under which plans are kept.
//
//   Lexer lexer;                       // one a session; its buffers are reused
//   lexer.scan("select Name from CostLevel where Code = 5");
//   lexer.key()                        equal for `... where Code = 7`, different for `... where Code = 7.5`
//   lexer.literals()                   5
//
// The key holds every token but the literals as written, and for each literal its type (with precision and scale of a
// decimal): comments and the amount of white space do not matter, the letter case of names does, because it shows in
// the names of result columns.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "engines/embedded/lexer/literal.h"
#include "engines/embedded/lexer/token.h"

namespace basalt::embedded {

// Longest batch in bytes. Far above any real statement, low enough that no batch exhausts the memory.
inline constexpr std::size_t kLongestBatch = std::size_t{32} << 20;

class Lexer {
public:
    // Reads `sql`, which must stay in place as long as the results below are used. Throws DatabaseError:
    // Conversion for text that is not UTF-8, Limit for a batch above kLongestBatch, Syntax for an unclosed text or name
    // (105), an unclosed comment (113), a number that no type holds (168, 1007, 8115). After a failure the results are
    // empty.
    void scan(std::string_view sql);

    [[nodiscard]] std::string_view text() const { return text_; }
    // Ends with a token of the kind End.
    [[nodiscard]] const std::vector<Token>& tokens() const { return tokens_; }
    [[nodiscard]] const std::vector<Literal>& literals() const { return literals_; }
    [[nodiscard]] std::string_view key() const { return {key_.data(), keySize_}; }

private:
    class Scanner;

    std::string_view text_;
    std::vector<Token> tokens_;
    std::vector<Literal> literals_;
    std::vector<char> key_;  // as large as any batch has needed; keySize_ bytes are in use
    std::size_t keySize_ = 0;
    std::vector<char> folded_;  // texts of literals whose spelling is not their value
};

// The value of a name as written: [a]]b] is a]b, "a""b" is a"b, plain names are themselves.
[[nodiscard]] std::string nameValue(std::string_view spelling);

}  // namespace basalt::embedded
