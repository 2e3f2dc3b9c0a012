// The session on PostgreSQL's ODBC driver with a live server: wide texts, decimals, several results, long values,
// errors, and a server that goes away in the middle of a query.
#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include "drivers.h"
#include "engines/odbc/odbc_session.h"
#include "postgres_server.h"

namespace basalt::odbc {
namespace {

using testing::HasSubstr;

class PostgresDriver : public testing::Test {
protected:
    static void SetUpTestSuite() { server_ = std::make_unique<test::PostgresServer>(); }
    static void TearDownTestSuite() { server_.reset(); }

    void SetUp() override {
        const auto driver = test::driverPart("psqlodbcw.so");
        if (!driver) GTEST_SKIP() << "PostgreSQL's ODBC driver (psqlodbcw.so) is not installed";
        if (!server_->problem().empty()) GTEST_SKIP() << server_->problem();
        text_ = *driver + server_->connectionPart();
        session_ = OdbcSession::open(text_);
    }

    RowSet rowsOf(std::string_view sql, const std::vector<Value>& values = {}) {
        BatchResult result = session_->run(sql, values);
        return std::move(result.results.at(0).rows.value());
    }
    std::string textOf(std::string_view sql, const std::vector<Value>& values = {}) {
        return toText(rowsOf(sql, values).column(0).valueAt(0));
    }
    DatabaseError errorOf(std::string_view sql) {
        try {
            session_->run(sql);
        } catch (const DatabaseError& error) {
            return error;
        }
        ADD_FAILURE() << "no error";
        return {ErrorCategory::Other, "", 0, "no error"};
    }
    // Ends the server's side of the session's connection, from another one.
    void endConnection(const std::string& process) const {
        OdbcSession::open(text_)->run("select pg_terminate_backend(" + process + ")");
    }

