// Prints bound statements as SQLite's SQL and collects the slots that become its parameters.
//
//   SqlWriter writer;
//   writer.query(*bound);
//   db.prepare(writer.sql());      parameter ?n takes writer.slots()[n - 1]
//
// All decisions about types have been made by the binder; here is only the knowledge of how SQLite writes things, and
// which of its comparisons need to be told the collation.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engines/embedded/binder/bound_query.h"
#include "engines/embedded/binder/bound_statement.h"

namespace basalt::embedded {

class SqlWriter {
public:
    enum class Texts : std::uint8_t { ReadThrough, LookUp };

    // By default every LIKE is written as the test of a row that it is; with LookUp those that can be looked up are.
    explicit SqlWriter(Texts texts = Texts::ReadThrough) : texts_(texts) {}
    // Which index the tables of these aliases are read by, as SQLite takes its name.
    using Indexes = std::map<std::string, std::string, std::less<>>;
    explicit SqlWriter(Indexes indexes) : texts_(Texts::ReadThrough), indexes_(std::move(indexes)) {}

    // What SQLite keeps in its schema is written without steps: it takes no function there that is not told to be the
    // same for the same values.
    void keepCallsNested() { nested_ = true; }

    // expression.cpp
    void expression(const BoundExpression& expression);
    // query.cpp
    void query(const BoundQuery& query);
    // insert.cpp, update.cpp, delete.cpp
    void insert(const BoundInsert& insert);
    void update(const BoundUpdate& update);
    void remove(const BoundDelete& remove);

    [[nodiscard]] const std::string& sql() const { return sql_; }
    [[nodiscard]] std::vector<Slot> takeSlots() {
        // They outlive the statement's tree.
        for (Slot& slot : slots_)
            slot.literals = nullptr;
        return std::move(slots_);
    }
    // The LIKEs so far that can be looked up. They live as long as the statement that was written.
    [[nodiscard]] const std::vector<const BoundExpression*>& textSearches() const { return textSearches_; }

    // The tables that stand in a FROM so far, by their aliases.
    [[nodiscard]] const std::map<std::string, std::string, std::less<>>& tables() const { return tables_; }
    [[nodiscard]] bool joins() const { return joins_; }
    // Whether rows are sorted or brought together anywhere, for which an index may have them in the right order.
    [[nodiscard]] bool arranges() const { return arranges_; }

private:
    void collated(const BoundExpression& expression);
    void constant(const BoundExpression& expression);
    void column(const BoundExpression& expression);
    void slot(const Slot& slot);
    void chain(const BoundExpression& expression, std::size_t begin, std::size_t end);
    void infix(const BoundExpression& expression);
    void aggregate(const BoundExpression& expression);
    void caseExpression(const BoundExpression& expression);
    void in(const BoundExpression& expression);
    void list(const std::vector<BoundPtr>& expressions);
    // Calls inside each other, too deep for SQLite's parser as they are. False when they are not.
    bool steps(const BoundExpression& expression);
    // The same for ISNULL behind ISNULL.
    bool firstOf(const BoundExpression& expression);
    void lookUp(const BoundExpression& like);

    void with(const std::vector<BoundCommonTable>& tables);
    void body(const BoundBody& body);
    void unionAll(const BoundBody& body);
    // A side of a set operation that is not its first.
    void term(const BoundBody& body);
    // `more` are written behind the items, as k1, k2, ...
    void select(const BoundSelect& select, const std::vector<BoundOrdering>& more = {});
    void queryWithTies(const BoundQuery& query);
    void source(const BoundSource& source);
    // full_join.cpp
    void fullJoin(const BoundSource& join);
    void fullJoinTables(const BoundSource& source);
    void fullJoinSide(const BoundSource& side, const std::vector<SourceColumnName>& columns, const std::string& name,
                      bool numbered);
    void rename(const std::vector<SourceColumnName>& columns, const std::string& table, std::size_t first);
    // From here on the columns of all FULL JOINs of the source go by the names that these give them.
    void renameJoined(const BoundSource& source);
    void returning(const std::vector<BoundItem>& items);

    void rowSource(const BoundSource& source);
    // In the query of an APPLY: what comes from outside of it becomes a parameter. True when it was such a thing.
    bool lift(const BoundExpression& expression);

    SqlWriter& operator<<(std::string_view text) {
        sql_ += text;
        return *this;
    }

    Texts texts_;
    Indexes indexes_;
    std::map<std::string, std::string, std::less<>> tables_;
    bool joins_ = false;
    bool arranges_ = false;
    bool nested_ = false;
    bool readsUnseen_ = false;  // through statements of its own, of which SQLite knows nothing
    std::string sql_;
    std::vector<const BoundExpression*> textSearches_;
    std::vector<Slot> slots_;
    std::unordered_multimap<std::uint64_t, std::size_t> slotNumbers_;  // where they are
    const std::vector<std::string>* outer_ = nullptr;                  // aliases from outside, in the query of an APPLY
    std::vector<const BoundExpression*> lifted_;                       // in the order of the parameters
    std::vector<std::string> commonTables_;                            // written so far
    std::set<std::string, std::less<>> fullJoins_;                     // whose tables are written, by alias
    std::map<std::string, std::string, std::less<>> renamed_;          // table.column, by what the binder calls it
};

}  // namespace basalt::embedded
