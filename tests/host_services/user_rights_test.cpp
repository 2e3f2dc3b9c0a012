// Giving and taking the rights of one user.
#include "host/services/user_rights.h"

#include <gmock/gmock.h>

#include "ado/error.h"
#include "host/services/host_parts.h"
#include "tests/host_services/demo_database.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kRules =
    "SELECT UserCode, SoftwarePart, Permission, Allowed FROM dbo.HostUserPermissions "
    "ORDER BY UserCode, SoftwarePart, Permission";

class Rights : public DemoDatabaseTest {
protected:
    Rights() { host.signInAs(1); }

    [[nodiscard]] RightsSheet sheet(int user = 2) { return rights.read(user).value(); }
    [[nodiscard]] std::vector<std::string> rules() { return linesOf(*session, kRules); }
    // The texts of the log since the test began.
    [[nodiscard]] std::vector<std::string> logged() {
        std::vector<std::string> texts;
        for (const UserLogEntry& entry : host.userLog().latest(1000)) {
            if (entry.id <= logged_) break;
            EXPECT_EQ(entry.part, 903);
            EXPECT_EQ(entry.permission, 2);
            EXPECT_EQ(entry.userCode, host.UserInfo().Code);
            texts.insert(texts.begin(), entry.text);
        }
        return texts;
    }

    ReferenceHost host{*session, workstation("دفتر آزمون")};
    UserRights rights{host};

private:
    std::int64_t logged_ = host.userLog().latest(1).at(0).id;
};

TEST_F(Rights, areReadByPartAndPermission) {
    const RightsSheet cashier = sheet();
    EXPECT_EQ(cashier.user.fullName, "علی کریمی");
    EXPECT_FALSE(cashier.user.manager);
    ASSERT_FALSE(cashier.permissions.empty());
    EXPECT_EQ(cashier.permissions.front().text, "مشاهده");
    EXPECT_EQ(cashier.permissions.back().code, 1261);
    EXPECT_EQ(*cashier.find(spPriceLevels, prOpen), (UserRight{spPriceLevels, prOpen, true, std::nullopt}));
    EXPECT_TRUE(cashier.find(spPriceLevels, prOpen)->held());
    EXPECT_FALSE(cashier.find(spPriceLevels, prEdit)->held());
    EXPECT_TRUE(cashier.find(spSelectedLists, prEnable)) << "it belongs to this part";
    EXPECT_FALSE(cashier.find(spPriceLevels, prEnable));
    EXPECT_FALSE(rights.read(77).has_value());
    EXPECT_TRUE(sheet(1).user.manager);
}

TEST_F(Rights, thatSomebodyHasBesidesAreThereToo) {
    execute(*session, "INSERT INTO dbo.HostGroupPermissions VALUES (1, 102, 1261)");
    execute(*session, "INSERT INTO dbo.HostUserPermissions VALUES (2, 101, 1261, 0)");
    EXPECT_TRUE(sheet().find(spGoods, prEnable)->held());
    EXPECT_EQ(sheet().find(spPersons, prEnable)->own, false);
}

TEST_F(Rights, areGivenAndTakenAndLogged) {
    EXPECT_EQ(rights.write(sheet(), {{spPriceLevels, prEdit, true}, {spPriceLevels, prOpen, false}}),
              RightsOutcome::Written);
    EXPECT_THAT(rules(), ElementsAre("2|114|2|True", "2|114|6|False"));
    EXPECT_TRUE(host.permissions().holds(2, spPriceLevels, prEdit));
    EXPECT_FALSE(host.permissions().holds(2, spPriceLevels, prOpen));
    EXPECT_THAT(logged(), ElementsAre("علی کریمی: «ویرایش» در «سطوح قیمت» داده شد",
                                      "علی کریمی: «مشاهده» در «سطوح قیمت» گرفته شد"));
    EXPECT_FALSE(session->inTransaction());
}

TEST_F(Rights, asTheGroupHasThemNeedNoRule) {
    ASSERT_EQ(rights.write(sheet(), {{spPriceLevels, prEdit, true}, {spPriceLevels, prOpen, false}}),
              RightsOutcome::Written);
    EXPECT_EQ(rights.write(sheet(), {{spPriceLevels, prEdit, false}, {spPriceLevels, prOpen, true}}),
              RightsOutcome::Written);
    EXPECT_THAT(rules(), IsEmpty());
    EXPECT_TRUE(host.permissions().holds(2, spPriceLevels, prOpen));
    EXPECT_EQ(logged().size(), 4U);
}

