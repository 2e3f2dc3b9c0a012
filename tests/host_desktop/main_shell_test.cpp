#include "host/desktop/main_shell.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTableWidget>
#include <QTimer>
#include <map>
#include <set>

#include "host/screens/theme.h"
#include "host/steps/step_player.h"
#include "host/steps/steps_file.h"
#include "tests/host_desktop/desktop_test.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Shell : public DesktopTest {
protected:
    MainShell& open(int user) {
        host.signInAs(user);
        shell = std::make_unique<MainShell>(context());
        shell->OnClosed = [this](MainShell::End end) { ends.push_back(end); };
        showActive(*shell);
        return *shell;
    }
    // Plays steps on the shell and on the screens that it opens. What went wrong, if anything.
    std::string play(const char* steps) {
        StepPlayer player(parseSteps(steps, "steps"), "steps");
        host.setMessages(player.messages());
        QEventLoop loop;
        shell->OnClosed = [&](MainShell::End) { loop.quit(); };
        player.start();
        loop.exec();
        player.returned({});
        player.finish();
        host.setMessages(messages);
        return player.failure().value_or("");
    }
    [[nodiscard]] bool locked(const char* button) const { return control(*shell, button).property("locked").toBool(); }

    std::unique_ptr<MainShell> shell;
    std::vector<MainShell::End> ends;
};

TEST_F(Shell, offersTheScreensThatAUserOpens) {
    open(1);
    EXPECT_EQ(control<QPushButton>(*shell, "Open_CostLevel_List_BTN").text(), "سطوح قیمت");
    EXPECT_EQ(control<QPushButton>(*shell, "Open_DiscountLevel_List_BTN").text(), "سطوح تخفیف");
    // Picks a level for another screen; nobody would know what to do with what was picked here.
    EXPECT_EQ(shell->findChild<QWidget*>("Select_CostLevel_List_BTN"), nullptr);
    EXPECT_FALSE(locked("Open_CostLevel_List_BTN"));
    EXPECT_FALSE(locked("Settings_BTN"));
}

TEST_F(Shell, namesUserDatabaseEngineAndWorkstation) {
    open(1);
    EXPECT_EQ(shown(*shell, "Company_LBL"), "بازرگانی مهرآفرین");
    EXPECT_EQ(shown(*shell, "Date_LBL"), "شنبه ۳۰ آبان ۱۴۰۵");
    EXPECT_EQ(shown(*shell, "StatusUser_LBL"), "مریم رستمی");
    EXPECT_EQ(shown(*shell, "StatusDatabase_LBL"), "\u2066" + session->location() + "\u2069");
    EXPECT_EQ(shown(*shell, "StatusEngine_LBL"), "موتور داخلی");
    EXPECT_EQ(shown(*shell, "StatusWorkstation_LBL"), "دفتر آزمون");
}

TEST_F(Shell, longNamesMakeTheWindowNoWider) {
    const QString company = QString::fromUtf8("شرکت بازرگانی ").repeated(7).trimmed();
    SettingsStore(*session).store("CompanyName", company.toStdString());
    execute(*session, "UPDATE dbo.HostUsers SET FullName = ? WHERE Code = 1",
            {Value(QString::fromUtf8("موسوی‌نژاد ").repeated(9).trimmed().toStdString())});
    setThemeFontSize(16);
    open(1);
    shell->setMinimumSize(0, 0);
    EXPECT_LE(shell->minimumSizeHint().width(), 1280);
    shell->resize(1280, 720);
    QCoreApplication::processEvents();
    const auto& name = control<QLabel>(*shell, "Company_LBL");
    EXPECT_EQ(name.text(), company) << "it stays whole for those who ask";
    EXPECT_LT(name.width(), name.sizeHint().width()) << "or the names are too short for this test";
    for (const char* whole : {"Date_LBL", "SignOut_BTN"}) {
        const QWidget& beside = control(*shell, whole);
        EXPECT_GE(beside.width(), beside.sizeHint().width()) << whole;
    }
    const auto& greeting = control<QLabel>(*shell, "Greeting_LBL");
    EXPECT_LT(greeting.width(), greeting.sizeHint().width());
    EXPECT_LE(greeting.mapTo(shell.get(), QPoint(greeting.width(), 0)).x(), shell->width());
    EXPECT_GE(greeting.mapTo(shell.get(), QPoint(0, 0)).x(), 0);
    setThemeFontSize(10);
}

