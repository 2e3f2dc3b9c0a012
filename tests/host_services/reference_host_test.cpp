#include "host/services/reference_host.h"

#include <gmock/gmock.h>

#include <chrono>

#include "host/services/host_parts.h"
#include "tests/host_services/demo_database.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class ReferenceHostTest : public DemoDatabaseTest {
protected:
    ReferenceHostTest() {
        host.setClock(clock);
        host.setMessages(messages);
    }

    // The latest entries of the log without the user's and workstation's names.
    std::vector<std::string> latestEvents(int count) {
        return linesOf(*session,
                       "SELECT TOP " + std::to_string(count) +
                           " UserCode, LogDate, LogTime, SoftwarePart, Permission, [Text], [Description] FROM "
                           "dbo.HostUserLog ORDER BY ID DESC");
    }

    FixedClock clock{{.year = 2026, .month = 11, .day = 21, .hour = 9, .minute = 5, .second = 7}};
    QueuedMessages messages;
    ReferenceHost host{*session, workstation("صندوق ۱")};
};

TEST_F(ReferenceHostTest, signsInWithNameAndPassword) {
    EXPECT_FALSE(host.signedIn());
    EXPECT_TRUE(host.signIn("manager", "manager"));
    EXPECT_EQ(host.UserInfo().Code, 1);
    EXPECT_EQ(host.UserInfo().FullName, "مریم رستمی");
    EXPECT_TRUE(host.UserInfo().IsManager);
    EXPECT_THAT(latestEvents(1), ElementsAre("1|1405/08/30|09:05:07|903|6|1|ورود به سیستم"));
}

TEST_F(ReferenceHostTest, namesCompareWithoutCaseAndPasswordsDoNot) {
    EXPECT_TRUE(host.signIn("Cashier", "cashier"));
    EXPECT_FALSE(host.signIn("cashier", "Cashier"));
    EXPECT_EQ(host.UserInfo().Code, 2);
}

TEST_F(ReferenceHostTest, refusesWrongNamesPasswordsAndUsersWhoMayNot) {
    EXPECT_FALSE(host.signIn("manager", ""));
    EXPECT_FALSE(host.signIn("manager", "manager "));
    EXPECT_FALSE(host.signIn("nobody", "manager"));
    EXPECT_FALSE(host.signIn("' OR 1=1 --", "x"));
    execute(*session, "UPDATE dbo.HostUsers SET Enabled = 0 WHERE Code = 2");
    EXPECT_FALSE(host.signIn("cashier", "cashier"));
    EXPECT_FALSE(host.signedIn());
    // Each is a line of the log: the name of a user, and nothing else of what was typed.
    EXPECT_THAT(latestEvents(5), ElementsAre("2|1405/08/30|09:05:07|903|6|2|ورود ناموفق به سیستم",
                                             "0|1405/08/30|09:05:07|903|6||ورود ناموفق به سیستم با نامی که نیست",
                                             "0|1405/08/30|09:05:07|903|6||ورود ناموفق به سیستم با نامی که نیست",
                                             "1|1405/08/30|09:05:07|903|6|1|ورود ناموفق به سیستم",
                                             "1|1405/08/30|09:05:07|903|6|1|ورود ناموفق به سیستم"));
}

TEST_F(ReferenceHostTest, aScreenThatIsRefusedIsALineOfTheLog) {
    host.signInAs(2);
    EXPECT_FALSE(host.HavePermission(host.UserInfo(), spDiscountLevels, prOpen, true, true, ""));
    EXPECT_THAT(latestEvents(1), ElementsAre("2|1405/08/30|09:05:07|134|6||دسترسی داده نشد: مشاهده «سطوح تخفیف»"));
    const auto before = latestEvents(2);
    EXPECT_FALSE(host.HavePermission(host.UserInfo(), spDiscountLevels, prOpen, true, false, ""));
    EXPECT_FALSE(host.HavePermission(host.UserInfo(), spDiscountLevels, prEdit, false, true, ""));
    EXPECT_EQ(latestEvents(2), before) << "asked, but no door was tried";
}

// While another program writes, the log cannot.
class RefusedWhileOthersWrite : public DemoFileTest {
protected:
    RefusedWhileOthersWrite() {
        host.setMessages(messages);
        host.signInAs(2);
        other->begin();
    }

    void isQuick() const {
        EXPECT_LT(std::chrono::steady_clock::now() - began_, std::chrono::seconds(3)) << "others were waited for";
    }

