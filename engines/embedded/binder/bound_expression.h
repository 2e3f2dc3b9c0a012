// Expressions after binding: every name resolved, every value typed, every conversion spelt out.
//
// The generator prints this tree as SQLite's SQL and decides nothing about types any more. Values that change from run
// to run are slots, which become parameters.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ado/value.h"
#include "engines/embedded/runtime/collation.h"
#include "engines/embedded/runtime/sql_type.h"

namespace basalt::embedded {

struct BoundQuery;
class LiteralTable;

// Values of the session that statements may ask for.
enum class SystemValue : std::uint8_t {
    Now,            // GETDATE(): one moment for the whole statement
    UtcNow,         // GETUTCDATE()
    ScopeIdentity,  // SCOPE_IDENTITY()
    Identity,       // @@IDENTITY
    RowCount,       // @@ROWCOUNT
    Error,          // @@ERROR
    TranCount,      // @@TRANCOUNT
    FetchStatus,    // @@FETCH_STATUS
    NestLevel,      // @@NESTLEVEL
    LockTimeout,    // @@LOCK_TIMEOUT
    ProcId,         // @@PROCID
    SpId,           // @@SPID
    ErrorNumber,    // ERROR_NUMBER() and its kin in a CATCH block
    ErrorMessage,
    ErrorSeverity,
    ErrorState,
    ErrorLine,
    ErrorProcedure,
    XactState,
};

// Where a parameter of the generated statement takes its value from.
struct Slot {
    // Row: an item of the row that is being changed.
    enum class Source : std::uint8_t { Literal, Marker, Variable, System, Row };
    Source source = Source::Literal;
    std::uint32_t index = 0;  // Literal, Marker and Row
    // Literal: what `index` counts in, for as long as the statement is being bound. A value that is handed to a
    // function is bound among the function's own literals.
    const LiteralTable* literals = nullptr;
    std::string variable;  // Variable, with the @
    SystemValue system = SystemValue::Now;
    SqlType from;  // the type of the source
    SqlType to;    // the type that the statement wants; converted when the value is bound
};

enum class BoundKind : std::uint8_t {
    Constant,   // `value`; NULL too
    Slot,       // `slot`
    Column,     // `table`.`name`: a column of a source, by the source's generated alias
    Call,       // name(arguments...)
    Aggregate,  // name([DISTINCT] arguments...) [OVER (...)]
    Infix,      // a name b name c ...: AND, OR, ||, and the comparisons
    Prefix,     // name a: NOT, -, ~
    Postfix,    // a name: IS NULL, IS NOT NULL
    Case,       // when, then, when, then, ..., else
    In,         // arguments[0] [NOT] IN (the rest), or IN (query)
    Between,
    Subquery,  // the one value of the query, NULL when it has no row
    Exists,
};

struct BoundExpression;
using BoundPtr = std::unique_ptr<BoundExpression>;

struct BoundOrder {
    BoundPtr expression;
    bool descending = false;
};

struct BoundOver {
    std::vector<BoundPtr> partitionBy;
    std::vector<BoundOrder> orderBy;
    std::string frame;  // "ROWS BETWEEN ... AND ...", empty for the default
};

// The stored column that an expression shows unchanged.
struct BaseColumn {
    std::string table;
    std::string column;
    bool identity = false;
};

// Where the rows that may match a LIKE are found.
struct BoundTextSearch {
    std::string pieces;            // the table of the pieces, as SQLite takes it: piece, k1, k2, ...
    std::vector<std::string> key;  // the columns of the searched table that k1, k2, ... are
};

struct BoundExpression {
    BoundKind kind = BoundKind::Constant;
    SqlType type;
    bool nullable = true;
    bool negated = false;                   // In, Between, Exists
    bool distinct = false;                  // Aggregate
    bool star = false;                      // Aggregate: count(*)
    bool ownCollation = false;              // texts: compares by its order without being told
    TextOrder order = TextOrder::Database;  // texts: how they compare
    std::string collation;                  // the name that COLLATE gave that order, empty when none did
    std::string name;
    std::string table;
    int depth = 0;          // Column: how many queries outward the source is
    int writtenDigits = 0;  // of a whole number that stands in the text as it is, without a conversion; 0 for all else
    Value value;
    Slot slot;
    std::vector<BoundPtr> arguments;
    std::unique_ptr<BoundQuery> query;
    std::unique_ptr<BoundOver> over;
    std::optional<BaseColumn> base;
    std::unique_ptr<BoundTextSearch> search;  // of a LIKE; it is true for no other rows

    BoundExpression();
    ~BoundExpression();
    BoundExpression(const BoundExpression&) = delete;
    BoundExpression& operator=(const BoundExpression&) = delete;

    [[nodiscard]] bool isNullConstant() const { return kind == BoundKind::Constant && isNull(value); }
};

[[nodiscard]] BoundPtr boundConstant(Value value, SqlType type);
[[nodiscard]] BoundPtr boundInteger(std::int64_t value);
[[nodiscard]] BoundPtr boundTypeCode(const SqlType& type);
// A call whose result is NULL as soon as an argument may be.
template <typename... Arguments>
[[nodiscard]] BoundPtr boundCall(std::string name, SqlType type, Arguments... arguments);
[[nodiscard]] BoundPtr boundInfix(std::string op, SqlType type, BoundPtr left, BoundPtr right);
// The text, compared in the order from here on; the name is empty where no COLLATE says it.
[[nodiscard]] BoundPtr boundCollate(BoundPtr text, TextOrder order, std::string collation);
// What an expression made of the part compares by. Two parts that COLLATE orders differently are error 468.
void takeOrder(BoundExpression& whole, const BoundExpression& part);
[[nodiscard]] BoundPtr boundPrefix(std::string op, SqlType type, BoundPtr operand);
[[nodiscard]] BoundPtr cloned(const BoundExpression& expression);  // throws for subqueries; see canClone
[[nodiscard]] bool canClone(const BoundExpression& expression);

// The longest length that a type with a bound may have: 4000 characters, or 8000 for those without N and for bytes.
[[nodiscard]] int boundOf(const SqlType& type);
// Whether a text of the type, made of the parts with this length altogether, may be longer than its type can be. The
// plan serves other literals too, so each counts with the length that others under the same key may have.
[[nodiscard]] bool mayExceed(const SqlType& type, int length, std::initializer_list<const BoundExpression*> parts);
// The text, no longer than a type with a bound may be.
inline constexpr const char* kCut = "t_cut";
[[nodiscard]] BoundPtr boundCut(BoundPtr text);

[[nodiscard]] BoundPtr makeCall(std::string name, SqlType type, std::vector<BoundPtr> arguments);

template <typename... Arguments>
BoundPtr boundCall(std::string name, SqlType type, Arguments... arguments) {
    std::vector<BoundPtr> list;
    list.reserve(sizeof...(arguments));
    (list.push_back(std::move(arguments)), ...);
    return makeCall(std::move(name), type, std::move(list));
}

}  // namespace basalt::embedded
