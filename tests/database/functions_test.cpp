#include <gmock/gmock.h>

#include "tests/database/test_database.h"
#include "tests/host_services/demo_database.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;

// 1 has 2 and 5; 2 has 4 and 3; 6 stands alone.
class CategoryFunctions : public ::testing::Test {
protected:
    CategoryFunctions() {
        deployDatabase(*session);
        session->run(
            "INSERT INTO dbo.category (id, name, parent_code, level) VALUES "
            "(1, N'خواربار', 0, 1), (2, N'برنج', 1, 2), (3, N'ایرانی', 2, 3), (4, N'هندی', 2, 3), (5, N'روغن', 1, 2), "
            "(6, N'شوینده', 0, 1)");
    }

    std::string value(const std::string& expression) {
        return linesOf(*session, "select " + expression + " as value").at(0);
    }

    TestDatabase database;
    Session* const session = &database.session();
};

TEST_F(CategoryFunctions, aBranchIsListedLevelByLevelWithAComma) {
    EXPECT_EQ(value("dbo.Category_SubNodes(1,1,0)"), "1,2,5,3,4,");
    EXPECT_EQ(value("dbo.Category_SubNodes(1,0,0)"), "2,5,3,4,");
    EXPECT_EQ(value("dbo.Category_SubNodes(2,1,0)"), "2,3,4,");
    EXPECT_EQ(value("dbo.Category_SubNodes(3,1,0)"), "3,");
}

TEST_F(CategoryFunctions, nothingInABranchIsAComma) {
    EXPECT_EQ(value("dbo.Category_SubNodes(3,0,0)"), ",");
    EXPECT_EQ(value("dbo.Category_SubNodes(99,1,0)"), ",");
    EXPECT_EQ(value("dbo.Category_SubNodes(0,1,0)"), ",");
    EXPECT_EQ(value("dbo.Category_SubNodes(NULL,1,0)"), ",");
}

TEST_F(CategoryFunctions, theFlagPutsABranchInParentheses) {
    EXPECT_EQ(value("dbo.Category_SubNodes(1,1,1)"), "(1,2,5,3,4)");
    EXPECT_EQ(value("dbo.Category_SubNodes(3,0,1)"), "()");
    EXPECT_EQ(value("dbo.Category_SubNodes(99,1,1)"), "()");
}

TEST_F(CategoryFunctions, aRingEnds) {
    execute(*session, "UPDATE dbo.category SET parent_code = 3 WHERE id = 1");
    EXPECT_EQ(value("dbo.Category_SubNodes(1,1,0)"), "1,2,5,3,4,");
}

TEST_F(CategoryFunctions, aLongBranchIsWhole) {
    session->run(
        "DECLARE @I int = 100 WHILE @I < 1100 BEGIN INSERT INTO dbo.category (id, name, parent_code, level) VALUES "
        "(@I, N'ن', 6, 2) SET @I = @I + 1 END");
    const std::string list = value("dbo.Category_SubNodes(6,1,0)");
    EXPECT_EQ(list.size(), 2U + 900U * 4U + 100U * 5U);
    EXPECT_TRUE(list.ends_with("1098,1099,"));
}

struct ListCase {
    const char* name;
    const char* arguments;
    const char* result;
};

class ListSearch : public CategoryFunctions, public ::testing::WithParamInterface<ListCase> {};

TEST_P(ListSearch, answersWithThePlace) {
    EXPECT_EQ(value("dbo.ExistsIn_FNC(" + std::string(GetParam().arguments) + ")"), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Lists, ListSearch,
                         ::testing::Values(ListCase{"first", "3,'3,4,'", "1"}, ListCase{"last", "4,'3,4,'", "3"},
                                           ListCase{"lastWithoutComma", "4,'3,4'", "3"},
                                           ListCase{"text", "cast(4 as varchar),'3,4,'", "3"},
                                           ListCase{"blanks", "4,'3, 4 ,'", "3"}, ListCase{"other", "5,'3,4,'", "-1"},
                                           ListCase{"partOfANumber", "3,'13,31,'", "-1"},
                                           ListCase{"empty", "3,''", "-1"}, ListCase{"null", "3,NULL", "-1"},
                                           ListCase{"nullValue", "NULL,'3,'", "-1"},
                                           ListCase{"commaOnly", "3,','", "0"}),
                         [](const auto& list) { return std::string(list.param.name); });

TEST_F(CategoryFunctions, theDepthOfABranchThatIsNotThereYetIsNull) {
    EXPECT_THAT(
        linesOf(*session, "select max(level)as value from category where dbo.ExistsIn_FNC(cast(id as varchar),',')<>0"),
        ElementsAre("NULL"));
}

TEST_F(CategoryFunctions, aCategoryHasItsName) {
    EXPECT_EQ(value("dbo.GetCategoryName(2)"), "برنج");
    EXPECT_EQ(value("dbo.GetCategoryName(99)"), "NULL");
}

}  // namespace
}  // namespace basalt::host