    std::unique_ptr<Session> session = openDatabase(path());
    std::unique_ptr<Session> other = openDatabase(path());
    QueuedMessages messages;
    ReferenceHost host{*session, workstation("صندوق ۱")};

private:
    std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
};

TEST_F(RefusedWhileOthersWrite, aScreenIsToldAsRefused) {
    EXPECT_FALSE(host.HavePermission(host.UserInfo(), spDiscountLevels, prOpen, true, true, ""));
    isQuick();
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown.front().operation, "HavePermission");
    other->rollback();
    const std::size_t before = host.userLog().latest(1000, 2).size();
    EXPECT_FALSE(host.HavePermission(host.UserInfo(), spDiscountLevels, prOpen, true, true, ""));
    EXPECT_EQ(host.userLog().latest(1000, 2).size(), before + 1);
    // Of everything else others are waited for as before.
    EXPECT_THAT(linesOf(*session, "SELECT @@LOCK_TIMEOUT"), ElementsAre("-1"));
}

TEST_F(RefusedWhileOthersWrite, aWrongPasswordIsToldAsWrong) {
    EXPECT_FALSE(host.signIn("cashier", "wrong"));
    EXPECT_FALSE(host.signIn("nobody", "wrong"));
    isQuick();
    EXPECT_EQ(host.UserInfo().Code, 2);
}

// The refusal is on the screen before its line is written.
TEST_F(RefusedWhileOthersWrite, theMessageComesFirst) {
    other->rollback();
    const std::size_t before = host.userLog().latest(1000, 2).size();
    std::size_t lines = 0;
    messages.onShow = [&] { lines = host.userLog().latest(1000, 2).size(); };
    EXPECT_FALSE(host.HavePermission(host.UserInfo(), spDiscountLevels, prOpen, true, true, ""));
    EXPECT_EQ(lines, before);
    EXPECT_EQ(host.userLog().latest(1000, 2).size(), before + 1);
}

TEST_F(ReferenceHostTest, aChangedPasswordCounts) {
    host.users().changePassword(2, "رمز تازه");
    EXPECT_FALSE(host.signIn("cashier", "cashier"));
    EXPECT_TRUE(host.signIn("cashier", "رمز تازه"));
    EXPECT_THROW(host.users().changePassword(99, "x"), DatabaseError);
}

TEST_F(ReferenceHostTest, theFirstPasswordIsChosenOnce) {
    execute(*session, "UPDATE dbo.HostUsers SET PasswordHash = N'' WHERE Code = 2");
    EXPECT_FALSE(host.users().list().at(1).hasPassword);
    EXPECT_FALSE(host.signIn("cashier", ""));
    EXPECT_TRUE(host.users().chooseFirstPassword("Cashier", "رمز"));
    EXPECT_TRUE(host.users().list().at(1).hasPassword);
    EXPECT_FALSE(host.users().chooseFirstPassword("cashier", "دیگر"));
    EXPECT_TRUE(host.signIn("cashier", "رمز"));
    EXPECT_THROW(static_cast<void>(host.users().chooseFirstPassword("nobody", "x")), DatabaseError);
}

TEST_F(ReferenceHostTest, signsInByCodeForTheCommandLine) {
    host.signInAs(2);
    EXPECT_EQ(host.UserInfo().UserName, "cashier");
    EXPECT_THROW(host.signInAs(77), UsageError);
    host.signOut();
    EXPECT_THROW(static_cast<void>(host.UserInfo()), UsageError);
    EXPECT_THROW(host.SetUserEvent(spPriceLevels, prEdit, "3", false, true), UsageError);
}

TEST_F(ReferenceHostTest, theManagerMayDoEverything) {
    host.signInAs(1);
    for (const TSoftwarePart part : {spPriceLevels, spDiscountLevels, spPriceReport, hpSettings}) {
        for (const TPermission permission : {prInsert, prEdit, prDelete, prOpen, prEnable}) {
            EXPECT_TRUE(host.HavePermission(host.UserInfo(), part, permission, true, true, ""));
        }
    }
    EXPECT_THAT(messages.shown, IsEmpty());
}