TEST_F(Shell, itsHeaderFollowsTheCompanysName) {
    open(1);
    click(*shell, "Settings_BTN");
    EXPECT_NE(control<QLineEdit>(*shell, "CompanyName_EDT").placeholderText(), "");
    type(*shell, "CompanyName_EDT", "فروشگاه تازه");
    click(*shell, "SaveSettings_BTN");
    EXPECT_EQ(shown(*shell, "Company_LBL"), "فروشگاه تازه");
    type(*shell, "CompanyName_EDT", "");
    click(*shell, "SaveSettings_BTN");
    EXPECT_EQ(shown(*shell, "Company_LBL"), "بازالت");
}

TEST_F(Shell, fitsTheScreen) {
    EXPECT_EQ(themeWindowSize({1200, 780}, QSize(1366, 768)), QSize(1200, 720)) << "a title stands above";
    EXPECT_EQ(themeWindowSize({900, 600}, QSize(800, 600)), QSize(784, 552));
    EXPECT_EQ(open(1).size(), QSize(1200, 780));
    EXPECT_LE(shell->minimumSizeHint().height(), 560);
}

TEST_F(Shell, opensAScreenByMouseAndByKeyboard) {
    open(1);
    EXPECT_EQ(play("click Open_CostLevel_List_BTN\n"
                   "expect screen TCostLevel_List_FRM\n"
                   "key - Escape\n"
                   "expect screen MainShell_FRM\n"
                   "key - Ctrl+2\n"
                   "expect screen TCostLevel_List_FRM\n"
                   "key - Escape\n"
                   "expect screen MainShell_FRM\n"
                   "click Open_DiscountLevel_List_TILE\n"
                   "expect screen TCostLevel_List_FRM\n"),
              "");
}

TEST_F(Shell, escapeLeadsHomeFromEveryPage) {
    open(1);
    EXPECT_EQ(play("key - Ctrl+L\nexpect visible Log_GRD\nrow Log_GRD 0\nkey Log_GRD Esc\nexpect visible Greeting_LBL\n"
                   "key - Ctrl+B\nexpect focused Scan_EDT\nkey - Esc\nexpect visible Greeting_LBL\n"
                   "key - Ctrl+Shift+B\nexpect focused Sample_EDT\nkey - Esc\nexpect visible Greeting_LBL\n"
                   "key - Ctrl+K\nexpect focused FunctionSearch_EDT\nkey - Esc\nexpect visible Greeting_LBL\n"
                   "key - Esc\nexpect visible Greeting_LBL\n"),
              "");
}

TEST_F(Shell, escapeFromUnsavedSettingsAsksFirst) {
    open(1);
    EXPECT_EQ(play("key - Ctrl+,\nexpect focused CompanyName_EDT\nkey - Esc\nexpect visible Greeting_LBL\n"
                   "key - Ctrl+,\nexpect focused CompanyName_EDT\ntype CompanyName_EDT x\nkey - Esc\nanswer cancel\n"
                   "expect message MsgUnsavedChanges\nexpect visible CompanyName_EDT\n"
                   "key - Esc\nanswer no\nexpect message MsgUnsavedChanges\nexpect visible Greeting_LBL\n"),
              "");
}