TEST_F(Rights, asTheyAreAreNeitherWrittenNorLogged) {
    execute(*session, "INSERT INTO dbo.HostUserPermissions VALUES (2, 114, 6, 1)");
    EXPECT_EQ(rights.write(sheet(), {{spPriceLevels, prOpen, true}}), RightsOutcome::Written);
    EXPECT_EQ(rights.write(sheet(), {}), RightsOutcome::Written);
    EXPECT_THAT(rules(), ElementsAre("2|114|6|True"));
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(Rights, thatAnotherClientHasChangedAreNotOverwritten) {
    const RightsSheet before = sheet();
    host.permissions().allow(2, spPriceLevels, prEdit, false);
    EXPECT_EQ(rights.write(before, {{spTags, prEdit, true}, {spPriceLevels, prEdit, true}}), RightsOutcome::Changed);
    EXPECT_THAT(rules(), ElementsAre("2|114|2|False"));
    EXPECT_THAT(logged(), IsEmpty());
    EXPECT_FALSE(session->inTransaction());
    EXPECT_EQ(rights.write(before, {{spTags, prEdit, true}}), RightsOutcome::Written)
        << "what the other has changed is not touched";
    EXPECT_THAT(rules(), ElementsAre("2|114|2|False", "2|127|2|True"));
}

// Without a rule the group's word would count, and it is another one by now.
TEST_F(Rights, whoseGroupHasChangedAreNotWritten) {
    ASSERT_EQ(rights.write(sheet(), {{spPriceLevels, prOpen, false}}), RightsOutcome::Written);
    const RightsSheet before = sheet();
    execute(*session, "DELETE FROM dbo.HostGroupPermissions WHERE SoftwarePart = 114");
    EXPECT_EQ(rights.write(before, {{spPriceLevels, prOpen, true}}), RightsOutcome::Changed);
    EXPECT_THAT(rules(), ElementsAre("2|114|6|False"));
}

TEST_F(Rights, ofAUserWhoIsGoneOrAManagerByNowAreNotWritten) {
    const RightsSheet before = sheet();
    execute(*session, "UPDATE dbo.HostUsers SET IsManager = 1 WHERE Code = 2");
    EXPECT_EQ(rights.write(before, {{spTags, prEdit, true}}), RightsOutcome::Changed);
    execute(*session, "DELETE FROM dbo.HostUsers WHERE Code = 2");
    EXPECT_EQ(rights.write(before, {{spTags, prEdit, true}}), RightsOutcome::Gone);
    EXPECT_THAT(rules(), IsEmpty());
    EXPECT_FALSE(session->inTransaction());
}

TEST_F(Rights, areWrittenWithTheirLogOrNotAtAll) {
    execute(*session, "DROP TABLE dbo.HostUserLog");
    EXPECT_THROW((void)rights.write(sheet(), {{spTags, prEdit, true}}), DatabaseError);
    EXPECT_THAT(rules(), IsEmpty());
    EXPECT_FALSE(session->inTransaction());
}

TEST_F(Rights, toGiveRightsAreNotTakenFromOneself) {
    ASSERT_EQ(rights.write(sheet(), {{hpUsers, prOpen, true}, {hpUsers, prEdit, true}}), RightsOutcome::Written);
    host.signInAs(2);
    EXPECT_TRUE(rights.keepsAccess(2, hpUsers, prOpen));
    EXPECT_TRUE(rights.keepsAccess(2, hpUsers, prEdit));
    EXPECT_FALSE(rights.keepsAccess(2, hpUsers, prDelete));
    EXPECT_FALSE(rights.keepsAccess(1, hpUsers, prEdit));
    EXPECT_THROW((void)rights.write(sheet(), {{spTags, prEdit, true}, {hpUsers, prEdit, false}}), UsageError);
    EXPECT_THROW((void)rights.write(sheet(), {{hpUsers, prOpen, false}}), UsageError);
    EXPECT_THAT(rules(), ElementsAre("2|903|2|True", "2|903|6|True"));
    EXPECT_EQ(rights.write(sheet(), {{spTags, prEdit, true}}), RightsOutcome::Written) << "others he may change";
    host.signInAs(1);
    EXPECT_EQ(rights.write(sheet(), {{hpUsers, prEdit, false}}), RightsOutcome::Written) << "somebody else takes it";
}

TEST_F(Rights, thatCannotBeGivenAreRefused) {
    EXPECT_THROW((void)rights.write(sheet(1), {{spTags, prEdit, true}}), UsageError) << "a manager";
    EXPECT_THROW((void)rights.write(sheet(), {{spPriceLevels, prEnable, true}}), UsageError);
}

}  // namespace
}  // namespace basalt::host
