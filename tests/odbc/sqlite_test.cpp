// The session on SQLite's ODBC driver: a real driver and real files, if another dialect.
#include <gmock/gmock.h>

#include <clocale>

#include "drivers.h"
#include "engines/odbc/odbc_session.h"
#include "tests/support/temp_folder.h"

namespace basalt::odbc {
namespace {

class SqliteDriver : public testing::Test {
protected:
    void SetUp() override {
        const auto driver = test::driverPart("libsqlite3odbc.so");
        if (!driver) GTEST_SKIP() << "SQLite's ODBC driver (libsqlite3odbc.so) is not installed";
        // The driver has narrow calls only; unixODBC then converts by the locale.
        ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
        session_ = OdbcSession::open(*driver + "Database=" + folder_.file("a.db") + ";PWD=hidden");
    }

    RowSet rowsOf(std::string_view sql, const std::vector<Value>& values = {}) {
        BatchResult result = session_->run(sql, values);
        return std::move(result.results.at(0).rows.value());
    }

    basalt::test::TempFolder folder_;
    std::unique_ptr<OdbcSession> session_;
};

TEST_F(SqliteDriver, persianTextGoesThereAndBack) {
    session_->run("create table T(Name nvarchar(50))");
    session_->run("insert into T values('قیمت عمده ۱۲')");
    EXPECT_EQ(rowsOf("select Name from T").column(0).textAt(0), "قیمت عمده ۱۲");
}

TEST_F(SqliteDriver, valuesAndNulls) {
    session_->run(
        "create table T(I integer, L bigint, B bit, F float, N nvarchar(50), D decimal(23,9), S datetime, A date)");
    session_->run(
        "insert into T values(-7, 9223372036854775807, 1, 1.5, '', '12500.123456789', '2024-03-20 10:15:00.123', "
        "'2024-03-20'), (null, null, null, null, null, null, null, null)");
    const RowSet rows = rowsOf("select * from T");
    EXPECT_EQ(rows.column(0).intAt(0), -7);
    EXPECT_EQ(rows.column(1).intAt(0), INT64_MAX);
    EXPECT_EQ(rows.column(2).intAt(0), 1);
    EXPECT_EQ(rows.column(3).doubleAt(0), 1.5);
    EXPECT_EQ(rows.column(4).valueAt(0), Value(std::string()));
    EXPECT_EQ(rows.column(5).textAt(0), "12500.123456789");
    EXPECT_EQ(rows.column(6).dateTimeAt(0), *parseDateTime("2024-03-20 10:15:00.123"));
    EXPECT_EQ(rows.column(7).dateTimeAt(0), *parseDateTime("2024-03-20"));
    for (std::size_t i = 0; i < rows.columnCount(); ++i)
        EXPECT_TRUE(rows.column(i).isNull(1)) << i;
}

// SQLite keeps texts that are longer than their column, and its driver describes the column all the same.
TEST_F(SqliteDriver, aValueLongerThanItsColumnIsRefusedNotCut) {
    session_->run("create table T(N varchar(5))");
    session_->run("insert into T values('12345')");
    EXPECT_EQ(rowsOf("select N from T").column(0).textAt(0), "12345");
    session_->run("insert into T values('123456')");
    try {
        session_->run("select N from T");
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Truncation);
        EXPECT_STREQ(error.what(), "column N: the driver describes at most 5 characters and delivers a longer value");
        EXPECT_EQ(error.statement(), "select N from T");
    }
    EXPECT_EQ(rowsOf("select count(*) from T").column(0).intAt(0), 2);
}

TEST_F(SqliteDriver, longTextsAreReadWholeWithColumnsOnBothSides) {
    session_->run("create table T(A int, L text, N nvarchar(20), X blob)");
    std::string text;
    for (int i = 0; i < 50000; ++i)
        text += "قیمت ";
    session_->run("insert into T values(1, '" + text + "', 'پس', x'0102')");
    session_->run("insert into T values(2, null, null, null)");
    const RowSet rows = rowsOf("select * from T order by A");
    EXPECT_TRUE(rows.column(1).textAt(0) == text);
    EXPECT_EQ(rows.column(2).textAt(0), "پس");
    EXPECT_TRUE(rows.column(1).isNull(1));
    EXPECT_TRUE(rows.column(2).isNull(1));
}

TEST_F(SqliteDriver, columnsKnowTheirTable) {
    session_->run("create table Goods(Code int, Name nvarchar(50))");
    const RowSet rows = rowsOf("select Name, Code + 1 as Next from Goods");
    EXPECT_EQ(rows.column(0).info().name, "Name");
    EXPECT_EQ(rows.column(0).info().baseTable, "Goods");
    EXPECT_EQ(rows.column(0).info().baseColumn, "Name");
    EXPECT_EQ(rows.column(0).info().size, 50);
    EXPECT_EQ(rows.column(1).info().baseTable, "");
}

TEST_F(SqliteDriver, countsAndErrors) {
    session_->run("create table T(A int primary key)");
    EXPECT_EQ(affectedRows(session_->run("insert into T values(1), (2), (3)")), 3);
    EXPECT_EQ(affectedRows(session_->run("delete from T where A > 1")), 2);
    EXPECT_EQ(affectedRows(session_->run("delete from T where A > 1")), 0);
    try {
        session_->run("select Missing from T");
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("no such column: Missing"));
        EXPECT_EQ(error.statement(), "select Missing from T");
    }
}

TEST_F(SqliteDriver, manyRowsAndParameters) {
    session_->run("create table T(A int, N nvarchar(50))");
    session_->begin();
    for (std::int64_t i = 0; i < 3000; ++i)
        session_->run("insert into T values(?, ?)", std::vector<Value>{i, "نام " + std::to_string(i)});
    session_->commit();
    const RowSet rows = rowsOf("select A, N from T order by A");
    ASSERT_EQ(rows.rowCount(), 3000U);
    for (std::size_t i = 0; i < 3000; ++i)
        ASSERT_EQ(rows.column(1).textAt(i), "نام " + std::to_string(i));
}

TEST_F(SqliteDriver, whereTheDataLivesIsToldWithoutThePassword) {
    EXPECT_EQ(session_->location(), "Database=" + folder_.file("a.db"));
}

}  // namespace
}  // namespace basalt::odbc
