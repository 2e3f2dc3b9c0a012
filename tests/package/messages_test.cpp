// Messages: each operation as the host receives it.
#include "package/messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <ostream>

#include "ado/error.h"
#include "package/services.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Stands for a widget, which nothing here looks into.
QWidget* const someControl = reinterpret_cast<QWidget*>(0x10);  // NOLINT: never followed
QWidget* const someForm = reinterpret_cast<QWidget*>(0x20);     // NOLINT: never followed

class Messages : public ::testing::Test {
protected:
    ScriptedSession session;
    FakeHost host{session};
    AttachedHost attached{host};
};

struct Statement {
    const char* name;
    std::function<void()> send;
    const char* line;
};
void PrintTo(const Statement& row, std::ostream* out) {
    *out << row.name;
}

class PlainMessage : public Messages, public ::testing::WithParamInterface<Statement> {};

TEST_P(PlainMessage, reachesTheHostAndAsksNothing) {
    host.expectMessage(GetParam().line);
    GetParam().send();
    EXPECT_THAT(host.lastMessage.buttons, IsEmpty());
    EXPECT_EQ(host.lastMessage.displayMilliseconds, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Package, PlainMessage,
    ::testing::Values(Statement{"requiredField", [] { MsgRequiredField("نام"); }, "MsgRequiredField('نام')"},
                      Statement{"repeatedField", [] { MsgRepeatedField("نام", "سطح قیمتی"); },
                                "MsgRepeatedField('نام', 'سطح قیمتی')"},
                      Statement{"inUse", [] { MSGInUse("سطح قيمتي"); }, "MSGInUse('سطح قيمتي')"},
                      Statement{"subRecords", [] { MsgHasSubRecords("سطر"); }, "MsgHasSubRecords('سطر')"},
                      Statement{"defaultRecord", [] { DeleteDefault("سطح", "حذف"); }, "DeleteDefault('سطح', 'حذف')"},
                      Statement{"notEditable", [] { NotEditable("کليه گروه ها"); }, "NotEditable('کليه گروه ها')"},
                      Statement{"notSelected", [] { MsgNotSelected("کالا"); }, "MsgNotSelected('کالا')"},
                      Statement{"plain", [] { ShowMessage("یافت نشد"); }, "ShowMessage('یافت نشد')"},
                      Statement{"flash", [] { ShowFlashMessage("خوانده شد"); }, "ShowFlashMessage('خوانده شد')"},
                      Statement{"notification", [] { ShowSmartMessage(TNotificationMessage{20091}); },
                                "ShowSmartMessage(notification 20091)"},
                      Statement{"errorWithTexts",
                                [] {
                                    ShowSmartMessage(TErrorMessage{30055}, {"", "ب"});
                                },
                                "ShowSmartMessage(error 30055, '', 'ب')"},
                      Statement{"trailingEmptyTextsAreDropped",
                                [] {
                                    ShowSmartMessage(TErrorMessage{30055}, {"الف", "", ""});
                                },
                                "ShowSmartMessage(error 30055, 'الف')"}),
    [](const auto& row) { return row.param.name; });

TEST_F(Messages, pointAtTheirControl) {
    host.expectMessage("MsgRequiredField('کد')");
    MsgRequiredField("کد", someControl, someForm);
    EXPECT_EQ(host.lastMessage.control, someControl);
    EXPECT_EQ(host.lastMessage.form, someForm);

    host.expectMessage("MsgRepeatedField('نام', 'سطح قیمتی')");
    MsgRepeatedField("نام", "سطح قیمتی", someControl, someForm);
    EXPECT_EQ(host.lastMessage.control, someControl);
    EXPECT_EQ(host.lastMessage.form, someForm);

    host.expectMessage("MsgNotSelected('کالا')");
    MsgNotSelected("کالا", someControl, someForm);
    EXPECT_EQ(host.lastMessage.control, someControl);
    EXPECT_EQ(host.lastMessage.form, someForm);

    host.expectMessage("ShowSmartMessage(error 30055)");
    ShowSmartMessage(TErrorMessage{30055}, {}, someControl, someForm, 1500);
    EXPECT_EQ(host.lastMessage.control, someControl);
    EXPECT_EQ(host.lastMessage.form, someForm);
    EXPECT_EQ(host.lastMessage.displayMilliseconds, 1500);
}

TEST_F(Messages, tooltipPointsAtAWindow) {
    host.expectMessage("ShowTooltipMessage('متن', '11', '9')");
    ShowTooltipMessage(0xABCD, "متن", {"11", "9"});
    EXPECT_EQ(host.lastMessage.controlHandle, 0xABCDU);
}

TEST_F(Messages, onlyYesConfirmsADelete) {
    host.expectMessage("MsgDeleteRow()", mrYes);
    EXPECT_TRUE(MsgDeleteRow());
    EXPECT_THAT(host.lastMessage.buttons, ElementsAre(TMessageButton::Yes, TMessageButton::No));
    EXPECT_EQ(host.lastMessage.defaultButton, TMessageButton::No);
    for (const int answer : {mrNo, mrCancel}) {
        host.expectMessage("MsgDeleteRow()", answer);
        EXPECT_FALSE(MsgDeleteRow());
    }
    host.expectMessage("MsgDeleteItem('دسته')", mrYes);
    EXPECT_TRUE(MsgDeleteItem("دسته"));
    host.expectMessage("MsgDeleteItem('دسته')", mrNo);
    EXPECT_FALSE(MsgDeleteItem("دسته"));
}

TEST_F(Messages, numberedConfirmationGivesTheButton) {
    host.expectMessage("ShowSmartMessage(confirmation 10006, 'الف')", mrCancel);
    EXPECT_EQ(ShowSmartMessage(TConfirmationMessage{10006}, {"الف"},
                               {TMessageButton::Yes, TMessageButton::No, TMessageButton::Cancel}, TMessageButton::Yes),
              mrCancel);
    EXPECT_THAT(host.lastMessage.buttons, ElementsAre(TMessageButton::Yes, TMessageButton::No, TMessageButton::Cancel));
    EXPECT_EQ(host.lastMessage.defaultButton, TMessageButton::Yes);
}

TEST_F(Messages, numberedMessagesTakeElevenTexts) {
    host.expectMessage("ShowSmartMessage(error 30055, '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1')");
    ShowSmartMessage(TErrorMessage{30055}, std::vector<std::string>(11, "1"));
    EXPECT_THROW(ShowSmartMessage(TErrorMessage{30055}, std::vector<std::string>(12, "1")), UsageError);
    EXPECT_THROW(ShowSmartMessage(TConfirmationMessage{10006}, std::vector<std::string>(12, "1")), UsageError);
    EXPECT_THROW(ShowSmartMessage(TNotificationMessage{20091}, std::vector<std::string>(12, "1")), UsageError);
}

}  // namespace
}  // namespace basalt
