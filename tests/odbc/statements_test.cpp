// What the module sends, and every procedure, through FreeTDS and directly on the same demo company: all results are
// the same to the letter.
#include <gmock/gmock.h>

#include <filesystem>

#include "drivers.h"
#include "engines/odbc/odbc_session.h"
#include "stand_in_server.h"
#include "tests/database/dump.h"
#include "tests/database/module_statements.h"
#include "tests/support/row_lines.h"
#include "tests/support/temp_folder.h"

namespace basalt::odbc {
namespace {

using host::ModuleStatement;

std::vector<std::string> linesOf(const StatementResult& result) {
    if (!result.rows) return {"changed " + std::to_string(result.affectedRows)};
    const RowSet& rows = *result.rows;
    std::string names;
    for (std::size_t i = 0; i < rows.columnCount(); ++i)
        names += rows.column(i).info().name + "|";
    std::vector<std::string> lines = linesOf(rows);
    lines.insert(lines.begin(), names);
    return lines;
}

struct Answer {
    std::vector<std::string> lines;  // everything, errors included
    std::int64_t rows = host::kNoRows;
};

Answer answerOf(Session& session, const std::string& text) {
    Answer answer;
    std::vector<std::string>& lines = answer.lines;
    try {
        const BatchResult batch = session.run(text);
        answer.rows = host::lastRowCount(batch);
        for (const StatementResult& result : batch.results) {
            for (std::string& line : linesOf(result))
                lines.push_back(std::move(line));
        }
        lines.insert(lines.end(), batch.messages.begin(), batch.messages.end());
    } catch (const DatabaseError& error) {
        lines.push_back("error " + std::to_string(error.nativeCode()) + " " + error.what());
    }
    return answer;
}

std::vector<std::string> contentsOf(Session& session) {
    std::vector<std::string> lines;
    for (const std::string& table : host::deployedTables()) {
        for (std::string& line : answerOf(session, "SELECT * FROM " + table).lines)
            lines.push_back(table + ": " + line);
    }
    return lines;
}

class StatementsThroughFreeTds : public ::testing::Test {
protected:
    static void SetUpTestSuite() { company = std::make_unique<Company>(); }
    static void TearDownTestSuite() { company.reset(); }

    static void expectAlike(const std::vector<ModuleStatement>& statements) {
        Session& direct = *company->direct;
        Session& through = *company->through;
        for (const ModuleStatement& each : statements) {
            SCOPED_TRACE(each.name);
            direct.begin();
            through.begin();
            const Answer answer = answerOf(through, each.text);
            EXPECT_EQ(answer.lines, answerOf(direct, each.text).lines);
            EXPECT_EQ(answer.rows, each.rows);
            direct.rollback();
            through.rollback();
        }
    }

    // One after the other without taking anything back, and all tables at the end.
    static void expectAlikeWhatTheyLeave(const std::vector<ModuleStatement>& statements) {
        Session& direct = *company->direct;
        Session& through = *company->through;
        direct.begin();
        through.begin();
        const std::vector<std::string> before = contentsOf(direct);
        for (const ModuleStatement& each : statements)
            EXPECT_EQ(answerOf(through, each.text).lines, answerOf(direct, each.text).lines) << each.name;
        const std::vector<std::string> after = contentsOf(direct);
        EXPECT_NE(after, before);
        EXPECT_EQ(contentsOf(through), after);
        direct.rollback();
        through.rollback();
    }

private:
    struct Company {
        Company() {
            host::deployDatabase(*embedded::EmbeddedSession::open(folder.file("direct.db"), {.createIfMissing = true}),
                                 {.demo = true});
            std::filesystem::copy_file(folder.file("direct.db"), folder.file("shop.db"));
            direct = embedded::EmbeddedSession::open(folder.file("direct.db"));
            server = std::make_unique<test::StandInServer>(folder.file("shop.db"));
            through = OdbcSession::open(test::driverPart("libtdsodbc.so").value() + server->connectionPart());
        }

        basalt::test::TempFolder folder;
        std::unique_ptr<Session> direct;
        std::unique_ptr<test::StandInServer> server;
        std::unique_ptr<OdbcSession> through;
    };

    static std::unique_ptr<Company> company;
};

std::unique_ptr<StatementsThroughFreeTds::Company> StatementsThroughFreeTds::company;

TEST_F(StatementsThroughFreeTds, ofPrices) {
    expectAlike(host::priceStatements());
    expectAlikeWhatTheyLeave(host::priceStatements());
}

TEST_F(StatementsThroughFreeTds, ofCategories) {
    expectAlike(host::categoryStatements());
    expectAlikeWhatTheyLeave(host::categoryStatements());
}

TEST_F(StatementsThroughFreeTds, ofTags) {
    expectAlike(host::tagStatements());
    expectAlikeWhatTheyLeave(host::tagStatements());
}

TEST_F(StatementsThroughFreeTds, ofSelectedLists) {
    expectAlike(host::selectedListStatements());
    expectAlikeWhatTheyLeave(host::selectedListStatements());
}

TEST_F(StatementsThroughFreeTds, ofGoods) {
    expectAlike(host::goodStatements());
}

TEST_F(StatementsThroughFreeTds, ofGoodDetails) {
    expectAlike(host::goodDetailStatements());
    expectAlikeWhatTheyLeave(host::goodDetailStatements());
}

TEST_F(StatementsThroughFreeTds, ofPersons) {
    expectAlike(host::personStatements());
}

TEST_F(StatementsThroughFreeTds, ofVouchers) {
    expectAlike(host::voucherStatements());
    expectAlikeWhatTheyLeave(host::voucherStatements());
}

}  // namespace
}  // namespace basalt::odbc
