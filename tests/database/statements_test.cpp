// The statements that the module sends, run on the demo company: every table and column that they name is there, and
// the demo data gives them something to find.
#include <gmock/gmock.h>

#include "database/scripts.h"
#include "tests/database/module_statements.h"
#include "tests/host_services/demo_database.h"

namespace basalt::host {
namespace {

class StatementOfTheModule : public ::testing::TestWithParam<ModuleStatement> {
protected:
    static void SetUpTestSuite() {
        database = openDatabase(":memory:");
        deployDatabase(*database, {.demo = true});
    }
    static void TearDownTestSuite() { database.reset(); }

    void SetUp() override { database->begin(); }
    void TearDown() override { database->rollback(); }

    static std::unique_ptr<Session> database;
};

std::unique_ptr<Session> StatementOfTheModule::database;

TEST_P(StatementOfTheModule, runs) {
    EXPECT_EQ(lastRowCount(database->run(GetParam().text)), GetParam().rows);
}

std::string nameOf(const ::testing::TestParamInfo<ModuleStatement>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Prices, StatementOfTheModule, ::testing::ValuesIn(priceStatements()), nameOf);
INSTANTIATE_TEST_SUITE_P(Categories, StatementOfTheModule, ::testing::ValuesIn(categoryStatements()), nameOf);
INSTANTIATE_TEST_SUITE_P(Tags, StatementOfTheModule, ::testing::ValuesIn(tagStatements()), nameOf);
INSTANTIATE_TEST_SUITE_P(SelectedLists, StatementOfTheModule, ::testing::ValuesIn(selectedListStatements()), nameOf);
INSTANTIATE_TEST_SUITE_P(Goods, StatementOfTheModule, ::testing::ValuesIn(goodStatements()), nameOf);
INSTANTIATE_TEST_SUITE_P(GoodDetails, StatementOfTheModule, ::testing::ValuesIn(goodDetailStatements()), nameOf);
INSTANTIATE_TEST_SUITE_P(Persons, StatementOfTheModule, ::testing::ValuesIn(personStatements()), nameOf);
INSTANTIATE_TEST_SUITE_P(Vouchers, StatementOfTheModule, ::testing::ValuesIn(voucherStatements()), nameOf);

// A procedure that is added is called here too, and so on every engine.
TEST(StatementsOfTheModule, callEveryProcedureAndFunction) {
    std::string all;
    for (const auto& group : {priceStatements(), categoryStatements(), goodStatements(), goodDetailStatements(),
                              personStatements(), voucherStatements()}) {
        for (const ModuleStatement& each : group)
            all += std::string(each.text) + "\n";
    }
    std::size_t scripts = 0;
    for (const database::SqlScript& script : database::scripts()) {
        const std::string path(script.name);
        if (!path.starts_with("procedures/") && !path.starts_with("functions/")) continue;
        const std::string name = path.substr(path.find('/') + 1, path.rfind('.') - path.find('/') - 1);
        if (name == "OfferedCostLevel") continue;  // of the price procedures, which are its callers
        ++scripts;
        EXPECT_TRUE(::testing::Matches(::testing::ContainsRegex("[^A-Za-z_]" + name + "[^A-Za-z_]"))(all)) << name;
    }
    EXPECT_GT(scripts, 30U);
}

}  // namespace
}  // namespace basalt::host
