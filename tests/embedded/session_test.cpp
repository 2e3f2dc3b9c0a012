// The default database through the seam that data sets use.
#include <gmock/gmock.h>

#include "engines/embedded/embedded_session.h"

namespace basalt::embedded {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::unique_ptr<EmbeddedSession> newSession() {
    return EmbeddedSession::open(":memory:");
}

const RowSet& rowsOf(const BatchResult& result, std::size_t index = 0) {
    return result.results.at(index).rows.value();
}

void makeLevels(EmbeddedSession& session) {
    session.run(
        "create table CostLevel(Code int not null, Name nvarchar(50), Comment nvarchar(200), CostType int not null, "
        "constraint PK_CostLevel primary key(Code, CostType))");
    session.run("insert into CostLevel values(1, N'عمده', N'', 1), (2, N'خرده', null, 1)");
}

TEST(EmbeddedSession, tellsWhereColumnsComeFrom) {
    const auto session = newSession();
    makeLevels(*session);
    const BatchResult result = session->run(
        "select x.Code c, q.Name, x.Code + 1, x.* from CostLevel x join (select Name, Code from CostLevel) q "
        "on q.Code = x.Code");
    const RowSet& rows = rowsOf(result);
    ASSERT_EQ(rows.columnCount(), 7U);
    EXPECT_EQ(rows.column(0).info().name, "c");
    EXPECT_EQ(rows.column(0).info().baseTable, "CostLevel");
    EXPECT_EQ(rows.column(0).info().baseColumn, "Code");
    EXPECT_EQ(rows.column(1).info().baseColumn, "Name");
    EXPECT_EQ(rows.column(2).info().name, "");
    EXPECT_EQ(rows.column(2).info().baseTable, "");
    EXPECT_EQ(rows.column(6).info().baseColumn, "CostType");
    EXPECT_FALSE(rows.column(0).info().nullable);
    EXPECT_TRUE(rows.column(1).info().nullable);
}

TEST(EmbeddedSession, describesTables) {
    const auto session = newSession();
    session->run(
        "create table T(ID bigint identity(1,1), B nvarchar(20) not null, C decimal(23,9), A int not null, "
        "primary key(B, A))");
    const TableInfo table = session->table("dbo.[t]");
    EXPECT_EQ(table.name, "T");
    EXPECT_THAT(table.key, ElementsAre("B", "A"));
    ASSERT_EQ(table.columns.size(), 4U);
    EXPECT_TRUE(table.columns[0].identity);
    EXPECT_EQ(table.columns[0].type, FieldType::BigInt);
    EXPECT_EQ(table.columns[1].type, FieldType::Text);
    EXPECT_EQ(table.columns[1].size, 20);
    EXPECT_FALSE(table.columns[1].nullable);
    EXPECT_EQ(table.columns[2].precision, 23);
    EXPECT_EQ(table.columns[2].scale, 9);
    EXPECT_EQ(table.columns[2].baseTable, "T");
    EXPECT_EQ(table.columns[2].typeName, "decimal");
    try {
        static_cast<void>(session->table("NoSuch"));
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.nativeCode(), 208);
        EXPECT_EQ(error.category(), ErrorCategory::NotFound);
    }
}

TEST(EmbeddedSession, bindsMarkersOfEveryKind) {
    const auto session = newSession();
    session->run(
        "create table T(ID int identity(1,1) primary key, A int, B nvarchar(50), C decimal(20,4), D bit, E float, "
        "F varbinary(10), G datetime2)");
    const DateTime moment = fromCivil({2024, 3, 20, 1, 2, 3, 456'789'100});
    const std::vector<Value> values = {
        std::int64_t{7}, std::string("متن'\n"), Decimal(125, 2), true, 2.5, Bytes{0, 1, 255}, moment};
    const BatchResult inserted =
        session->run("insert into T(A, B, C, D, E, F, G) values(?, ?, ?, ?, ?, ?, ?); select SCOPE_IDENTITY()", values);
    EXPECT_EQ(rowsOf(inserted, 1).column(0).valueAt(0), Value(Decimal(1, 0)));
    const std::vector<Value> nulls(7, Value(Null{}));
    session->run("insert into T(A, B, C, D, E, F, G) values(?, ?, ?, ?, ?, ?, ?)", nulls);

    const std::vector<Value> key = {std::int64_t{1}, std::string("متن'\n"), Decimal(1250000, 6)};
    const BatchResult read = session->run("select A, B, C, D, E, F, G from T where ID = ? and B = ? and C = ?", key);
    const RowSet& rows = rowsOf(read);
    ASSERT_EQ(rows.rowCount(), 1U);
    EXPECT_EQ(rows.column(0).intAt(0), 7);
    EXPECT_EQ(rows.column(1).textAt(0), "متن'\n");
    EXPECT_EQ(rows.column(2).valueAt(0), Value(Decimal(12500, 4)));
    EXPECT_EQ(rows.column(3).valueAt(0), Value(true));
    EXPECT_EQ(rows.column(4).doubleAt(0), 2.5);
    EXPECT_EQ(rows.column(5).valueAt(0), Value(Bytes{0, 1, 255}));
    EXPECT_EQ(rows.column(6).dateTimeAt(0), moment);
    const BatchResult empty = session->run("select COUNT(*) from T where A is null and B is null and G is null");
    EXPECT_EQ(rowsOf(empty).column(0).intAt(0), 1);
}

