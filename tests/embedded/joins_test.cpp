// Joins of all kinds against rows that are put together here by the definition of a join, one pair after the other.
//
// Queries are made at random from a fixed seed: chains of joins and joins in brackets, derived tables, UNION ALL,
// aggregates, and subqueries that see the row around them. A test that fails prints its query.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <random>

#include "engines/embedded/embedded_session.h"

namespace basalt::embedded {
namespace {

using Cell = std::optional<std::int64_t>;
using Row = std::vector<Cell>;
using Rows = std::vector<Row>;
// The values of the columns that an expression may name, by alias.column.
using Names = std::map<std::string, Cell>;
using Truth = std::optional<bool>;
using Columns = std::vector<std::string>;

Truth both(Truth a, Truth b) {
    if (a == false || b == false) return false;
    return a && b ? Truth(true) : std::nullopt;
}

Truth negated(Truth a) {
    return a ? Truth(!*a) : std::nullopt;
}

struct Query;

struct Source {
    enum class Kind { Table, Derived, Inner, Left, Right, Full, Cross };
    Kind kind = Kind::Table;
    std::string table, alias;
    std::unique_ptr<Query> query;
    std::unique_ptr<Source> left, right;
    std::unique_ptr<struct Condition> condition;
    Columns columns;  // alias.column
};

struct Operand {
    std::string column;  // a constant when empty
    Cell constant;
};

struct Condition {
    enum class Kind { Compare, IsNull, And, Or, Not, Exists };
    Kind kind = Kind::Compare;
    std::string op;
    Operand a, b;
    std::unique_ptr<Condition> left, right;
    std::unique_ptr<Query> query;
};

struct Query {
    std::unique_ptr<Source> from;
    std::unique_ptr<Condition> where;
    Columns items;
    bool grouped = false;         // by the first item; the others are counted and summed
    std::unique_ptr<Query> next;  // UNION ALL
    [[nodiscard]] std::size_t width() const { return grouped ? items.size() + 1 : items.size(); }
};

// --- as text ---

std::string text(const Query& query);

std::string text(const Operand& operand) {
    if (!operand.column.empty()) return operand.column;
    return operand.constant ? std::to_string(*operand.constant) : "NULL";
}

std::string text(const Condition& condition) {
    using Kind = Condition::Kind;
    switch (condition.kind) {
        case Kind::Compare:
            return text(condition.a) + " " + condition.op + " " + text(condition.b);
        case Kind::IsNull:
            return text(condition.a) + " " + condition.op;
        case Kind::And:
            return "(" + text(*condition.left) + " AND " + text(*condition.right) + ")";
        case Kind::Or:
            return "(" + text(*condition.left) + " OR " + text(*condition.right) + ")";
        case Kind::Not:
            return "NOT (" + text(*condition.left) + ")";
        case Kind::Exists:
            return "EXISTS (" + text(*condition.query) + ")";
    }
    return {};
}

std::string text(const Source& source) {
    using Kind = Source::Kind;
    static const std::map<Kind, std::string> words = {{Kind::Inner, " JOIN "},
                                                      {Kind::Left, " LEFT JOIN "},
                                                      {Kind::Right, " RIGHT JOIN "},
                                                      {Kind::Full, " FULL JOIN "},
                                                      {Kind::Cross, " CROSS JOIN "}};
    if (source.kind == Kind::Table) return source.table + " AS " + source.alias;
    if (source.kind == Kind::Derived) return "(" + text(*source.query) + ") AS " + source.alias;
    const bool nested = source.right->kind != Kind::Table && source.right->kind != Kind::Derived;
    const std::string right = nested ? "(" + text(*source.right) + ")" : text(*source.right);
    return text(*source.left) + words.at(source.kind) + right +
           (source.condition == nullptr ? "" : " ON " + text(*source.condition));
}

std::string text(const Query& query) {
    std::string result = "SELECT ";
    for (std::size_t i = 0; i < query.items.size(); ++i) {
        const std::string name = " AS c" + std::to_string(i);
        const bool aggregate = query.grouped && i > 0;
        result += (i == 0 ? "" : ", ") + (aggregate ? "SUM(" + query.items[i] + ")" : query.items[i]) + name;
    }
    if (query.grouped) result += ", COUNT(*) AS c" + std::to_string(query.items.size());
    result += " FROM " + text(*query.from);
    if (query.where != nullptr) result += " WHERE " + text(*query.where);
    if (query.grouped) result += " GROUP BY " + query.items.front();
    if (query.next != nullptr) result += " UNION ALL " + text(*query.next);
    return result;
}

// --- as rows ---

class Evaluator {
public:
    explicit Evaluator(const std::map<std::string, Rows>& tables) : tables_(tables) {}

    [[nodiscard]] Rows rows(const Query& query, const Names& outer) const {
        Rows found;
        for (const Row& row : rows(*query.from, outer)) {
            const Names names = with(outer, query.from->columns, row);
            if (query.where != nullptr && truth(*query.where, names) != true) continue;
            Row items;
            for (const std::string& item : query.items)
                items.push_back(names.at(item));
            found.push_back(std::move(items));
        }
        if (query.grouped) found = grouped(found);
        if (query.next != nullptr) {
            for (Row& row : rows(*query.next, outer))
                found.push_back(std::move(row));
        }
        return found;
    }

private:
    static Names with(Names names, const Columns& columns, const Row& row) {
        for (std::size_t i = 0; i < columns.size(); ++i)
            names[columns[i]] = row[i];
        return names;
    }

