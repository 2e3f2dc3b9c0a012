// Changes against what queries say of the rows before them: no change may see what it has done itself.
//
// Tables are filled at random from a fixed seed; each shape of SET and WHERE runs on copies of the same rows, as a
// statement on the table alone and as one with FROM. A test that fails prints its statement.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "engines/embedded/embedded_session.h"

namespace basalt::embedded {
namespace {

using Rows = std::vector<std::string>;

constexpr int kRounds = 60;

// `T` stands for the table that changes.
constexpr const char* kValues[] = {
    "v + 1",
    "a * 10 + ISNULL(v, 0)",
    "(SELECT SUM(x.v) FROM T x)",
    "(SELECT SUM(x.v) FROM T x WHERE x.a <= T.a)",
    "ISNULL((SELECT MAX(x.v) FROM T x WHERE x.a = T.a - 1), -1)",
    "CASE WHEN a > 3 THEN (SELECT COUNT(*) FROM T x WHERE x.v > 4) ELSE v END",
    "CASE WHEN v > (SELECT AVG(x.v) FROM T x) THEN 0 ELSE v * 2 END",
    "(SELECT COUNT(*) FROM Seen)",
    "(SELECT MAX(w) FROM dbo.Listed(T.a))",
    "(SELECT SUM(c.w) FROM T x CROSS APPLY (SELECT x.v + y.v AS w FROM T y WHERE y.a = x.a) c)",
    "dbo.Total(a)",
    "CASE WHEN b = 1 THEN dbo.Total(0) ELSE v END",
};

constexpr const char* kConditions[] = {
    "1 = 1",
    "a > 2",
    "v IS NULL OR v < 5",
    "a = 1 OR v > (SELECT AVG(x.v) FROM T x)",
    "CASE WHEN a < 3 THEN 3 ELSE (SELECT COUNT(*) FROM T x WHERE x.v > 3) END > 2",
    "EXISTS(SELECT * FROM T x WHERE x.a = T.a + 1)",
    "NOT EXISTS(SELECT * FROM T x WHERE x.v > T.v)",
    "a IN (SELECT x.a + 1 FROM T x)",
    "v >= ALL(SELECT x.v FROM T x WHERE x.b = 1 AND x.v IS NOT NULL)",
    "b = 2 OR (SELECT COUNT(*) FROM Seen) > 4",
    "b = 2 OR a IN (SELECT w - 1 FROM dbo.Listed(2))",
    "dbo.Total(a) > 10",
    "a = 3 AND b = 1 AND v < (SELECT MAX(x.v) FROM T x)",
};

constexpr const char* kTables[] = {
    "CREATE TABLE T(a int, b int, v int, PRIMARY KEY(a, b))",
    "CREATE TABLE T(a int, b int, v int)",
    "CREATE TABLE T(a int, b int, v int, PRIMARY KEY(a, b)) CREATE INDEX IX_V ON T(v)",
    "CREATE TABLE T(a int, b int, v int, id int IDENTITY(1,1) PRIMARY KEY)",
};

class OwnChanges : public testing::TestWithParam<const char*> {
protected:
    OwnChanges() : session_(EmbeddedSession::open(":memory:")) {
        run(GetParam());
        run("CREATE TABLE Filled(a int, b int, v int)");
        run("CREATE VIEW Seen AS SELECT v FROM T WHERE v > 3");
        run("CREATE FUNCTION dbo.Total(@a int) RETURNS int AS BEGIN RETURN (SELECT SUM(v) FROM T WHERE a >= @a) END");
        run("CREATE FUNCTION dbo.Listed(@a int) RETURNS @r TABLE(w int) AS BEGIN "
            "INSERT @r SELECT v FROM T WHERE a <> @a RETURN END");
    }

    BatchResult run(const std::string& sql) { return session_->run(sql); }

    Rows rows(const std::string& sql) {
        Rows result;
        const BatchResult all = run(sql);
        const RowSet& set = all.results.back().rows.value();
        for (std::size_t r = 0; r < set.rowCount(); ++r) {
            std::string row;
            for (std::size_t c = 0; c < set.columnCount(); ++c)
                row += (set.column(c).isNull(r) ? "NULL" : toText(set.column(c).valueAt(r))) + " ";
            result.push_back(std::move(row));
        }
        std::ranges::sort(result);
        return result;
    }