TEST_F(Shell, leavesThePrintKeyToTheListInFront) {
    open(1);
    EXPECT_EQ(play("key - Ctrl+L\n"
                   "row Log_GRD 0\n"
                   "key Log_GRD Ctrl+P\n"
                   "expect screen PrintPreview_FRM\n"
                   "key - Escape\n"
                   "expect screen MainShell_FRM\n"
                   "key - Ctrl+Shift+P\n"
                   "expect screen GoodPicker_FRM\n"
                   "key - Escape\n"),
              "");
}

TEST_F(Shell, placesAsManyTilesSideBySideAsThereIsRoomFor) {
    open(1);
    const auto top = [&](const char* tile) { return control(*shell, tile).y(); };
    shell->resize(1400, 800);
    QApplication::processEvents();
    EXPECT_EQ(top("Open_PriceEditor_TILE"), top("Open_CostLevel_List_TILE"));
    EXPECT_GT(top("Log_TILE"), top("Open_CostLevel_List_TILE")) << "another group begins a new row";
    shell->resize(900, 700);
    QApplication::processEvents();
    EXPECT_GT(top("Open_PriceEditor_TILE"), top("Open_CostLevel_List_TILE"));
    EXPECT_EQ(top("Open_DiscountLevel_List_TILE"), top("Open_CostLevel_List_TILE"));
    EXPECT_GE(control(*shell, "Log_TILE").height(), 70) << "a title and a line below it";
}

TEST_F(Shell, noTileStandsAloneInARowWhereThereIsRoomForMore) {
    open(1);
    // In two columns, as at 1000, an odd group leaves one.
    for (const int width : {1200, 1400, 1700}) {
        shell->resize(width, 800);
        QApplication::processEvents();
        std::map<int, int> tilesAt;
        std::map<int, int> left;  // edges of the rows
        for (const QPushButton* tile : shell->findChildren<QPushButton*>())
            if (tile->objectName().endsWith("_TILE")) {
                ++tilesAt[tile->y()];
                left[tile->y()] = std::min(left.try_emplace(tile->y(), tile->x()).first->second, tile->x());
            }
        for (const auto& [y, count] : tilesAt) {
            EXPECT_GT(count, 1) << "at " << width << ", " << y;
            EXPECT_EQ(left[y], left.begin()->second) << "a hole at " << width << ", " << y;
        }
    }
}

TEST_F(Shell, everyTileSaysWhatItIsFor) {
    open(1);
    std::set<QString> hints;
    for (const QPushButton* tile : shell->findChildren<QPushButton*>()) {
        if (tile->objectName().endsWith("_TILE")) {
            EXPECT_TRUE(hints.insert(tile->toolTip()).second) << tile->toolTip().toStdString();
        }
    }
    EXPECT_GE(hints.size(), 9U);
}

