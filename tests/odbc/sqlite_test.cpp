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

}  // namespace
}  // namespace basalt::odbc
