// Texts compare by the database's order, case and trailing blanks apart, whatever stands on either side: columns of
// tables, of what queries work out, of VALUES, of functions and of what APPLY brings. Each kind of source is compared
// with each, in every form that a comparison has, and the rows that come are those that the definition gives.
#include <gmock/gmock.h>

#include <array>
#include <cctype>
#include <optional>
#include <span>

#include "engines/embedded/embedded_session.h"

namespace basalt::embedded {
namespace {

using Text = std::optional<std::string>;
constexpr std::size_t kRows = 4;

// Two tables' texts; NULL is equal to nothing.
const std::array<Text, kRows> kLeft = {"box", "KG ", std::nullopt, "Zinc"};
const std::array<Text, kRows> kRight = {"BOX  ", "kg", "apple", std::nullopt};

// ASCII letters as the database compares them.
std::string folded(const std::string& text) {
    std::string result;
    for (const char c : text)
        result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result.substr(0, result.find_last_not_of(' ') + 1);
}

struct Form {
    std::string condition;  // of {l} and {r}
    bool (*holds)(int order);
};

bool equal(int order) {
    return order == 0;
}
bool different(int order) {
    return order != 0;
}

const std::vector<Form> kForms = {
    {"{l} = {r}", equal},
    {"{l} <> {r}", different},
    {"{l} < {r}", [](int order) { return order < 0; }},
    {"{l} <= {r}", [](int order) { return order <= 0; }},
    {"{l} > {r}", [](int order) { return order > 0; }},
    {"{l} >= {r}", [](int order) { return order >= 0; }},
    {"{l} IN (N'none', {r})", equal},
    {"{l} NOT IN (N'none', {r})", different},
    {"{l} BETWEEN {r} AND {r}", equal},
    {"IIF({l} = {r}, 1, 0) = 1", equal},
    {"CASE {l} WHEN {r} THEN 1 ELSE 0 END = 1", equal},
    {"{l} IS NOT NULL AND {r} IS NOT NULL AND NULLIF({l}, {r}) IS NULL", equal},
    {"{l} = ANY (SELECT {r})", equal},
    {"{l} < ALL (SELECT {r})", [](int order) { return order < 0; }},
    {"EXISTS (SELECT 1 WHERE {l} = {r})", equal},
    {"{l} IN (SELECT {r})", equal},
    {"(SELECT {l}) = {r}", equal},
    {"CAST({l} AS nvarchar(20)) = {r}", equal},
    {"{l} + N'' = {r}", equal},
    {"ISNULL({l}, N'?') = {r}", equal},
    {"NOT ({l} <> {r})", equal},
};

std::string filled(std::string text, const std::string& what, const std::string& by) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
    return text;
}

struct Kind {
    std::string name;
    std::string source;  // {t} is `a` on the left and `b` on the right, {x} the alias; columns k and s
};

// The names of the texts of `a` and of `b` in VALUES.
std::string valuesOf(const std::array<Text, kRows>& texts) {
    std::string result;
    for (std::size_t i = 0; i < kRows; ++i) {
        result += (i == 0 ? "(" : ", (") + std::to_string(i) + ", " +
                  (texts[i] ? "N'" + *texts[i] + "'" : "CAST(NULL AS nvarchar(20))") + ")";
    }
    return result;
}

const std::vector<Kind> kKinds = {
    {"table", "{t} AS {x}"},
    {"temporary table", "#{t} AS {x}"},
    {"table variable", "@{t} AS {x}"},
    {"view", "view_{t} AS {x}"},
    {"common table", "common_{t} AS {x}"},
    {"derived table", "(SELECT k, s FROM {t}) AS {x}"},
    {"worked out", "(SELECT k, UPPER(s) + N' ' AS s FROM {t}) AS {x}"},
    {"grouped", "(SELECT k, MAX(s) AS s FROM {t} GROUP BY k) AS {x}"},
    {"set operation", "(SELECT k, s FROM {t} WHERE k < 2 UNION SELECT k, s FROM {t} WHERE k >= 2) AS {x}"},
    {"VALUES", "(VALUES {values}) AS {x}(k, s)"},
    {"nested VALUES", "(SELECT k, s FROM (VALUES {values}) AS v(k, s)) AS {x}"},
    {"inline function", "dbo.inline_{t}() AS {x}"},
    {"filling function", "dbo.filled_{t}() AS {x}"},
    {"APPLY", "(SELECT 0 AS first) AS outer_{x} CROSS APPLY (SELECT k, s FROM {t} WHERE k >= outer_{x}.first) AS {x}"},
    {"outer join", "(SELECT 1 AS one) AS o_{x} LEFT JOIN {t} AS {x} ON o_{x}.one = 1"},
    {"full join", "{t} AS {x} FULL JOIN (SELECT 9 AS nine) AS n_{x} ON n_{x}.nine = 9"},
};

std::string sourceOf(const Kind& kind, bool left) {
    std::string source = filled(kind.source, "{t}", left ? "a" : "b");
    source = filled(source, "{x}", left ? "l" : "r");
    return filled(source, "{values}", valuesOf(left ? kLeft : kRight));
}

class TextTables : public testing::Test {
protected:
    std::unique_ptr<EmbeddedSession> session_ = EmbeddedSession::open(":memory:");