TEST_F(Shell, tellsACashierWhatHeMayNotOpen) {
    open(2);
    EXPECT_FALSE(locked("Open_CostLevel_List_BTN"));
    EXPECT_TRUE(locked("Open_DiscountLevel_List_BTN"));
    EXPECT_TRUE(locked("Settings_BTN"));
    EXPECT_TRUE(locked("Rights_BTN"));
    EXPECT_FALSE(locked("Open_CostLevel_List_TILE"));
    EXPECT_TRUE(locked("Open_DiscountLevel_List_TILE"));
    EXPECT_TRUE(locked("Settings_TILE"));
    // Changing prices is more than looking at goods, and is refused before a good is asked for.
    EXPECT_TRUE(locked("Open_PriceEditor_BTN"));
    EXPECT_TRUE(locked("Open_PriceEditor_TILE"));
    click(*shell, "Open_PriceEditor_TILE");
    EXPECT_THAT(takeMessages(), ElementsAre("HavePermission('کالاها', 'ویرایش')"));
    click(*shell, "Open_DiscountLevel_List_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("HavePermission('سطوح تخفیف', 'مشاهده')"));
    click(*shell, "Settings_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("HavePermission('تنظیمات', 'مشاهده')"));
    EXPECT_TRUE(control(*shell, "Home_PNL").isVisible());
    EXPECT_FALSE(control(*shell, "Settings_PNL").isVisible());
    std::vector<std::string> logged;
    for (const UserLogEntry& entry : host.userLog().latest(3, 2))
        logged.push_back(entry.description);
    EXPECT_THAT(logged, ElementsAre("دسترسی داده نشد: مشاهده «تنظیمات»", "دسترسی داده نشد: مشاهده «سطوح تخفیف»",
                                    "دسترسی داده نشد: ویرایش «کالاها»"));
}

TEST_F(Shell, itsEventsAreThoseOfNowWhenAScreenHasClosed) {
    open(1);
    EXPECT_EQ(play("click Open_PriceEditor_TILE\n"
                   "expect screen GoodPicker_FRM\n"
                   "type GoodSearch_EDT 57\n"
                   "key GoodSearch_EDT Return\n"
                   "expect screen PriceEditor_FRM\n"
                   "clear CostLevel_Sell_3_EDT\n"
                   "type CostLevel_Sell_3_EDT 12500\n"
                   "key - F3\n"
                   "expect screen GoodPicker_FRM\n"
                   "key - Escape\n"
                   "expect screen MainShell_FRM\n"
                   "expect cell Recent_GRD 0 4 قیمت‌های کالای «دارچین ۷۵ گرمی»\n"
                   "expect cell Recent_GRD 0 3 ۵۷\n"
                   "expect focused Open_PriceEditor_TILE\n"),
              "");
}

TEST_F(Shell, showsACashierNobodyElsesEvents) {
    const auto users = [this] {
        const auto& grid = control<QTableWidget>(*shell, "Recent_GRD");
        std::set<std::string> names;
        for (int row = 0; row < grid.rowCount(); ++row)
            names.insert(grid.item(row, 2)->text().toStdString());
        return names;
    };
    open(1);
    EXPECT_GT(users().size(), 1U);
    open(2);
    EXPECT_EQ(users(), std::set<std::string>{"علی کریمی"});
}

TEST_F(Shell, goesToItsPagesByKeyboard) {
    open(1);
    const std::vector<std::pair<Qt::Key, const char*>> pages{
        {Qt::Key_L, "Log_PNL"}, {Qt::Key_K, "Console_PNL"}, {Qt::Key_Comma, "Settings_PNL"}, {Qt::Key_0, "Home_PNL"}};
    for (const auto& [key, page] : pages) {
        QTest::keyClick(shell.get(), key, Qt::ControlModifier);
        EXPECT_TRUE(control(*shell, page).isVisible()) << page;
    }
    QTest::keyClick(shell.get(), Qt::Key_U, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(control(*shell, "Rights_PNL").isVisible());
}

TEST_F(Shell, movesThroughTheNavigationWithTheArrowKeys) {
    open(1);
    QWidget& first = control(*shell, "Home_BTN");
    first.setFocus();
    QTest::keyClick(&first, Qt::Key_Down);
    QWidget& second = control(*shell, "Open_CostLevel_List_BTN");
    EXPECT_TRUE(second.hasFocus());
    QTest::keyClick(&second, Qt::Key_Up);
    EXPECT_TRUE(first.hasFocus());
    QWidget& log = control(*shell, "Log_BTN");
    log.setFocus();
    QTest::keyClick(&log, Qt::Key_Return);
    EXPECT_TRUE(control(*shell, "Log_PNL").isVisible());
}

// The scroll area watches what it scrolls as well: a key that comes to that is none of a button's.
TEST_F(Shell, leavesKeysThatNoNavigationButtonGotAlone) {
    open(1);
    QWidget& first = control(*shell, "Home_BTN");
    first.setFocus();
    for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Left}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&control(*shell, "NavigationContent_PNL"), &press);
        EXPECT_TRUE(first.hasFocus()) << key;
    }
    EXPECT_TRUE(control(*shell, "Home_PNL").isVisible());
}

