// Files that earlier versions wrote, where they differ from what is written now.
#include <gmock/gmock.h>
#include <sqlite3.h>

#include "engines/embedded/embedded_session.h"
#include "tests/support/temp_folder.h"

namespace basalt::embedded {
namespace {

std::string cells(EmbeddedSession& session, const std::string& query) {
    const BatchResult result = session.run(query);
    const RowSet& rows = *result.results.back().rows;
    std::string text;
    for (std::size_t row = 0; row < rows.rowCount(); ++row)
        text += toText(rows.column(0).valueAt(row)) + "\n";
    return text;
}

// A whole number in a computed column used to count ten digits, like an int, so that such a column has a wider type
// than its expression has now.
TEST(OlderFiles, aComputedColumnKeepsTheTypeThatItWasMadeWith) {
    const test::TempFolder folder;
    const std::string path = folder.file("shop.basalt");
    {
        const auto session = EmbeddedSession::open(path, {.createIfMissing = true});
        session->run(
            "create table T(A decimal(5,1), B as A / cast(3 as int), C int) insert into T(A, C) values (1, 1), (2, 2) "
            "create index I on T(C) where B > 0.5");
    }
    sqlite3* file = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &file), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(file, "update basalt_default set definition = 'A / 3' where column_name = 'B'", nullptr,
                           nullptr, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_changes(file), 1);
    sqlite3_close(file);
    const auto session = EmbeddedSession::open(path);
    EXPECT_EQ(cells(*session, "select B from T order by C"), "0.333333333333\n0.666666666666\n");
    session->run("alter table T add D int");
    EXPECT_EQ(cells(*session, "select B from T order by C"), "0.333333000000\n0.666666000000\n");
    EXPECT_EQ(cells(*session, "select C from T where B > 0.5"), "2\n");
    EXPECT_THAT(session->integrityCheck(), testing::IsEmpty());
}

}  // namespace
}  // namespace basalt::embedded
