// Buttons by mouse, keyboard and drop-down.
#include "host/screens/smart_button.h"

#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

class SmartButtons : public ScreenTest {
protected:
    SmartButton button{screens.context(), QStringLiteral("Save_BTN")};
};

TEST_F(SmartButtons, showTheirCaptionAndKey) {
    button.SetCaption("ذخيره F3");
    EXPECT_EQ(button.Caption(), "ذخيره F3");
    EXPECT_EQ(button.shortCut(), QKeySequence(Qt::Key_F3));
    EXPECT_EQ(button.accessibleName().toStdString(), "ذخيره");
}

TEST_F(SmartButtons, areClickedByMouseAndKeyboard) {
    int clicks = 0;
    button.OnClick = [&] { ++clicks; };
    button.show();
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    QTest::mouseClick(button.findChild<QPushButton*>(), Qt::LeftButton);
    EXPECT_EQ(clicks, 2);
    QTest::keyClick(&button, Qt::Key_Space);
    EXPECT_EQ(clicks, 3);
    QTest::mouseClick(&button, Qt::RightButton);
    EXPECT_EQ(clicks, 3);
}

TEST_F(SmartButtons, doNothingWhileDisabled) {
    int clicks = 0;
    button.OnClick = [&] { ++clicks; };
    button.setEnabled(false);
    button.show();
    QTest::mouseClick(&button, Qt::LeftButton);
    button.Click();
    EXPECT_EQ(clicks, 0);
}

TEST_F(SmartButtons, showTheErrorsOfTheirHandlers) {
    button.OnClick = [] { throw DatabaseError(ErrorCategory::Busy, "HYT00", 1222, "locked"); };
    messages.expect("DatabaseError");
    button.Click();
    EXPECT_EQ(messages.shown.at(0).kind, MessageKind::Error);
    EXPECT_EQ(messages.shown.at(0).arguments.size(), 2U);
    EXPECT_EQ(messages.shown.at(0).arguments.at(1), "locked");

    button.OnClick = [] { throw UsageError("used wrongly"); };
    messages.expect("ProgramError");
    button.Click();
    EXPECT_EQ(messages.shown.at(1).arguments.at(1), "used wrongly");
}

TEST_F(SmartButtons, offerTheOtherWaysOfSaving) {
    std::vector<TSaveKind> kinds;
    button.setSaveHandler([&](TSaveKind kind) { kinds.push_back(kind); });
    button.SetSaveMode(2);
    button.Click();
    EXPECT_EQ(kinds, std::vector<TSaveKind>{TSaveKind::SaveAndClose});

    auto* menu = button.findChild<QToolButton*>(QStringLiteral("Save_BTN_Variants"))->menu();
    std::vector<std::string> titles;
    for (const QAction* action : menu->actions())
        titles.push_back(action->text().toStdString());
    EXPECT_EQ(titles, (std::vector<std::string>{"ذخیره", "ذخیره و جدید", "ذخیره و چاپ"}));
    menu->actions().at(1)->trigger();
    EXPECT_EQ(kinds.back(), TSaveKind::SaveAndNew);

    button.SetSaveMode(0);
    EXPECT_EQ(button.findChildren<QToolButton*>().size(), 1);
    EXPECT_EQ(menu->actions().size(), 3);
    EXPECT_THROW(button.SetSaveMode(4), UsageError);
    EXPECT_THROW(button.SetSaveMode(-1), UsageError);
}

TEST_F(SmartButtons, leaveOutAWayOfSavingThatMakesNoSense) {
    button.leaveOut(TSaveKind::SaveAndNew);
    button.SetSaveMode(2);
    std::vector<std::string> titles;
    for (const QAction* action : button.findChild<QToolButton*>(QStringLiteral("Save_BTN_Variants"))->menu()->actions())
        titles.push_back(action->text().toStdString());
    EXPECT_EQ(titles, (std::vector<std::string>{"ذخیره", "ذخیره و چاپ"}));
}

}  // namespace
}  // namespace basalt::host
