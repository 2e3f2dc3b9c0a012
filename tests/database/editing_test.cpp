// The tables that the stores write to row by row take what the stores set, and no more is needed.
#include <gmock/gmock.h>

#include "ado/query.h"
#include "tests/host_services/demo_database.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;

class WrittenRows : public DemoDatabaseTest {
protected:
    // Appends a row to what the statement opens.
    void append(const std::string& statement, const std::vector<std::pair<const char*, Value>>& cells) {
        TADOQuery query(connection, "Get_QRY");
        query.SQL = statement;
        query.Open();
        query.Append();
        for (const auto& [name, value] : cells)
            query.FieldByName(name).SetValue(value);
        query.Post();
    }

    static Value number(std::int64_t value) { return value; }
    static Value text(const char* value) { return std::string(value); }

    TADOConnection connection{*session};
};

TEST_F(WrittenRows, aLinkOfAGoodToACategory) {
    append("select * from Kala_category",
           {{"ID", number(900)}, {"category_code", number(101)}, {"kala_code", number(7)}, {"tmp", number(2)}});
    EXPECT_THAT(linesOf(*session, "SELECT category_code, kala_code, tmp, level FROM dbo.Kala_category WHERE ID = 900"),
                ElementsAre("101|7|2|NULL"));
}

TEST_F(WrittenRows, aLinkOfAPersonToACategory) {
    append("select * from person_category",
           {{"ID", number(900)}, {"category_code", number(60)}, {"person_code", number(7)}, {"tmp", number(0)}});
    EXPECT_THAT(linesOf(*session, "SELECT category_code, person_code, tmp FROM dbo.person_category WHERE ID = 900"),
                ElementsAre("60|7|0"));
}

TEST_F(WrittenRows, anActivationOfACategory) {
    append("select * from DefaultUserCategory",
           {{"ID", number(900)}, {"Code_category", number(11)}, {"User_code", number(2)}, {"active", true}});
    EXPECT_THAT(
        linesOf(*session,
                "SELECT Code_category, User_code, active, person, Good FROM dbo.DefaultUserCategory WHERE ID = 900"),
        ElementsAre("11|2|True|False|False"));

    TADOQuery query(connection, "Get_QRY");
    query.SQL = "select * from DefaultUserCategory where ID =900";
    query.Open();
    query.Edit();
    query.FieldByName("active").SetValue(false);
    query.Post();
    EXPECT_THAT(linesOf(*session, "SELECT active FROM dbo.DefaultUserCategory WHERE ID = 900"), ElementsAre("False"));
}

TEST_F(WrittenRows, aSelectedList) {
    append("SELECT * FROM SelectedLists Where Code = 5 ", {{"Code", number(5)},
                                                           {"Type", number(1)},
                                                           {"Title", text("تازه")},
                                                           {"Enable", false},
                                                           {"DisplayType", number(1)},
                                                           {"Comment", text("")}});
    EXPECT_THAT(linesOf(*session,
                        "SELECT Code, [Type], Title, [Enable], DisplayType, Comment FROM dbo.SelectedLists "
                        "WHERE Code = 5"),
                ElementsAre("5|1|تازه|False|1|"));
}

TEST_F(WrittenRows, aMemberOfASelectedList) {
    append("Select * from SelectedList_Detail where SL_Code=1",
           {{"SL_Code", number(1)}, {"Code", number(99)}, {"Radif", number(8)}});
    EXPECT_THAT(linesOf(*session, "SELECT Radif FROM dbo.SelectedList_Detail WHERE SL_Code = 1 AND Code = 99"),
                ElementsAre("8"));
}

TEST_F(WrittenRows, aTagThatChanges) {
    TADOQuery query(connection, "ins_tag_qry");
    query.SQL = "Select * from tags where Code = 3";
    query.Open();
    query.Edit();
    query.FieldByName("Code").SetValue(number(3));
    query.FieldByName("name").SetValue(text("پایان فصل"));
    query.FieldByName("color_code").SetValue(text("7"));
    query.FieldByName("comment").SetValue(text("تا اسفند"));
    query.FieldByName("modify_user").SetValue(number(2));
    query.FieldByName("modify_date").SetValue(text("1405/08/30"));
    query.Post();
    EXPECT_THAT(linesOf(*session,
                        "SELECT Name, color_code, comment, Create_User, Modify_User, Create_Date, Modify_Date FROM "
                        "dbo.Tags WHERE Code = 3"),
                ElementsAre("پایان فصل|7|تا اسفند|1|2|1405/01/01|1405/08/30"));
}

}  // namespace
}  // namespace basalt::host