TEST_F(ReferenceHostTest, theCashierOpensPriceLevelsAndNothingMore) {
    host.signInAs(2);
    EXPECT_TRUE(host.HavePermission(host.UserInfo(), spPriceLevels, prOpen, true, true, ""));
    EXPECT_FALSE(host.HavePermission(host.UserInfo(), spPriceLevels, prDelete, false, false, ""));
    EXPECT_THAT(messages.shown, IsEmpty());
    EXPECT_FALSE(host.HavePermission(host.UserInfo(), spDiscountLevels, prOpen, true, true, ""));
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].operation, "HavePermission");
    EXPECT_EQ(messages.shown[0].arguments, (std::vector<std::string>{"سطوح تخفیف", "مشاهده"}));
    EXPECT_EQ(messages.shown[0].kind, MessageKind::None);
    EXPECT_FALSE(messages.shown[0].isQuestion());
}

TEST_F(ReferenceHostTest, aRuleForAUserWinsOverTheGroup) {
    host.permissions().allow(2, spPriceLevels, prOpen, false);
    host.permissions().allow(2, spDiscountLevels, prOpen, true);
    EXPECT_FALSE(host.permissions().holds(2, spPriceLevels, prOpen));
    EXPECT_TRUE(host.permissions().holds(2, spDiscountLevels, prOpen));
    EXPECT_FALSE(host.permissions().holds(2, spDiscountLevels, prEdit));
    host.permissions().allow(2, spDiscountLevels, prOpen, false);
    EXPECT_FALSE(host.permissions().holds(2, spDiscountLevels, prOpen));
    host.permissions().clear(2, spPriceLevels, prOpen);
    EXPECT_TRUE(host.permissions().holds(2, spPriceLevels, prOpen));
}

TEST_F(ReferenceHostTest, partsAndPermissionsWithoutATitleAreStillNamed) {
    execute(*session, "DELETE FROM dbo.SoftwarePart");
    execute(*session, "DELETE FROM dbo.HostPermissionTypes");
    EXPECT_EQ(host.permissions().partTitle(spDiscountLevels), "سطوح تخفیف") << "as the menu calls it";
    EXPECT_EQ(host.permissions().partTitle(spTags), "127");
    EXPECT_EQ(host.permissions().permissionTitle(prEdit), "2");
}

TEST_F(ReferenceHostTest, nobodyHoldsAPermissionWithoutBeingAnEnabledUser) {
    EXPECT_FALSE(host.permissions().holds(0, spPriceLevels, prOpen));
    execute(*session, "UPDATE dbo.HostUsers SET Enabled = 0 WHERE Code = 1");
    EXPECT_FALSE(host.permissions().holds(1, spPriceLevels, prOpen));
}

class EventList final : public HostObserver {
public:
    void userEvent(TSoftwarePart part, TPermission permission, const std::string& text) override {
        events.push_back(std::to_string(part) + "," + std::to_string(permission) + "," + text);
    }
    std::vector<std::string> events;
};

TEST_F(ReferenceHostTest, deletionsAreLoggedWithADescriptionAlways) {
    EventList list;
    host.setObserver(&list);
    host.signInAs(2);
    host.SetUserEvent(spPriceLevels, prEdit, "3", false, true);
    host.SetUserEvent(spDiscountLevels, prDelete, "4", false, false);
    EXPECT_THAT(latestEvents(2), ElementsAre("2|1405/08/30|09:05:07|134|3|4|حذف «سطوح تخفیف»",
                                             "2|1405/08/30|09:05:07|114|2|3|ویرایش «سطوح قیمت»"));
    EXPECT_THAT(list.events, ElementsAre("114,2,3", "134,3,4"));
    const auto entries = host.userLog().latest(1);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].userName, "علی کریمی");
    EXPECT_EQ(entries[0].workstationName, "صندوق ۱");
    EXPECT_EQ(entries[0].partTitle, "سطوح تخفیف");
    EXPECT_EQ(entries[0].permissionTitle, "حذف");
}

TEST_F(ReferenceHostTest, anEventInATransactionGoesWithIt) {
    host.signInAs(1);
    const auto before = latestEvents(1);
    TADOConnection& connection = host.DM().ADOConnection1;
    connection.BeginTrans();
    host.SetUserEvent(spPriceLevels, prDelete, "4", true, false);
    EXPECT_THAT(latestEvents(1), ElementsAre("1|1405/08/30|09:05:07|114|3|4|حذف «سطوح قیمت»"));
    connection.RollbackTrans();
    EXPECT_EQ(latestEvents(1), before);
    EXPECT_THROW(host.SetUserEvent(spPriceLevels, prDelete, "4", true, false), UsageError);
}

