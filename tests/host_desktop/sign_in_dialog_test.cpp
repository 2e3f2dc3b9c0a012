#include "host/desktop/sign_in_dialog.h"

#include "host/screens/theme.h"
#include "tests/host_desktop/desktop_test.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;

class SignIn : public DesktopTest {
protected:
    static std::vector<std::string> users(const SignInDialog& dialog) {
        const auto& combo = control<QComboBox>(dialog, "User_CMB");
        std::vector<std::string> names;
        for (int i = 0; i < combo.count(); ++i)
            names.push_back(combo.itemText(i).toStdString());
        return names;
    }
};

TEST_F(SignIn, theRightPasswordSignsIn) {
    SignInDialog dialog(host);
    showActive(dialog);
    EXPECT_TRUE(control(dialog, "Password_EDT").hasFocus());
    type(dialog, "Password_EDT", "manager");
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(host.UserInfo().Code, 1);
    EXPECT_EQ(host.optionFile().options().lastUserName, "manager");
    EXPECT_EQ(host.userLog().latest(1).at(0).description, "ورود به سیستم");
}

TEST_F(SignIn, aWrongPasswordIsToldInsideAndTriedAgain) {
    SignInDialog dialog(host);
    showActive(dialog);
    EXPECT_EQ(shown(dialog, "Error_LBL"), "(hidden)");
    type(dialog, "Password_EDT", "Manager");
    click(dialog, "SignIn_BTN");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(shown(dialog, "Error_LBL"), "گذرواژه درست نیست. دوباره وارد کنید.");
    EXPECT_EQ(control<QLineEdit>(dialog, "Password_EDT").text(), "");
    EXPECT_TRUE(control(dialog, "Password_EDT").hasFocus());
    EXPECT_FALSE(host.signedIn());
    type(dialog, "Password_EDT", "manager");
    EXPECT_EQ(shown(dialog, "Error_LBL"), "(hidden)");
    click(dialog, "SignIn_BTN");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(SignIn, aPersianKeyboardIsToldOf) {
    SignInDialog dialog(host);
    showActive(dialog);
    EXPECT_EQ(shown(dialog, "Keyboard_LBL"), "(hidden)");
    type(dialog, "Password_EDT", "ئشد");
    const char* told = "صفحه‌کلید فارسی است؛ شاید گذرواژه به لاتین باشد.";
    EXPECT_EQ(shown(dialog, "Keyboard_LBL"), told);
    click(dialog, "SignIn_BTN");
    EXPECT_EQ(shown(dialog, "Keyboard_LBL"), told) << "that is when the reason is wanted";
    type(dialog, "Password_EDT", "manager");
    EXPECT_EQ(shown(dialog, "Keyboard_LBL"), "(hidden)");
}

TEST_F(SignIn, growsWithWhatItSays) {
    setThemeFontSize(16);
    SignInDialog dialog(
        host, QStringLiteral("پایگاه داده به نسخهٔ این برنامه به‌روز شد."));
    showActive(dialog);
    dialog.resize(dialog.width(), dialog.height());
    type(dialog, "Password_EDT", "wrong");
    click(dialog, "SignIn_BTN");
    QApplication::processEvents();
    for (const char* name : {"Notice_LBL", "Error_LBL", "DemoHint_LBL"}) {
        const auto& label = control<QLabel>(dialog, name);
        EXPECT_GE(label.height(), label.heightForWidth(label.width())) << name;
    }
    setThemeFontSize(10);
}

TEST_F(SignIn, anotherUserIsChosenByKeyboard) {
    SignInDialog dialog(host);
    showActive(dialog);
    EXPECT_THAT(users(dialog), ElementsAre("مریم رستمی", "علی کریمی"));
    QTest::keyClick(&control(dialog, "User_CMB"), Qt::Key_Down);
    EXPECT_EQ(shown(dialog, "DemoHint_LBL"), "دادهٔ این پایگاه نمایشی است؛ گذرواژهٔ این کاربر «cashier» است.");
    type(dialog, "Password_EDT", "cashier");
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(host.UserInfo().Code, 2);
}

TEST_F(SignIn, aUserWithoutAPasswordChoosesOne) {
    session->run("UPDATE dbo.HostUsers SET PasswordHash = N'' WHERE Code = 1");
    SignInDialog dialog(host);
    showActive(dialog);
    EXPECT_EQ(
        shown(dialog, "DemoHint_LBL"),
        "این کاربر هنوز گذرواژه‌ای ندارد. آنچه اکنون می‌نویسید گذرواژهٔ او می‌شود.");
    click(dialog, "SignIn_BTN");
    EXPECT_EQ(shown(dialog, "Error_LBL"), "گذرواژه را بنویسید.");
    type(dialog, "Password_EDT", "one");
    type(dialog, "Repeat_EDT", "two");
    click(dialog, "SignIn_BTN");
    EXPECT_EQ(shown(dialog, "Error_LBL"), "تکرار گذرواژه با خود آن یکی نیست. دوباره وارد کنید.");
    EXPECT_FALSE(host.signedIn());
    type(dialog, "Password_EDT", "one");
    type(dialog, "Repeat_EDT", "one");
    click(dialog, "SignIn_BTN");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(host.users().signIn("manager", "one"));
}

TEST_F(SignIn, aFirstPasswordThatAnotherHasChosenMeanwhileStays) {
    session->run("UPDATE dbo.HostUsers SET PasswordHash = N'' WHERE Code = 1");
    SignInDialog dialog(host);
    showActive(dialog);
    ASSERT_TRUE(host.users().chooseFirstPassword("manager", "theirs"));
    type(dialog, "Password_EDT", "mine");
    type(dialog, "Repeat_EDT", "mine");
    click(dialog, "SignIn_BTN");
    EXPECT_FALSE(host.signedIn());
    EXPECT_FALSE(control(dialog, "Repeat_EDT").isVisible());
    type(dialog, "Password_EDT", "theirs");
    click(dialog, "SignIn_BTN");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(SignIn, theLastUserIsOfferedFirst) {
    host.optionFile().change([](WorkstationOptions& options) { options.lastUserName = "cashier"; });
    const SignInDialog dialog(host);
    EXPECT_EQ(control<QComboBox>(dialog, "User_CMB").currentText(), "علی کریمی");
}

TEST_F(SignIn, aUserWhoMayNotSignInIsNotOffered) {
    session->run("UPDATE dbo.HostUsers SET Enabled = 0 WHERE Code = 2");
    const SignInDialog dialog(host);
    EXPECT_THAT(users(dialog), ElementsAre("مریم رستمی"));
}

TEST_F(SignIn, nobodyWhoMaySignInIsToldAtOnce) {
    session->run("UPDATE dbo.HostUsers SET Enabled = 0");
    SignInDialog dialog(host);
    showActive(dialog);
    // clang-format off
    EXPECT_EQ(shown(dialog, "Error_LBL"), "در این پایگاه داده هیچ کاربری اجازهٔ ورود ندارد. از مدیر سیستم بخواهید کاربری را فعال کند.");
    // clang-format on
    EXPECT_EQ(shown(dialog, "DemoHint_LBL"), "(hidden)");
    EXPECT_FALSE(control(dialog, "SignIn_BTN").isEnabled());
    EXPECT_FALSE(control(dialog, "Password_EDT").isEnabled());
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(SignIn, escapeLeaves) {
    SignInDialog dialog(host);
    showActive(dialog);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(host.signedIn());
}

TEST_F(SignIn, aFailingDatabaseIsToldInside) {
    SignInDialog dialog(host);
    showActive(dialog);
    session->run("DROP TABLE dbo.HostUserLog");
    type(dialog, "Password_EDT", "manager");
    click(dialog, "SignIn_BTN");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(shown(dialog, "Error_LBL"), host.catalogue().errorText(ErrorCategory::NotFound));
    EXPECT_EQ(control<QLineEdit>(dialog, "Password_EDT").text(), "manager");
}

class SignInToAFile : public DemoFileTest {
protected:
    std::unique_ptr<Session> session = embedded::EmbeddedSession::open(path(), {.busyTimeoutMs = 200});
    ReferenceHost host{*session, workstation("دفتر آزمون")};
};

TEST_F(SignInToAFile, aPasswordStaysWhileAnotherProgramIsWriting) {
    const auto writer = openDatabase(path());
    SignInDialog dialog(host);
    showActive(dialog);
    type(dialog, "Password_EDT", "manager");
    writer->begin();
    execute(*writer, "UPDATE dbo.HostUsers SET FullName = FullName");
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_FALSE(host.signedIn());
    EXPECT_EQ(shown(dialog, "Error_LBL"), host.catalogue().errorText(ErrorCategory::Busy));
    auto& password = control<QLineEdit>(dialog, "Password_EDT");
    EXPECT_EQ(password.text(), "manager");
    EXPECT_TRUE(password.hasFocus());

    writer->rollback();
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(host.UserInfo().Code, 1);
}

// Screens give back by themselves what another program's writing has held up.
TEST_F(SignInToAFile, aRecordDoesNotStayOpenForOthers) {
    const HostScreenServices screens(host);
    const auto writer = openDatabase(path());
    CodeLock lock = host.codeLocks().hold("3", spPriceLevels);
    writer->begin();
    execute(*writer, "UPDATE dbo.HostUsers SET FullName = FullName");
    lock.release();
    const auto held = [&] { return linesOf(*writer, "SELECT COUNT(*) FROM dbo.CodeLock_TBL").front(); };
    EXPECT_EQ(held(), "1");
    writer->rollback();
    QTRY_COMPARE_WITH_TIMEOUT(held(), std::string("0"), 10'000);
}

TEST_F(SignInToAFile, aFirstPasswordStaysWhileAnotherProgramIsWriting) {
    session->run("UPDATE dbo.HostUsers SET PasswordHash = N'' WHERE Code = 1");
    const auto writer = openDatabase(path());
    SignInDialog dialog(host);
    showActive(dialog);
    type(dialog, "Password_EDT", "one");
    type(dialog, "Repeat_EDT", "one");
    writer->begin();
    execute(*writer, "UPDATE dbo.HostUsers SET FullName = FullName");
    click(dialog, "SignIn_BTN");
    EXPECT_EQ(control<QLineEdit>(dialog, "Password_EDT").text(), "one");
    EXPECT_EQ(control<QLineEdit>(dialog, "Repeat_EDT").text(), "one");
    writer->rollback();
    click(dialog, "SignIn_BTN");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(SignIn, aDatabaseWithoutDemoDataGivesNoHint) {
    session->run("DELETE FROM dbo.HostSettings WHERE Name = N'DemoData'");
    SignInDialog dialog(host, "یادداشت");
    showActive(dialog);
    EXPECT_EQ(shown(dialog, "DemoHint_LBL"), "(hidden)");
    EXPECT_EQ(shown(dialog, "Notice_LBL"), "یادداشت");
}

}  // namespace
}  // namespace basalt::host