    void SetUp() override {
        for (const std::string t : {"a", "b"}) {
            session_->run("CREATE TABLE " + t + "(k int PRIMARY KEY, s nvarchar(20)); INSERT INTO " + t + " VALUES " +
                          valuesOf(t == "a" ? kLeft : kRight));
            session_->run("CREATE INDEX by_s ON " + t + "(s)");
            session_->run("SELECT k, s INTO #" + t + " FROM " + t);
            session_->run("CREATE VIEW view_" + t + " AS SELECT k, s FROM " + t);
            session_->run("CREATE FUNCTION inline_" + t + "() RETURNS TABLE AS RETURN SELECT k, s FROM " + t);
            session_->run("CREATE FUNCTION filled_" + t +
                          "() RETURNS @r TABLE(k int, s nvarchar(20)) AS BEGIN INSERT @r SELECT k, s FROM " + t +
                          " RETURN END");
            session_->run("SELECT k FROM filled_" + t + "()");
        }
    }

    // The pairs of keys that the query gives.
    std::vector<std::string> pairs(const std::string& select) {
        const BatchResult result = session_->run(
            "DECLARE @a TABLE(k int, s nvarchar(20)) DECLARE @b TABLE(k int, s nvarchar(20)) "
            "INSERT @a SELECT k, s FROM a INSERT @b SELECT k, s FROM b; "
            "WITH common_a AS (SELECT k, s FROM a), common_b AS (SELECT k, s FROM b) " +
            select);
        const RowSet& rows = result.results.back().rows.value();
        std::vector<std::string> found;
        for (std::size_t r = 0; r < rows.rowCount(); ++r)
            found.push_back(std::to_string(toInt64(rows.column(0).valueAt(r))));
        return found;
    }
};

class TextSources : public TextTables, public testing::WithParamInterface<Kind> {};

std::vector<std::string> expected(const Form& form) {
    std::vector<std::string> result;
    for (std::size_t l = 0; l < kRows; ++l) {
        for (std::size_t r = 0; r < kRows; ++r) {
            if (kLeft[l] && kRight[r] && form.holds(folded(*kLeft[l]).compare(folded(*kRight[r]))))
                result.push_back(std::to_string(10 * l + r));
        }
    }
    return result;
}

TEST_P(TextSources, compareByTheOrderOfTheDatabase) {
    for (const Kind& other : kKinds) {
        // The other forms come down to these; against a table they are all tried.
        const auto forms = std::span(kForms).first(other.name == "table" ? kForms.size() : 3);
        for (const Form& form : forms) {
            const std::string condition = filled(filled(form.condition, "{l}", "l.s"), "{r}", "r.s");
            const std::string query = "SELECT 10 * l.k + r.k AS pair FROM " + sourceOf(GetParam(), true) + ", " +
                                      sourceOf(other, false) + " WHERE " + condition + " ORDER BY l.k, r.k";
            EXPECT_EQ(pairs(query), expected(form)) << GetParam().name << " against " << other.name << ": " << query;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Embedded, TextSources, testing::ValuesIn(kKinds), [](const auto& kind) {
    std::string name = kind.param.name;
    std::erase(name, ' ');
    return name;
});

TEST_F(TextTables, namesOfTheSystemsViewsCompareSo) {
    session_->run("CREATE TABLE Names(n nvarchar(20)); INSERT Names VALUES (N'A '), (N'other')");
    const auto count = [&](const std::string& from) {
        return toInt64(session_->run("SELECT COUNT(*) FROM " + from).results.at(0).rows.value().column(0).valueAt(0));
    };
    EXPECT_EQ(count("sys.tables AS t JOIN Names AS n ON t.name = n.n"), 1);
    EXPECT_EQ(count("sys.tables AS t JOIN Names AS n ON n.n = t.name"), 1);
    EXPECT_EQ(count("INFORMATION_SCHEMA.TABLES AS t JOIN Names AS n ON t.TABLE_NAME = n.n"), 1);
    EXPECT_EQ(count("Names AS n WHERE NOT EXISTS (SELECT 1 FROM sys.tables AS t WHERE t.name = n.n)"), 1);
}

TEST_F(TextTables, whatIsNotAmongOtherTextsIsDeletedAndNothingElse) {
    session_->run(
        "DELETE a WHERE s IS NOT NULL AND NOT EXISTS "
        "(SELECT 1 FROM (VALUES (N'BOX'), (N'kg')) AS v(n) WHERE v.n = a.s)");
    EXPECT_EQ(pairs("SELECT k FROM a ORDER BY k"), (std::vector<std::string>{"0", "1", "2"}));
}

}  // namespace
}  // namespace basalt::embedded