    static Rows grouped(const Rows& rows) {
        std::map<Cell, Row> groups;
        for (const Row& row : rows) {
            Row& group = groups.try_emplace(row[0], Row(row.size() + 1)).first->second;
            group[0] = row[0];
            for (std::size_t i = 1; i < row.size(); ++i) {
                if (row[i]) group[i] = group[i].value_or(0) + *row[i];
            }
            group.back() = group.back().value_or(0) + 1;
        }
        Rows result;
        for (auto& [key, group] : groups)
            result.push_back(std::move(group));
        return result;
    }

    [[nodiscard]] Cell cell(const Operand& operand, const Names& names) const {
        return operand.column.empty() ? operand.constant : names.at(operand.column);
    }

    [[nodiscard]] Truth truth(const Condition& condition, const Names& names) const {
        using Kind = Condition::Kind;
        switch (condition.kind) {
            case Kind::Compare: {
                const Cell a = cell(condition.a, names);
                const Cell b = cell(condition.b, names);
                if (!a || !b) return std::nullopt;
                if (condition.op == "=") return *a == *b;
                if (condition.op == "<>") return *a != *b;
                return condition.op == "<" ? *a < *b : *a >= *b;
            }
            case Kind::IsNull:
                return cell(condition.a, names).has_value() == (condition.op == "IS NOT NULL");
            case Kind::And:
                return both(truth(*condition.left, names), truth(*condition.right, names));
            case Kind::Or:
                return negated(both(negated(truth(*condition.left, names)), negated(truth(*condition.right, names))));
            case Kind::Not:
                return negated(truth(*condition.left, names));
            case Kind::Exists:
                return !rows(*condition.query, names).empty();
        }
        return std::nullopt;
    }

    [[nodiscard]] Rows rows(const Source& source, const Names& outer) const {
        using Kind = Source::Kind;
        if (source.kind == Kind::Table) return tables_.at(source.table);
        // A derived table sees no rows around it, but those of the query that it stands in do no harm.
        if (source.kind == Kind::Derived) return rows(*source.query, outer);
        const Rows left = rows(*source.left, outer);
        const Rows right = rows(*source.right, outer);
        std::vector<bool> partnered(right.size());
        Rows result;
        for (const Row& a : left) {
            bool found = false;
            for (std::size_t i = 0; i < right.size(); ++i) {
                Row pair = a;
                pair.insert(pair.end(), right[i].begin(), right[i].end());
                if (source.condition != nullptr && truth(*source.condition, with(outer, source.columns, pair)) != true)
                    continue;
                found = true;
                partnered[i] = true;
                result.push_back(std::move(pair));
            }
            if (!found && (source.kind == Kind::Left || source.kind == Kind::Full)) {
                Row alone = a;
                alone.resize(source.columns.size());
                result.push_back(std::move(alone));
            }
        }
        for (std::size_t i = 0; i < right.size(); ++i) {
            if (partnered[i] || (source.kind != Kind::Right && source.kind != Kind::Full)) continue;
            Row alone(source.left->columns.size());
            alone.insert(alone.end(), right[i].begin(), right[i].end());
            result.push_back(std::move(alone));
        }
        return result;
    }

    const std::map<std::string, Rows>& tables_;
};

// --- at random ---

class Maker {
public:
    explicit Maker(std::uint32_t seed) : random_(seed) {}

    std::size_t below(std::size_t count) { return random_() % count; }

    Cell cell() { return below(4) == 0 ? Cell() : Cell(static_cast<std::int64_t>(below(4))); }

    std::unique_ptr<Query> query(int depth, const Columns& outer, std::size_t width) {
        auto result = std::make_unique<Query>();
        result->from = sources(depth, outer);
        Columns visible = result->from->columns;
        visible.insert(visible.end(), outer.begin(), outer.end());
        if (below(3) != 0) result->where = condition(depth, visible);
        result->grouped = width > 1 && below(4) == 0;
        for (std::size_t i = 0; i < width - (result->grouped ? 1 : 0); ++i)
            result->items.push_back(oneOf(result->from->columns));
        if (below(3) == 0 && depth > 0) result->next = query(depth - 1, outer, width);
        return result;
    }

private:
    const std::string& oneOf(const Columns& columns) { return columns[below(columns.size())]; }

    std::unique_ptr<Source> leaf(int depth) {
        auto result = std::make_unique<Source>();
        result->alias = "x" + std::to_string(++aliases_);
        Columns names = {"a", "b"};
        if (depth > 0 && below(3) == 0) {
            result->kind = Source::Kind::Derived;
            result->query = query(depth - 1, {}, 2);
            names = {"c0", "c1"};
        } else {
            result->table = "T" + std::to_string(below(4));
        }
        for (const std::string& name : names)
            result->columns.push_back(result->alias + "." + name);
        return result;
    }

