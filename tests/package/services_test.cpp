// The host's services under their own names, with a host and without one.
#include "package/services.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <ostream>

#include "ado/error.h"
#include "ado/query.h"
#include "package/data_module.h"
#include "package/messages.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

using ::testing::ElementsAre;

struct Call {
    const char* name;
    std::function<void()> make;
};
void PrintTo(const Call& row, std::ostream* out) {
    *out << row.name;
}

class WithoutHost : public ::testing::TestWithParam<Call> {};

TEST_P(WithoutHost, callIsAUsageErrorThatSaysSo) {
    ASSERT_FALSE(hasHost());
    try {
        GetParam().make();
        ADD_FAILURE() << "nothing was raised";
    } catch (const UsageError& error) {
        EXPECT_STREQ(error.what(), "no host is attached: attach one before anything of the module is called");
    }
}

class Module : public TDataModule {
public:
    Module() : TDataModule("Module") {}
};

INSTANTIATE_TEST_SUITE_P(
    Services, WithoutHost,
    ::testing::Values(Call{"connection", [] { (void)DM(); }}, Call{"user", [] { (void)UserInfo(); }},
                      Call{"options", [] { (void)IniOptions(); }}, Call{"settings", [] { (void)SettingRecord(); }},
                      Call{"scaler", [] { (void)ScalerQuery("SoftwarePart", "Title", "Code", "114"); }},
                      Call{"formula", [] { (void)CheckGoodUnitFormul(1); }},
                      Call{"lock", [] { (void)LocateLockCode_SoftwarePart("1", spGoods, 1, false); }},
                      Call{"permission", [] { (void)HavePermission({}, spGoods, prOpen, true, true, ""); }},
                      Call{"event", [] { SetUserEvent(spGoods, prEdit, "1", false, true); }},
                      Call{"programs", [] { (void)Programs(); }}, Call{"storedList", [] { (void)StoredList("A.B"); }},
                      Call{"storeList", [] { StoreList("A.B", {}); }}, Call{"date", [] { (void)NowDate("/"); }},
                      Call{"tags", [] { (void)Call_insert_tags("متن", 1); }},
                      Call{"entities", [] { (void)Select_Entity_Multible(spGoods, ""); }},
                      Call{"reset",
                           [] {
                               TADOQuery query("List");
                               ResetDataset(query);
                           }},
                      Call{"message", [] { MSGInUse("کالا"); }}, Call{"question", [] { (void)MsgDeleteRow(); }},
                      Call{"store", [] { const Module module; }}),
    [](const auto& row) { return row.param.name; });

class Services : public ::testing::Test {
protected:
    ScriptedSession session;
    FakeHost host{session};
};

TEST_F(Services, forwardToTheAttachedHost) {
    const AttachedHost attached(host);
    host.user.Code = 5;
    host.locked = true;
    host.permitted = false;
    EXPECT_EQ(UserInfo().Code, 5);
    EXPECT_EQ(IniOptions().LockOwner, 7);
    EXPECT_EQ(&SettingRecord(), &host.settings);
    EXPECT_EQ(&DM(), &host.DM());
    EXPECT_EQ(NowDate("-"), "1405-08-30");
    EXPECT_EQ(ScalerQuery("SoftwarePart", "Title", "Code", "114"), Value{std::string("عنوان")});
    EXPECT_TRUE(CheckGoodUnitFormul(57));
    EXPECT_TRUE(LocateLockCode_SoftwarePart("4", spPriceLevels, 7, true));
    EXPECT_FALSE(HavePermission(UserInfo(), spTags, prInsert, true, false, "متن"));
    SetUserEvent(spPriceLevels, prEdit, "3", false, true);
    Programs().start({.verb = "open", .file = "a.exe", .parameters = "1 2", .directory = {}, .show = 0});
    StoreList("A.B", {"1", "2"});
    EXPECT_THAT(StoredList("A.B"), ElementsAre("1", "2"));
    host.insertedTag = 12;
    EXPECT_EQ(Call_insert_tags("تازه", 2), 12);
    host.pickedCodes = "5,6";
    EXPECT_EQ(Select_Entity_Multible(spGoods, "قند"), "5,6");
    EXPECT_THAT(host.calls, ElementsAre("ScalerQuery('SoftwarePart', 'Title', 'Code', '114')",
                                        "CheckGoodUnitFormul(57)", "LocateLockCode_SoftwarePart('4', 114, 7, true)",
                                        "HavePermission(user 5, 127, 1, true, false, 'متن')",
                                        "SetUserEvent(114, 2, '3', false, true)", "start(open, a.exe, 1 2, , 0)",
                                        "StoreList(A.B, 1, 2)", "Call_insert_tags('تازه', 2)",
                                        "Select_Entity_Multible(102, 'قند')"));
}

TEST_F(Services, attachingNestsAndEndsWithItsScope) {
    FakeHost other{session};
    {
        const AttachedHost first(host);
        {
            const AttachedHost second(other);
            EXPECT_EQ(&attachedHost(), &other);
        }
        EXPECT_EQ(&attachedHost(), &host);
    }
    EXPECT_FALSE(hasHost());
}

int releases = 0;

TEST_F(Services, unitsHearThatTheirHostLeaves) {
    FakeHost other{session};
    whenHostLeaves([]() noexcept { releases += hasHost() ? 1 : 100; });
    releases = 0;
    {
        const AttachedHost first(host);
        EXPECT_EQ(releases, 0);
        attachHost(&host);
        EXPECT_EQ(releases, 0);  // it has not left
        {
            const AttachedHost second(other);
            EXPECT_EQ(releases, 1);
        }
        EXPECT_EQ(releases, 2);
    }
    EXPECT_EQ(releases, 3);
}

TEST_F(Services, storesUseTheHostsConnection) {
    const AttachedHost attached(host);
    const Module module;
    EXPECT_EQ(&module.connection(), &host.DM().ADOConnection1);
    EXPECT_EQ(module.name(), "Module");
}

}  // namespace
}  // namespace basalt