TEST_F(ReferenceHostTest, longTextsAreCutAtWholeCharacters) {
    host.signInAs(1);
    std::string text;
    for (int i = 0; i < 251; ++i)
        text += "😀";
    host.SetUserEvent(spPriceLevels, prEdit, text, false, false);
    EXPECT_EQ(host.userLog().latest(1)[0].text, text.substr(0, 250 * 4));
}

TEST_F(ReferenceHostTest, scalerQueryFindsOneValue) {
    EXPECT_EQ(toText(host.ScalerQuery("SoftwarePart", "Title", "Code", "114")), "سطوح قیمت");
    EXPECT_EQ(toText(host.ScalerQuery("SoftwarePart", "Title", "Code", "134")), "سطوح تخفیف");
    EXPECT_TRUE(isNull(host.ScalerQuery("SoftwarePart", "Title", "Code", "99999")));
    EXPECT_EQ(toInt64(host.ScalerQuery("HostUsers", "ISNULL(NULLIF(GroupCode, 0), 1)", "Code", "1")), 1);
    EXPECT_EQ(toInt64(host.ScalerQuery("dbo.HostUsers", "Code", "[UserName]", "CASHIER")), 2);
}

TEST_F(ReferenceHostTest, scalerQueryTakesTextsAsTexts) {
    EXPECT_TRUE(isNull(host.ScalerQuery("HostUsers", "Code", "UserName", "x' OR '1'='1")));
    EXPECT_THROW(host.ScalerQuery("HostUsers; DELETE FROM HostUsers", "Code", "Code", "1"), UsageError);
    EXPECT_THROW(host.ScalerQuery("HostUsers", "Code", "1=1 OR Code", "1"), UsageError);
    EXPECT_THROW(host.ScalerQuery("HostUsers", "Code", "[Code", "1"), UsageError);
    EXPECT_THROW(host.ScalerQuery("", "Code", "Code", "1"), UsageError);
    EXPECT_THAT(linesOf(*session, "SELECT COUNT(*) FROM dbo.HostUsers"), ElementsAre("2"));
}

TEST_F(ReferenceHostTest, theHostsOwnStatementsAreNotAmongTheModules) {
    class Listener final : public StatementObserver {
    public:
        void sending(const SentStatement& statement) override { texts.push_back(statement.text); }
        std::vector<std::string> texts;
    } listener;
    host.DM().ADOConnection1.addObserver(listener);
    host.signInAs(1);
    static_cast<void>(host.ScalerQuery("SoftwarePart", "Title", "Code", "114"));
    host.SetUserEvent(spPriceLevels, prEdit, "3", false, true);
    static_cast<void>(host.LocateLockCode_SoftwarePart("3", spPriceLevels, 1, false));
    EXPECT_THAT(listener.texts, IsEmpty());
    host.DM().SharedQuery.SQL = "select Code from CostLevel";
    host.DM().SharedQuery.Open();
    EXPECT_THAT(listener.texts, ElementsAre("select Code from CostLevel"));
    host.DM().ADOConnection1.removeObserver(listener);
}

TEST_F(ReferenceHostTest, resettingAListStaysAtItsRecord) {
    TADOQuery query(host.connection(), "List");
    query.SQL = "select Code, Name from CostLevel where CostType = 1 order by Code";
    query.Open();
    ASSERT_TRUE(query.Locate("Code", std::int64_t{5}));
    execute(*session, "DELETE FROM dbo.CostLevel WHERE CostType = 1 AND Code IN (0, 4)");
    host.ResetDataset(query);
    EXPECT_EQ(query.FieldByName("Code").AsInteger(), 5);
    EXPECT_EQ(query.RecordCount(), 9);
}

TEST_F(ReferenceHostTest, resettingAListStaysAtItsRecordAmongTwinsOfItsCode) {
    execute(*session, "INSERT INTO dbo.CostLevel (Code, Name, CostType) VALUES (2, N'قدیمی', 4)");
    TADOQuery query(host.connection(), "List");
    query.SQL = "select Code, Name from CostLevel where CostType IN (3, 4) order by CostType, Code";
    query.Open();
    ASSERT_TRUE(query.Locate("Name", std::string("قدیمی")));
    host.ResetDataset(query);
    EXPECT_EQ(query.FieldByName("Name").AsString(), "قدیمی");
    ASSERT_TRUE(query.Locate("Code", std::int64_t{2}));
    const std::string name = query.FieldByName("Name").AsString();
    ASSERT_NE(name, "قدیمی");
    execute(*session, "DELETE FROM dbo.CostLevel WHERE CostType = 3 AND Code = 1");
    host.ResetDataset(query);
    EXPECT_EQ(query.FieldByName("Name").AsString(), name);
}