    std::unique_ptr<Source> sources(int depth, const Columns& outer) {
        std::unique_ptr<Source> result = leaf(depth);
        for (std::size_t joins = below(4); joins > 0; --joins) {
            auto join = std::make_unique<Source>();
            static constexpr Source::Kind kinds[] = {Source::Kind::Inner, Source::Kind::Left, Source::Kind::Right,
                                                     Source::Kind::Full,  Source::Kind::Full, Source::Kind::Right,
                                                     Source::Kind::Cross};
            join->kind = kinds[below(std::size(kinds))];
            join->left = std::move(result);
            join->right = depth > 0 && below(4) == 0 ? sources(depth - 1, outer) : leaf(depth);
            join->columns = join->left->columns;
            join->columns.insert(join->columns.end(), join->right->columns.begin(), join->right->columns.end());
            if (join->kind != Source::Kind::Cross) {
                Columns visible = join->columns;
                if (below(3) == 0) visible.insert(visible.end(), outer.begin(), outer.end());
                join->condition = condition(below(3) == 0 ? depth : 0, visible);
            }
            result = std::move(join);
        }
        return result;
    }

    std::unique_ptr<Condition> condition(int depth, const Columns& visible) {
        using Kind = Condition::Kind;
        auto result = std::make_unique<Condition>();
        const std::size_t choice = below(12);
        if (choice < 6) {
            static const char* const ops[] = {"=", "=", "=", "<>", "<", ">="};
            result->op = ops[below(std::size(ops))];
            result->a.column = oneOf(visible);
            if (below(3) != 0) {
                result->b.column = oneOf(visible);
            } else {
                result->b.constant = static_cast<std::int64_t>(below(4));
            }
        } else if (choice < 8) {
            result->kind = Kind::IsNull;
            result->op = below(2) == 0 ? "IS NULL" : "IS NOT NULL";
            result->a.column = oneOf(visible);
        } else if (choice == 8 && depth > 0) {
            result->kind = Kind::Exists;
            result->query = query(depth - 1, visible, 1);
        } else if (choice == 9) {
            result->kind = Kind::Not;
            result->left = condition(depth, visible);
        } else {
            result->kind = choice == 10 ? Kind::Or : Kind::And;
            result->left = condition(depth, visible);
            result->right = condition(depth, visible);
        }
        return result;
    }

    std::mt19937 random_;
    int aliases_ = 0;
};

Rows rowsOf(const BatchResult& result) {
    Rows rows;
    const RowSet& set = *result.results.back().rows;
    for (std::size_t r = 0; r < set.rowCount(); ++r) {
        Row row;
        for (std::size_t c = 0; c < set.columnCount(); ++c) {
            const Column& column = set.column(c);
            row.push_back(column.isNull(r) ? Cell() : Cell(std::get<std::int64_t>(column.valueAt(r))));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string shown(const Rows& rows) {
    std::string result;
    for (const Row& row : rows) {
        for (const Cell& cell : row)
            result += (cell ? std::to_string(*cell) : "NULL") + " ";
        result += "\n";
    }
    return result;
}

class RandomJoins : public testing::TestWithParam<std::uint32_t> {};

TEST_P(RandomJoins, giveTheRowsThatTheirDefinitionGives) {
    Maker maker(GetParam());
    const auto session = EmbeddedSession::open(":memory:");
    std::map<std::string, Rows> tables;
    for (int number = 0; number < 4; ++number) {
        const std::string name = "T" + std::to_string(number);
        // One with a key, one with an index, one without, and one with a column that is never NULL.
        static const char* const first[] = {"int PRIMARY KEY", "int", "int", "int NOT NULL"};
        session->run("CREATE TABLE " + name + "(a " + first[number] + ", b int)");
        if (number == 1) session->run("CREATE INDEX IX ON T1(a)");
        Rows& rows = tables[name];
        for (std::size_t count = maker.below(5); count > 0; --count) {
            rows.push_back({maker.cell(), maker.cell()});
            if (number == 0) rows.back()[0] = static_cast<std::int64_t>(rows.size());
            if (number == 3) rows.back()[0] = rows.back()[0].value_or(2);
            const auto shownCell = [](const Cell& cell) { return cell ? std::to_string(*cell) : "NULL"; };
            session->run("INSERT INTO " + name + "(a, b) VALUES(" + shownCell(rows.back()[0]) + ", " +
                         shownCell(rows.back()[1]) + ")");
        }
    }
    const Evaluator evaluator(tables);
    for (int i = 0; i < 200; ++i) {
        const std::unique_ptr<Query> query = maker.query(2, {}, 1 + maker.below(4));
        const std::string sql = text(*query);
        Rows expected = evaluator.rows(*query, {});
        Rows found = rowsOf(session->run(sql));
        std::sort(expected.begin(), expected.end());
        std::sort(found.begin(), found.end());
        ASSERT_EQ(shown(found), shown(expected)) << sql;
    }
}

INSTANTIATE_TEST_SUITE_P(OverSmallTables, RandomJoins, testing::Range(1u, 17u));

}  // namespace
}  // namespace basalt::embedded