TEST_F(Shell, movesBetweenTilesInTheDirectionOfTheArrow) {
    open(1);
    shell->resize(1400, 800);
    QApplication::processEvents();
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key);
        return QApplication::focusWidget()->objectName().toStdString();
    };
    QWidget& first = control(*shell, "Open_CostLevel_List_TILE");
    const int top = first.y();
    first.setFocus();
    // From right to left, as the page is read.
    EXPECT_EQ(press(Qt::Key_Left), "Open_DiscountLevel_List_TILE");
    EXPECT_LT(QApplication::focusWidget()->x(), first.x());
    EXPECT_EQ(QApplication::focusWidget()->y(), top);
    EXPECT_EQ(press(Qt::Key_Down), "Layouts_TILE") << "the nearest one below";
    EXPECT_GT(QApplication::focusWidget()->y(), top);
    EXPECT_EQ(press(Qt::Key_Right), "Counter_TILE");
    EXPECT_EQ(press(Qt::Key_Up), "Open_CostLevel_List_TILE");
    EXPECT_EQ(press(Qt::Key_Right), "Open_CostLevel_List_TILE") << "there is nothing further to the right";
    EXPECT_EQ(press(Qt::Key_Up), "Open_CostLevel_List_TILE");
}

TEST_F(Shell, opensATileByEnter) {
    open(1);
    EXPECT_EQ(play("key Open_CostLevel_List_TILE Enter\n"
                   "expect screen TCostLevel_List_FRM\n"
                   "key - Escape\n"
                   "key Log_TILE Enter\n"
                   "expect visible Log_GRD\n"),
              "");
}

TEST_F(Shell, tabGoesThroughTheNavigationAndThenThePage) {
    open(1);
    control(*shell, "SignOut_BTN").setFocus();
    std::vector<std::string> names;
    for (int i = 0; i < 24; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        names.push_back(QApplication::focusWidget()->objectName().toStdString());
    }
    const auto isTile = [](const std::string& name) { return name.find("_TILE") != std::string::npos; };
    const auto firstTile = std::find_if(names.begin(), names.end(), isTile);
    ASSERT_NE(firstTile, names.end());
    EXPECT_THAT(std::vector(names.begin(), firstTile),
                ElementsAre("Home_BTN", "Open_CostLevel_List_BTN", "Open_DiscountLevel_List_BTN", "Open_CostReport_BTN",
                            "Open_PriceEditor_BTN", "Counter_BTN", "Layouts_BTN", "Log_BTN", "Console_BTN",
                            "Rights_BTN", "Settings_BTN"));
    const auto lastTile = std::find_if_not(firstTile, names.end(), isTile);
    EXPECT_THAT(std::vector(firstTile, lastTile),
                ElementsAre("Open_CostLevel_List_TILE", "Open_DiscountLevel_List_TILE", "Open_CostReport_TILE",
                            "Open_PriceEditor_TILE", "Counter_TILE", "Layouts_TILE", "Log_TILE", "Console_TILE",
                            "Rights_TILE", "Settings_TILE"));
}

TEST_F(Shell, tellsHowItWasLeft) {
    open(1);
    click(*shell, "SignOut_BTN");
    EXPECT_FALSE(shell->isVisible());
    open(1);
    shell->close();
    EXPECT_THAT(ends, ElementsAre(MainShell::End::SignOut, MainShell::End::Quit));
}

struct LeavingCase {
    const char* name;
    int answer;
    bool leaves;
    const char* company;  // what is stored afterwards
};

class Leaving : public Shell, public ::testing::WithParamInterface<LeavingCase> {};