    static std::unique_ptr<test::PostgresServer> server_;
    std::string text_;
    std::unique_ptr<OdbcSession> session_;
};

std::unique_ptr<test::PostgresServer> PostgresDriver::server_;

TEST_F(PostgresDriver, valuesKeepWhatTheyAre) {
    session_->run(
        "create temp table T(\"نام\" varchar(50), D numeric(38,9), B boolean, I smallint, L bigint, F float8, "
        "S timestamp, A date, X bytea)");
    session_->run(
        "insert into T values('قیمت عمده ۱۲ 𐎠', -12345678901234567890123456789.123456789, true, -7, "
        "9223372036854775807, "
        "1.5, '2024-03-20 10:15:00.123456', '2024-03-20', '\\x0102'), (null, 0.05, null, null, null, null, null, null, "
        "null)");
    const RowSet rows = rowsOf("select * from T order by I nulls last");
    EXPECT_EQ(rows.column(0).info().name, "نام");
    const std::vector<std::string> expected = {"قیمت عمده ۱۲ 𐎠",
                                               "-12345678901234567890123456789.123456789",
                                               "True",
                                               "-7",
                                               "9223372036854775807",
                                               "1.5",
                                               "2024-03-20 10:15:00.123456",
                                               "2024-03-20",
                                               "0x0102"};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(toText(rows.column(i).valueAt(0)).substr(0, expected[i].size()), expected[i]) << i;
        EXPECT_EQ(rows.column(i).isNull(1), i != 1) << i;
    }
    EXPECT_EQ(toText(rows.column(1).valueAt(1)), "0.050000000");
}

TEST_F(PostgresDriver, parametersKeepWhatTheyAre) {
    session_->run("create temp table T(A varchar(50), D numeric(23,9), L bigint, S timestamp, F float8)");
    session_->run("insert into T values(?, ?, ?, ?, ?)",
                  std::vector<Value>{std::string("سلام '?' 𐎠"), *Decimal::parse("-12.5"), std::int64_t{1} << 60,
                                     *parseDateTime("2024-03-20 10:15:00.123"), 0.25});
    session_->run("insert into T values(?, ?, ?, ?, ?)", std::vector<Value>(5, Null{}));
    const RowSet rows = rowsOf("select * from T order by L nulls last");
    EXPECT_EQ(rows.column(0).textAt(0), "سلام '?' 𐎠");
    EXPECT_EQ(toText(rows.column(1).valueAt(0)), "-12.500000000");
    EXPECT_EQ(rows.column(2).intAt(0), std::int64_t{1} << 60);
    EXPECT_EQ(rows.column(3).dateTimeAt(0), *parseDateTime("2024-03-20 10:15:00.123"));
    EXPECT_EQ(rows.column(4).doubleAt(0), 0.25);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_TRUE(rows.column(i).isNull(1)) << i;
}

TEST_F(PostgresDriver, everyResultOfABatchIsRead) {
    session_->run("create temp table T(A int)");
    const BatchResult result = session_->run(
        "insert into T values(1), (2); select A from T order by A; update T set A = 3 where A > 5; select 7 as B");
    ASSERT_EQ(result.results.size(), 4U);
    EXPECT_EQ(result.results[0].affectedRows, 2);
    EXPECT_EQ(result.results[1].rows.value().rowCount(), 2U);
    EXPECT_EQ(result.results[2].affectedRows, 0);
    EXPECT_EQ(result.results[3].rows.value().column(0).intAt(0), 7);
}

TEST_F(PostgresDriver, longTextsAreReadWholeWithColumnsOnBothSides) {
    const RowSet rows = rowsOf(
        "select 1 as A, repeat('قیمت𐎠', 50000)::text as L, 'پس'::varchar(20) as N, 2.50::numeric(9,2) as D "
        "union all select 2, null, null, 1 union all select 3, '', '', 0 order by 1");
    ASSERT_EQ(rows.rowCount(), 3U);
    std::string expected;
    for (int i = 0; i < 50000; ++i)
        expected += "قیمت𐎠";
    EXPECT_TRUE(rows.column(1).textAt(0) == expected);
    EXPECT_EQ(rows.column(2).textAt(0), "پس");
    EXPECT_EQ(toText(rows.column(3).valueAt(0)), "2.50");
    EXPECT_TRUE(rows.column(1).isNull(1));
    EXPECT_EQ(rows.column(1).valueAt(2), Value(std::string()));
}

TEST_F(PostgresDriver, manyRowsAreAllThere) {
    const RowSet rows = rowsOf("select g, 'نام ' || g from generate_series(1, 20000) g");
    ASSERT_EQ(rows.rowCount(), 20000U);
    EXPECT_EQ(rows.column(0).intAt(19999), 20000);
    EXPECT_EQ(rows.column(1).textAt(12345), "نام 12346");
}

TEST_F(PostgresDriver, errorsHaveTheirCategory) {
    session_->run("create temp table T(A int primary key, N varchar(3))");
    session_->run("insert into T values(1, 'a')");
    const std::vector<std::pair<std::string, ErrorCategory>> cases = {
        {"selekt 1", ErrorCategory::Syntax},
        {"select * from Nothing", ErrorCategory::NotFound},
        {"select Nothing from T", ErrorCategory::NotFound},
        {"insert into T values(1, 'b')", ErrorCategory::Constraint},
        {"insert into T values(2, 'abcd')", ErrorCategory::Truncation},
        {"select 1/(A - 1) from T", ErrorCategory::Conversion},
        {"select 'x'::int", ErrorCategory::Conversion},
    };
    for (const auto& [sql, category] : cases) {
        const DatabaseError error = errorOf(sql);
        EXPECT_EQ(error.category(), category) << sql << ": " << error.what();
        EXPECT_EQ(error.statement(), sql);
        EXPECT_EQ(textOf("select count(*) from T"), "1") << sql;
    }
}

TEST_F(PostgresDriver, anErrorInTheMiddleOfALongResult) {
    const DatabaseError error = errorOf("select 1/(g - 15000) from generate_series(1, 20000) g");
    EXPECT_EQ(error.category(), ErrorCategory::Conversion);
    EXPECT_EQ(textOf("select 5"), "5");
}

TEST_F(PostgresDriver, temporaryTablesLiveFromRequestToRequest) {
    session_->run("create temp table T(A int)");
    session_->run("insert into T values(5)");
    EXPECT_EQ(textOf("select A from T"), "5");
}

TEST_F(PostgresDriver, transactions) {
    session_->run("create temp table T(A int)");
    session_->begin();
    session_->run("insert into T values(1)");
    session_->rollback();
    EXPECT_EQ(textOf("select count(*) from T"), "0");
    session_->begin();
    EXPECT_TRUE(session_->inTransaction());
    session_->run("insert into T values(1)");
    session_->commit();
    EXPECT_FALSE(session_->inTransaction());
    EXPECT_EQ(textOf("select count(*) from T"), "1");
}

TEST_F(PostgresDriver, aServerThatGoesAwayInTheMiddleOfAQuery) {
    const std::string process = textOf("select pg_backend_pid()");
    std::thread killer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        endConnection(process);
    });
    const DatabaseError error = errorOf("select pg_sleep(60)");
    killer.join();
    EXPECT_EQ(error.category(), ErrorCategory::Connection) << error.what();
    EXPECT_THAT(error.what(), HasSubstr("was lost"));
    EXPECT_THAT(error.what(), testing::Not(HasSubstr("hidden")));
    EXPECT_NE(textOf("select pg_backend_pid()"), process);
}

TEST_F(PostgresDriver, aTransactionIsLostWithItsConnection) {
    const std::string process = textOf("select pg_backend_pid()");
    session_->begin();
    endConnection(process);
    const DatabaseError error = errorOf("select 1");
    EXPECT_EQ(error.category(), ErrorCategory::Connection) << error.what();
    EXPECT_THAT(error.what(), HasSubstr("and the transaction with it"));
    EXPECT_TRUE(session_->inTransaction());
    EXPECT_EQ(errorOf("select 1").sqlState(), "25S03");
    EXPECT_THROW(session_->commit(), DatabaseError);
    EXPECT_FALSE(session_->inTransaction());
    EXPECT_EQ(textOf("select 1"), "1");
}

}  // namespace
}  // namespace basalt::odbc