TEST_F(ReferenceHostTest, resettingAListWhoseRecordIsGoneStaysNear) {
    TADOQuery query(host.connection(), "List");
    query.SQL = "select Code, Name from CostLevel where CostType = 3 order by Code";
    query.Open();
    query.Last();
    execute(*session, "DELETE FROM dbo.CostLevel WHERE CostType = 3 AND Code = 4");
    host.ResetDataset(query);
    EXPECT_EQ(query.FieldByName("Code").AsInteger(), 3);
    execute(*session, "DELETE FROM dbo.CostLevel WHERE CostType = 3");
    host.ResetDataset(query);
    EXPECT_TRUE(query.IsEmpty());
}

TEST_F(ReferenceHostTest, aGoodHasAUnitFormulaWhenItCanBeCalculated) {
    EXPECT_TRUE(host.CheckGoodUnitFormul(1));
    EXPECT_FALSE(host.CheckGoodUnitFormul(11));  // one unit only
    EXPECT_FALSE(host.CheckGoodUnitFormul(99999));
    execute(*session, "UPDATE dbo.GoodInf SET UnitFormul = N'X*' WHERE Code = 1");
    EXPECT_FALSE(host.CheckGoodUnitFormul(1));
}

TEST_F(ReferenceHostTest, todayIsJalali) {
    EXPECT_EQ(host.NowDate("/"), "1405/08/30");
    EXPECT_EQ(host.NowDate(""), "14050830");
    clock.set({.year = 2025, .month = 3, .day = 20});
    EXPECT_EQ(host.NowDate("-"), "1403-12-30");
}

TEST(UnattendedHost, cannotAnswerQuestions) {
    const auto session = openDatabase(":memory:");
    ReferenceHost host(*session, workstation("آزمون"));
    MessageRequest question{.operation = "MsgDeleteRow", .buttons = {TMessageButton::Yes, TMessageButton::No}};
    try {
        host.Messages().show(question);
        FAIL() << "a question answered itself";
    } catch (const UsageError& error) {
        EXPECT_THAT(error.what(), HasSubstr("آیا از حذف این سطر مطمئن هستید؟"));
    }
    MessageRequest note;
    note.operation = "NotEditable";
    EXPECT_EQ(host.Messages().show(note), mrNone);
}

TEST(UndeployedHost, canBeMadeAndSaysWhatIsMissing) {
    const auto session = openDatabase(":memory:");
    ReferenceHost host(*session, workstation("آزمون"));
    try {
        host.signInAs(1);
        FAIL() << "there are no users";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::NotFound);
    }
}

TEST_F(ReferenceHostTest, callsTheModulesTagEditor) {
    EXPECT_THROW(host.Call_insert_tags("", 1), UsageError) << "no module is attached";
    Registry exports;
    host.setExports(&exports);
    EXPECT_THROW(host.Call_insert_tags("", 1), UsageError) << "the module has no such export";

    std::vector<std::string> asked;
    Datum answer = 12;
    exports.add(EntryPoint{.name = "Open_InsertTags",
                           .subsystem = "tags",
                           .title = "",
                           .summary = "",
                           .part = spTags,
                           .permission = prInsert,
                           .parameters = {in("Text", "text"), in("Kind", "integer")},
                           .result = "integer",
                           .run = [&](FunctionCall& call) {
                               asked.push_back(call.text("Text") + "|" + std::to_string(call.integer("Kind")));
                               call.result(answer);
                           }});
    EXPECT_EQ(host.Call_insert_tags("", 1), 12);
    answer = -1;
    EXPECT_EQ(host.Call_insert_tags("7", 0), -1);
    answer = nullptr;  // refused
    EXPECT_EQ(host.Call_insert_tags("", 255), 0);
    EXPECT_THAT(asked, ElementsAre("|1", "7|0", "|255"));
}

TEST_F(ReferenceHostTest, picksNothingWithoutScreens) {
    EXPECT_THROW(static_cast<void>(host.Select_Entity_Multible(spGoods, "")), UsageError);
}

}  // namespace
}  // namespace basalt::host
