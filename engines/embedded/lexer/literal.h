// The literals of a batch, lifted out of its text so that a plan can serve every batch that differs only in them.
//
//   where Code = 5 and Name = N'it''s'      literals: Int 5, NVarchar "it's"
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "ado/decimal.h"
#include "engines/embedded/lexer/source_range.h"

namespace basalt::embedded {

// The type that SQL Server gives a constant by its spelling.
enum class LiteralType : std::uint8_t {
    Int,        // digits that fit 32 bits
    Decimal,    // digits with a point, or more digits than fit an int; precision and scale as written
    Float,      // with an exponent
    Money,      // $12.5; to four digits behind the point
    Varchar,    // '...'
    NVarchar,   // N'...'
    Varbinary,  // 0x...
};

inline constexpr int kMoneyScale = 4;

// Where a literal stands in the list of its batch.
using LiteralIndex = std::uint32_t;

struct Literal {
    LiteralType type = LiteralType::Int;
    std::uint8_t precision = 0;  // Decimal
    std::uint8_t scale = 0;      // Decimal
    SourceRange range;           // the whole spelling, quotes and prefix included
    std::int64_t integer = 0;    // Int
    double real = 0;             // Float
    Int128 coefficient = 0;      // Decimal at `scale`, Money at kMoneyScale
    // Varchar and NVarchar: the characters, doubled quotes folded. Varbinary: the bytes.
    // Belongs to the token stream or the table that holds the literal.
    std::string_view text;
};

// What the key tells about the length of a text or binary constant, so that what a plan decided for one holds for all
// that it serves: whether a type with a bound holds it, and whether it is far away from that bound.
enum class LiteralLength : std::uint8_t { Short, Bounded, Unbounded };
inline constexpr std::size_t kLongestShort = 255;
[[nodiscard]] LiteralLength lengthClassOf(const Literal& literal);

// Same type and same value.
[[nodiscard]] bool sameLiteral(const Literal& a, const Literal& b);

// How much of a literal a plan depends on. A plan fits another batch with the same key when every literal agrees in
// what the plan depends on; the rest is bound as a parameter.
enum class LiteralUse : std::uint8_t {
    Bound,   // nothing but its type
    Length,  // the length of its text too
    Value,   // its value too: a type's length, a CONVERT style, an ORDER BY position, an object's name in a text
};

// The literals of a parsed batch with texts of their own, so that the tree outlives the text it was read from.
// Binders narrow the use of a literal while they read the tree; that changes what a plan depends on, not the tree.
class LiteralTable {
public:
    LiteralTable() = default;
    explicit LiteralTable(const std::vector<Literal>& literals);
    LiteralTable(LiteralTable&&) noexcept = default;
    LiteralTable& operator=(LiteralTable&&) noexcept = default;

    [[nodiscard]] std::size_t size() const { return literals_.size(); }
    [[nodiscard]] const Literal& operator[](LiteralIndex index) const { return literals_[index]; }

    [[nodiscard]] LiteralUse use(LiteralIndex index) const { return uses_[index]; }
    // Never widens: a literal whose value matters stays so.
    void narrow(LiteralIndex index, LiteralUse use) const {
        if (use > uses_[index]) uses_[index] = use;
    }
    void fix(LiteralIndex index) const { narrow(index, LiteralUse::Value); }

    // Whether a plan made from this table fits a batch of the same key with these literals.
    [[nodiscard]] bool fits(const std::vector<Literal>& literals) const;

private:
    std::vector<Literal> literals_;
    mutable std::vector<LiteralUse> uses_;
    std::unique_ptr<char[]> texts_;
};

}  // namespace basalt::embedded