TEST_P(Leaving, unsavedSettingsAreAskedFor) {
    open(1);
    click(*shell, "Settings_BTN");
    type(*shell, "CompanyName_EDT", "فروشگاه تازه");
    messages.answers = {GetParam().answer};
    click(*shell, "Home_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgUnsavedChanges()"));
    EXPECT_EQ(control(*shell, "Home_PNL").isVisible(), GetParam().leaves);
    host.settings().reload();
    EXPECT_EQ(host.SettingRecord().CompanyName, GetParam().company);
    if (GetParam().leaves) return;
    // What was typed is still there, and closing asks as well.
    EXPECT_EQ(control<QLineEdit>(*shell, "CompanyName_EDT").text(), "فروشگاه تازه");
    messages.answers = {mrCancel, mrNo};
    EXPECT_FALSE(shell->close());
    EXPECT_THAT(ends, IsEmpty());
    EXPECT_TRUE(shell->close());
    EXPECT_THAT(ends, ElementsAre(MainShell::End::Quit));
}

INSTANTIATE_TEST_SUITE_P(Answers, Leaving,
                         ::testing::Values(LeavingCase{"yesStores", mrYes, true, "فروشگاه تازه"},
                                           LeavingCase{"noDrops", mrNo, true, "بازرگانی مهرآفرین"},
                                           LeavingCase{"cancelStays", mrCancel, false, "بازرگانی مهرآفرین"}),
                         [](const auto& each) { return each.param.name; });

TEST_F(Shell, itsPageInFrontKeepsWhatIsTypedWhenItIsAskedForAgain) {
    open(1);
    click(*shell, "Settings_BTN");
    type(*shell, "CompanyName_EDT", "فروشگاه تازه");
    click(*shell, "Settings_BTN");
    QTest::keyClick(shell.get(), Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_THAT(takeMessages(), IsEmpty());
    EXPECT_EQ(control<QLineEdit>(*shell, "CompanyName_EDT").text(), "فروشگاه تازه");
    EXPECT_TRUE(control(*shell, "CompanyName_EDT").hasFocus()) << "the typing goes on";
    EXPECT_TRUE(control(*shell, "SaveSettings_BTN").isEnabled());
    messages.answers = {mrNo};
    click(*shell, "Layouts_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgUnsavedChanges()"));
    type(*shell, "Title_EDT", "الگوی دیگر");
    click(*shell, "Layouts_BTN");
    EXPECT_THAT(takeMessages(), IsEmpty());
    EXPECT_EQ(control<QLineEdit>(*shell, "Title_EDT").text(), "الگوی دیگر");
    messages.answers = {mrNo};
    click(*shell, "Home_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgUnsavedChanges()"));
}

TEST_F(Shell, itsNavigationShowsThePageInFront) {
    open(1);
    setThemeFontSize(16);
    shell->resize(1200, 600);
    QApplication::processEvents();
    const auto isInSight = [this](const char* name) {
        const QWidget& button = control(*shell, name);
        return button.visibleRegion().boundingRect() == button.rect();
    };
    EXPECT_FALSE(isInSight("Settings_BTN"));
    QTest::keyClick(shell.get(), Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isInSight("Settings_BTN"); }));
    QTest::keyClick(shell.get(), Qt::Key_0, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isInSight("Home_BTN"); }));
    setThemeFontSize(10);
}

TEST_F(Shell, showsAnErrorAndLivesOn) {
    open(1);
    session->run("DROP TABLE dbo.HostUserLog");
    click(*shell, "Log_BTN");
    const std::vector<MessageRequest> shownMessages = messages.shown;
    ASSERT_EQ(shownMessages.size(), 1U);
    EXPECT_EQ(shownMessages.front().operation, "DatabaseError");
    EXPECT_EQ(shownMessages.front().arguments.front(), host.catalogue().errorText(ErrorCategory::NotFound));
    click(*shell, "Settings_BTN");
    EXPECT_TRUE(control(*shell, "Settings_PNL").isVisible());
}

}  // namespace
}  // namespace basalt::host
