// The reference database, deployed through FreeTDS: every script and all demo data pass the driver, and come back as
// what they are.
#include "host/services/deploy.h"

#include <gmock/gmock.h>

#include "drivers.h"
#include "engines/odbc/odbc_session.h"
#include "stand_in_server.h"
#include "tests/support/temp_folder.h"

namespace basalt::odbc {
namespace {

std::vector<std::string> linesOf(Session& session, const std::string& sql) {
    std::vector<std::string> lines;
    const BatchResult batch = session.run(sql);
    const RowSet& rows = batch.results.at(0).rows.value();
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        std::string line;
        for (std::size_t i = 0; i < rows.columnCount(); ++i) {
            const Value value = rows.column(i).valueAt(row);
            line += isNull(value) ? "NULL|" : toText(value) + "|";
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

TEST(DeployThroughFreeTds, theDatabaseIsTheSameFromBothSides) {
    const auto driver = test::driverPart("libtdsodbc.so");
    if (!driver) GTEST_SKIP() << "FreeTDS' ODBC driver (libtdsodbc.so) is not installed";
    const basalt::test::TempFolder folder;
    test::StandInServer server(folder.file("shop.db"));
    const auto session = OdbcSession::open(*driver + server.connectionPart());
    EXPECT_EQ(host::schemaState(*session), host::SchemaState::Missing);
    const std::vector<std::string> scripts = host::deployDatabase(*session, {.demo = true});
    EXPECT_EQ(host::schemaState(*session), host::SchemaState::Current);
    EXPECT_TRUE(host::holdsDemoData(*session));
    EXPECT_FALSE(session->inTransaction());

    const auto direct = embedded::EmbeddedSession::open(folder.file("shop.db"));
    // Persian names, decimals, dates, images, long texts.
    std::size_t lines = 0;
    for (const char* table :
         {"GoodInf", "CostLevel", "costlist", "PerInf", "Zone", "category", "colors", "Tags", "SelectedLists", "Kardex",
          "BarCodeFormul", "Scales", "DetailTypes", "GoodDetailValues", "Sanad", "HostUsers", "HostUserLog"}) {
        const std::string statement = "SELECT * FROM dbo." + std::string(table);
        const std::vector<std::string> read = linesOf(*session, statement);
        EXPECT_EQ(read, linesOf(*direct, statement)) << table;
        lines += read.size();
    }
    EXPECT_GT(lines, 1000U);

    // And again, which changes nothing.
    const std::string count = "SELECT COUNT(*) FROM dbo.GoodInf";
    const std::vector<std::string> before = linesOf(*session, count);
    EXPECT_EQ(host::deployDatabase(*session, {.demo = true}), scripts);
    EXPECT_EQ(linesOf(*session, count), before);
}

}  // namespace
}  // namespace basalt::odbc