    Rows table() { return rows("SELECT a, b, v FROM T"); }

    void fill() {
        run("DELETE Filled");
        for (int a = 1; a <= 5; ++a) {
            for (int b = 1; b <= 2; ++b) {
                if (number(4) == 0) continue;
                const std::string v = number(6) == 0 ? "NULL" : std::to_string(number(10));
                run("INSERT Filled VALUES(" + std::to_string(a) + ", " + std::to_string(b) + ", " + v + ")");
            }
        }
        again();
    }
    // The same rows as before the last change.
    void again() { run("DELETE T; INSERT T(a, b, v) SELECT a, b, v FROM Filled ORDER BY a DESC, b"); }

    int number(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
    template <std::size_t n>
    std::string any(const char* const (&list)[n]) {
        return list[number(n)];
    }

    std::unique_ptr<EmbeddedSession> session_;
    std::mt19937 random_{20'240'320};
};

TEST_P(OwnChanges, UpdateSeesTheRowsBeforeIt) {
    for (int round = 0; round < kRounds; ++round) {
        fill();
        const std::string value = any(kValues);
        const std::string condition = any(kConditions);
        const std::string change = "UPDATE T SET v = " + value;
        SCOPED_TRACE(change + " WHERE " + condition);
        const Rows expected = rows("SELECT a, b, CASE WHEN " + condition + " THEN " + value + " ELSE v END FROM T");
        const Rows shown = rows("SELECT a, v, " + value + " FROM T WHERE " + condition);
        run(change + " WHERE " + condition);
        EXPECT_EQ(table(), expected);
        again();
        run(change + " FROM T WHERE " + condition);
        EXPECT_EQ(table(), expected) << "with FROM";
        again();
        const Rows become = rows("SELECT a, " + value + " FROM T WHERE " + condition);
        EXPECT_EQ(rows(change + " OUTPUT inserted.a, inserted.v WHERE " + condition), become);
        again();
        const std::string output = change + " OUTPUT deleted.a, deleted.v, inserted.v";
        EXPECT_EQ(rows(output + " WHERE " + condition), shown);
        EXPECT_EQ(table(), expected) << "with OUTPUT";
        again();
        EXPECT_EQ(rows(output + " FROM T WHERE " + condition), shown);
        EXPECT_EQ(table(), expected) << "with OUTPUT and FROM";
    }
}

TEST_P(OwnChanges, DeleteSeesTheRowsBeforeIt) {
    for (int round = 0; round < kRounds; ++round) {
        fill();
        const std::string condition = any(kConditions);
        SCOPED_TRACE("DELETE T WHERE " + condition);
        const Rows expected = rows("SELECT a, b, v FROM T WHERE CASE WHEN " + condition + " THEN 1 ELSE 0 END = 0");
        const Rows gone = rows("SELECT a, b, v FROM T WHERE " + condition);
        run("DELETE T WHERE " + condition);
        EXPECT_EQ(table(), expected);
        again();
        run("DELETE T FROM T WHERE " + condition);
        EXPECT_EQ(table(), expected) << "with FROM";
        again();
        EXPECT_EQ(rows("DELETE T OUTPUT deleted.a, deleted.b, deleted.v WHERE " + condition), gone);
        EXPECT_EQ(table(), expected) << "with OUTPUT";
    }
}

TEST_P(OwnChanges, InsertSeesTheRowsBeforeIt) {
    for (int round = 0; round < kRounds; ++round) {
        fill();
        const std::string query = "SELECT a + 10, b, " + any(kValues) + " FROM Filled T WHERE " + any(kConditions);
        SCOPED_TRACE(query);
        Rows expected = table();
        const Rows added = rows(query);
        expected.insert(expected.end(), added.begin(), added.end());
        std::ranges::sort(expected);
        run("INSERT T(a, b, v) " + query);
        EXPECT_EQ(table(), expected);
    }
}

INSTANTIATE_TEST_SUITE_P(Tables, OwnChanges, testing::ValuesIn(kTables));

}  // namespace
}  // namespace basalt::embedded