TEST(EmbeddedSession, refusesAMarkerWithoutAValue) {
    const auto session = newSession();
    EXPECT_THROW(session->run("select ?"), DatabaseError);
}

TEST(EmbeddedSession, sharesAPlanAmongStatementsThatDifferInLiterals) {
    const auto session = newSession();
    makeLevels(*session);
    const PlanStatistics before = session->planStatistics();
    for (int i = 0; i < 100; ++i) {
        const std::string code = std::to_string(i);
        const BatchResult result =
            session->run("select Name from CostLevel where Code = " + code + " and Name <> '" + code + "'");
        EXPECT_EQ(rowsOf(result).rowCount(), i == 1 || i == 2 ? 1U : 0U);
    }
    EXPECT_EQ(session->planStatistics().misses - before.misses, 1U);
    EXPECT_EQ(session->planStatistics().hits - before.hits, 99U);
}

TEST(EmbeddedSession, plansAnewWhenALiteralDecides) {
    const auto session = newSession();
    makeLevels(*session);
    EXPECT_EQ(rowsOf(session->run("select Code, Name from CostLevel order by 1")).column(0).intAt(0), 1);
    EXPECT_EQ(rowsOf(session->run("select Code, Name from CostLevel order by 2")).column(0).intAt(0), 2);
    EXPECT_EQ(rowsOf(session->run("select 'a' as x")).column(0).info().size, 1);
    EXPECT_EQ(rowsOf(session->run("select 'abc' as x")).column(0).info().size, 3);
    EXPECT_EQ(toText(rowsOf(session->run("select CONVERT(varchar(10), CAST('2024-03-20' as datetime), 111)"))
                         .column(0)
                         .valueAt(0)),
              "2024/03/20");
    EXPECT_EQ(toText(rowsOf(session->run("select CONVERT(varchar(10), CAST('2024-03-20' as datetime), 112)"))
                         .column(0)
                         .valueAt(0)),
              "20240320");
}

// The same statement with constants of all lengths, run in a session that keeps its plans and in one that has none.
void expectSamePlanned(const std::string& head, const std::string& between, const std::string& tail) {
    const std::vector<std::size_t> lengths = {10, 4001, 255, 256, 4000, 3999, 8000, 8001, 300, 10};
    const auto kept = newSession();
    for (const char* prefix : {"'", "N'"}) {
        for (const std::size_t a : lengths) {
            for (const std::size_t b : lengths) {
                const std::string sql =
                    head + prefix + std::string(a, 'a') + "'" + between + prefix + std::string(b, 'b') + "'" + tail;
                const BatchResult result = kept->run(sql);
                const BatchResult fresh = newSession()->run(sql);
                const RowSet& rows = rowsOf(result, result.results.size() - 1);
                const RowSet& wanted = rowsOf(fresh, fresh.results.size() - 1);
                EXPECT_EQ(rows.column(0).valueAt(0), wanted.column(0).valueAt(0)) << prefix << a << " " << b;
                EXPECT_EQ(rows.column(0).info().type, wanted.column(0).info().type) << prefix << a << " " << b;
            }
        }
    }
}

TEST(EmbeddedSession, longTextsHavePlansOfTheirOwn) {
    expectSamePlanned("declare @a nvarchar(max) = ", " + ", " select len(@a)");
    expectSamePlanned("declare @a varchar(max) = N'' + ", " + '' + ", " select len(@a)");
    expectSamePlanned("declare @a nvarchar(max) = concat(", ", ", ") select len(@a)");
    expectSamePlanned("declare @a nvarchar(max) = isnull(nullif(", ", N'x'), N'') + ", " select len(@a)");
    expectSamePlanned("declare @a bigint = len(replicate(", ", len(", "))) select @a");
    expectSamePlanned("select len(replace(", ", 'a', ", "))");
    expectSamePlanned("select len(", " + ", " + 'c')");
    expectSamePlanned("select len(case when 1 = 0 then ", " else ", " end)");
}

TEST(EmbeddedSession, longBytesHavePlansOfTheirOwn) {
    const auto session = newSession();
    for (const std::size_t length : {1U, 2U, 7999U, 8000U, 8001U, 1U, 4000U}) {
        const BatchResult result = session->run("declare @a varbinary(max) = 0x" + std::string(2 * length, '1') +
                                                " + 0x22 select datalength(@a)");
        const std::size_t whole = length + 1;
        EXPECT_EQ(rowsOf(result, result.results.size() - 1).column(0).valueAt(0),
                  Value(static_cast<std::int64_t>(length > 8000 ? whole : std::min(whole, std::size_t{8000}))))
            << length;
    }
}

TEST(EmbeddedSession, forgetsPlansWhenTheSchemaChanges) {
    const auto session = newSession();
    session->run("create table T(A int)");
    session->run("insert into T values(1)");
    EXPECT_EQ(rowsOf(session->run("select * from T")).columnCount(), 1U);
    session->run("alter table T add B nvarchar(10) null");
    EXPECT_EQ(rowsOf(session->run("select * from T")).columnCount(), 2U);
    session->run("drop table T");
    session->run("create table T(X float)");
    EXPECT_EQ(rowsOf(session->run("select * from T")).column(0).info().name, "X");
}

TEST(EmbeddedSession, errorsCarryTheStatement) {
    const auto session = newSession();
    makeLevels(*session);
    const std::string sql = "insert into CostLevel values(1, N'x', N'', 1)";
    try {
        session->run(sql);
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.statement(), sql);
        EXPECT_EQ(error.sqlState(), "23000");
        EXPECT_EQ(error.category(), ErrorCategory::Constraint);
    }
    try {
        session->run("select\nName from CostLevel where Nmae = 1");
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_STREQ(error.what(),
                     "Invalid column name 'Nmae'.\n"
                     "Line 2, column 27:\n"
                     "Name from CostLevel where Nmae = 1\n"
                     "                          ^^^^");
    }
}

TEST(EmbeddedSession, refusesTextThatIsNotUtf8) {
    const auto session = newSession();
    try {
        session->run("select '\xC3\x28'");
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Conversion);
    }
}

TEST(EmbeddedSession, takesTextsOfAnyUnicode) {
    const auto session = newSession();
    session->run("create table T(ID int primary key, A nvarchar(max))");
    const std::vector<std::string> texts = {
        std::string("a\0b", 3),     "\xF0\x9F\x98\x80",        "\xEF\xBF\xBE",
        "\xE2\x80\x8F\xE2\x80\x8C", std::string(100'000, 'x'), "'; drop table T; --"};
    std::int64_t id = 0;
    for (const std::string& text : texts) {
        const std::vector<Value> values = {++id, text};
        session->run("insert into T values(?, ?)", values);
        const std::vector<Value> key = {id};
        EXPECT_EQ(rowsOf(session->run("select A from T where ID = ?", key)).column(0).textAt(0), text);
    }
}

TEST(EmbeddedSession, limitsNestingInsteadOfCrashing) {
    const auto session = newSession();
    for (const int depth : {150, 1000, 100'000}) {
        const std::string sql = "select " + std::string(static_cast<std::size_t>(depth), '(') + "1" +
                                std::string(static_cast<std::size_t>(depth), ')');
        try {
            session->run(sql);
            EXPECT_EQ(depth, 150);
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.category(), ErrorCategory::Limit) << error.what();
        }
    }
    std::string chain = "select 1 where 1 = 1";
    for (int i = 0; i < 900; ++i)
        chain += i % 2 == 0 ? " and 1 = 1" : " or 1 = 2";
    try {
        EXPECT_EQ(rowsOf(session->run(chain)).rowCount(), 1U);
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Limit) << error.what();
    }
}

TEST(EmbeddedSession, transactionsOfTheSeam) {
    const auto session = newSession();
    session->run("create table T(A int)");
    session->begin();
    EXPECT_TRUE(session->inTransaction());
    session->run("insert into T values(1)");
    session->rollback();
    EXPECT_FALSE(session->inTransaction());
    EXPECT_EQ(rowsOf(session->run("select A from T")).rowCount(), 0U);
    session->begin();
    session->run("insert into T values(2)");
    EXPECT_THROW(session->run("insert into T values(1 / 0)"), DatabaseError);
    EXPECT_TRUE(session->inTransaction());
    session->commit();
    EXPECT_EQ(rowsOf(session->run("select A from T")).column(0).intAt(0), 2);
    session->begin();
    EXPECT_THROW(session->run("insert into T values('x')"), DatabaseError);
    EXPECT_FALSE(session->inTransaction());
}

TEST(EmbeddedSession, keepsTheApplicationsSchemaVersion) {
    const auto session = newSession();
    EXPECT_EQ(session->schemaVersion(), 0);
    session->setSchemaVersion(12);
    EXPECT_EQ(session->schemaVersion(), 12);
    EXPECT_EQ(session->engine(), "embedded");
    EXPECT_EQ(session->location(), ":memory:");
    EXPECT_THAT(session->integrityCheck(), testing::IsEmpty());
}

}  // namespace
}  // namespace basalt::embedded
