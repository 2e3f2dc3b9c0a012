// Search frames and the search manager, typed into like a user does.
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QTabBar>
#include <QToolTip>

#include "host/screens/search_edit.h"
#include "host/screens/search_manager.h"
#include "host/screens/theme.h"
#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

class SearchFrames : public ScreenTest {
protected:
    TGeneral_Search_Frame* general() {
        auto* frame = screens.createGeneralSearch("General", &window);
        frame->AddItem({"Code", "کد", TSearchDataType::Digits});
        frame->AddItem({"Name", "عنوان", TSearchDataType::Text});
        frame->SetItemIndex(1);
        frame->init();
        return frame;
    }
    // The lower bound of the window's range, shown and with the focus.
    QLineEdit* focusedFrom() {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        auto* from = control<QLineEdit>(window, "Range_From_EDT");
        from->setFocus();
        return from;
    }

    QWidget window;
};

TEST_F(SearchFrames, typingNarrowsAtEachLetter) {
    auto* frame = general();
    std::vector<std::string> filters;
    frame->OnChange = [&] { filters.push_back(frame->Filter()); };
    type(control<QLineEdit>(window, "General_EDT"), QStringLiteral("ab"));
    EXPECT_EQ(filters, (std::vector<std::string>{"[Name] LIKE N'%a%'", "[Name] LIKE N'%ab%'"}));
}

TEST_F(SearchFrames, keysGivenToTheFrameReachItsInput) {
    auto* frame = general();
    type(frame, QStringLiteral("x"));
    EXPECT_EQ(frame->Filter(), "[Name] LIKE N'%x%'");
    // A key that the input does not want is not handed to it a second time.
    QTest::keyClick(frame, Qt::Key_F5);
    EXPECT_EQ(frame->Filter(), "[Name] LIKE N'%x%'");
}

TEST_F(SearchFrames, showDigitsAsTheListDoes) {
    auto* frame = general();
    auto* input = control<QLineEdit>(window, "General_EDT");
    type(input, QStringLiteral("سطر 57"));
    EXPECT_EQ(input->text().toStdString(), "سطر ۵۷");
    EXPECT_EQ(frame->Filter(), "[Name] LIKE N'%سطر[ \u200C][5۵٥][7۷٧]%'");
    input->clear();
    // A digit belongs to the word that it stands in.
    type(input, QStringLiteral("4"));
    EXPECT_EQ(input->text().toStdString(), "۴");
    type(input, QStringLiteral("A"));
    EXPECT_EQ(input->text().toStdString(), "4A");
}

TEST_F(SearchFrames, aDigitsItemTakesDigitsOnly) {
    auto* frame = general();
    auto* input = control<QLineEdit>(window, "General_EDT");
    type(input, QStringLiteral("name 5"));
    int changes = 0;
    frame->OnChange = [&] { ++changes; };
    control<QComboBox>(window, "General_CMB")->setCurrentIndex(0);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(input->text().toStdString(), "");
    type(input, QStringLiteral("1a۲-"));
    EXPECT_EQ(input->text().toStdString(), "۱۲");
    EXPECT_EQ(frame->Filter(), "CAST([Code] AS NVARCHAR(40)) LIKE N'12%'");
}

TEST_F(SearchFrames, whatANumberDoesNotTakeIsToldAndAPasteIsTakenWholeOrNotAtAll) {
    auto* frame = screens.createCostRangeSearch("Range", &window);
    frame->AddItem({"Price", "قیمت", TSearchDataType::Amount});
    frame->init();
    auto* from = focusedFrom();
    QApplication::clipboard()->setText(QStringLiteral("1e5"));
    QTest::keyClick(from, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(from->text().toStdString(), "");
    EXPECT_EQ(QToolTip::text().toStdString(), "این‌جا تنها عدد پذیرفته می‌شود.");
    QToolTip::hideText();
    type(from, QStringLiteral("1e"));
    EXPECT_EQ(QToolTip::text().toStdString(), "این‌جا تنها عدد پذیرفته می‌شود.");
    QApplication::clipboard()->clear();
}

TEST_F(SearchFrames, theSearchTellsOnlyOfWhatNarrowsOtherwise) {
    auto* frame = general();
    int told = 0;
    frame->OnChange = [&] { ++told; };
    auto* items = control<QComboBox>(window, "General_CMB");
    auto* input = control<QLineEdit>(window, "General_EDT");
    items->setCurrentIndex(0);
    items->setCurrentIndex(1);
    EXPECT_EQ(told, 0) << "another item, and nothing to look for";
    type(input, QStringLiteral("  "));
    EXPECT_EQ(told, 0) << "blanks";
    type(input, QStringLiteral("5"));
    EXPECT_EQ(told, 1);
    type(input, QStringLiteral(" "));
    EXPECT_EQ(told, 1) << "a blank behind it";
    frame->Clear();
    EXPECT_EQ(told, 1);
    type(input, QStringLiteral("5"));
    EXPECT_EQ(told, 2) << "the same, after it was cleared";
    items->setCurrentIndex(0);
    EXPECT_EQ(told, 3);
}

TEST_F(SearchFrames, aRangeComesBackWithItsItem) {
    auto* frame = screens.createCostRangeSearch("Range", &window);
    EXPECT_EQ(frame->Range().Item, -1);
    frame->SetRange(frame->Range());
    frame->AddItem({"F1", "همکار", TSearchDataType::Amount});
    frame->AddItem({"F2", "عمده", TSearchDataType::Amount});
    frame->init();
    control<QComboBox>(window, "Range_CMB")->setCurrentIndex(1);
    type(control<QLineEdit>(window, "Range_From_EDT"), QStringLiteral("5"));
    type(control<QLineEdit>(window, "Range_To_EDT"), QStringLiteral("7,"));
    const TSearchRange range = frame->Range();
    int told = 0;
    frame->OnChange = [&] { ++told; };
    frame->DeleteItem(1);
    frame->AddItem({"F2", "عمده", TSearchDataType::Amount});
    frame->SetRange(range);
    EXPECT_EQ(frame->Filter(), "[F2] >= 5");
    EXPECT_EQ(control<QLineEdit>(window, "Range_To_EDT")->text().toStdString(), "۷,");
    EXPECT_EQ(told, 0);
    EXPECT_THROW(frame->SetRange({.Item = 2, .From = {}, .To = {}}), UsageError);
    EXPECT_THROW(frame->SetRange({.Item = -1, .From = {}, .To = {}}), UsageError);
}

TEST_F(SearchFrames, aLongTitleLeavesTheBoundsTheirRoom) {
    auto* frame = screens.createCostRangeSearch("Range", &window);
    frame->AddItem({"F1", std::string(50, 'W'), TSearchDataType::Amount});
    frame->AddItem({"F2", "عمده", TSearchDataType::Amount});
    frame->init();
    frame->resize(520, 40);
    window.resize(600, 60);
    window.show();
    const QFontMetrics metrics = frame->fontMetrics();
    for (const char* bound : {"Range_From_EDT", "Range_To_EDT"})
        EXPECT_GT(control<QLineEdit>(window, bound)->width(), metrics.horizontalAdvance(QStringLiteral("99,999,999")));
}

TEST_F(SearchFrames, settingUpTellsNothing) {
    int changes = 0;
    auto* frame = screens.createGeneralSearch("General", &window);
    frame->OnChange = [&] { ++changes; };
    frame->AddItem({"Code", "کد", TSearchDataType::Digits});
    frame->AddItem({"Name", "عنوان", TSearchDataType::Text});
    frame->SetItemIndex(1);
    frame->init();
    frame->Clear();
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(frame->ItemIndex(), 1);
    EXPECT_EQ(frame->Filter(), "");
    EXPECT_THROW(frame->SetItemIndex(2), UsageError);
}

TEST_F(SearchFrames, aRangeBoundsTheChosenItem) {
    auto* frame = screens.createCostRangeSearch("Range", &window);
    frame->AddItem({"F1", "همکار", TSearchDataType::Amount});
    frame->AddItem({"ConsumerPrice", "مصرف‌کننده", TSearchDataType::Amount});
    frame->init();
    type(control<QLineEdit>(window, "Range_From_EDT"), QStringLiteral("۱۰۰x0"));
    type(control<QLineEdit>(window, "Range_To_EDT"), QStringLiteral("2,500.5"));
    EXPECT_EQ(frame->Filter(), "[F1] >= 1000 AND [F1] <= 2500.5");
    control<QComboBox>(window, "Range_CMB")->setCurrentIndex(1);
    EXPECT_EQ(frame->Filter(), "[ConsumerPrice] >= 1000 AND [ConsumerPrice] <= 2500.5");
    frame->DeleteItem(1);
    EXPECT_EQ(frame->ItemCount(), 1);
    EXPECT_EQ(frame->Item(0).FieldName, "F1");
    EXPECT_EQ(frame->Filter(), "");
    EXPECT_THROW(frame->DeleteItem(1), UsageError);
}

TEST_F(SearchFrames, aRangeTellsOnlyOfWhatNarrowsOtherwise) {
    auto* frame = screens.createCostRangeSearch("Range", &window);
    frame->AddItem({"F1", "همکار", TSearchDataType::Amount});
    frame->AddItem({"F2", "عمده", TSearchDataType::Amount});
    frame->init();
    int told = 0;
    frame->OnChange = [&] { ++told; };
    auto* items = control<QComboBox>(window, "Range_CMB");
    items->setCurrentIndex(1);
    EXPECT_EQ(told, 0) << "an item without a range";
    type(control<QLineEdit>(window, "Range_From_EDT"), QStringLiteral("5"));
    EXPECT_EQ(told, 1);
    type(control<QLineEdit>(window, "Range_From_EDT"), QStringLiteral("."));
    EXPECT_EQ(told, 1) << "the same number";
    items->setCurrentIndex(0);
    EXPECT_EQ(told, 2);
    frame->Clear();
    EXPECT_EQ(told, 2);
    type(control<QLineEdit>(window, "Range_From_EDT"), QStringLiteral("5"));
    EXPECT_EQ(told, 3) << "the same range, after it was cleared";
}

TEST_F(SearchFrames, aGroupedBoundIsHeededWhenItIsWhole) {
    auto* frame = screens.createCostRangeSearch("Range", &window);
    frame->AddItem({"F1", "همکار", TSearchDataType::Amount});
    frame->AddItem({"F2", "عمده", TSearchDataType::Amount});
    frame->init();
    std::vector<std::string> told;
    frame->OnChange = [&] { told.push_back(frame->Filter()); };
    auto* from = control<SearchEdit>(window, "Range_From_EDT");
    const auto typed = [&](const QString& text) {
        type(from, text);
        return told.empty() ? std::string("nothing") : told.back();
    };
    EXPECT_EQ(typed(QStringLiteral("-")), "nothing");
    EXPECT_TRUE(from->isUnfinished());
    from->clear();
    EXPECT_FALSE(from->isUnfinished());
    EXPECT_TRUE(from->toolTip().isEmpty());
    EXPECT_EQ(typed(QStringLiteral("1")), "[F1] >= 1");
    EXPECT_FALSE(from->isUnfinished());
    for (const char* more : {",", "0", "0"}) {
        EXPECT_EQ(typed(QLatin1String(more)), "[F1] >= 1");
        EXPECT_TRUE(from->isUnfinished());
        EXPECT_TRUE(from->property("unfinished").toBool());
        EXPECT_EQ(from->toolTip().toStdString(),
                  "عدد هنوز کامل نیست؛ فهرست تا آن هنگام تغییر نمی‌کند.");
        EXPECT_EQ(from->accessibleDescription(), from->toolTip());
    }
    EXPECT_EQ(told.size(), 1U);
    EXPECT_EQ(typed(QStringLiteral("0")), "[F1] >= 1000");
    EXPECT_FALSE(from->isUnfinished());
    EXPECT_TRUE(from->toolTip().isEmpty());
    // The other way as well, and whatever else asks for the condition meanwhile.
    QTest::keyClick(from, Qt::Key_Backspace);
    EXPECT_TRUE(from->isUnfinished());
    EXPECT_EQ(frame->Filter(), "[F1] >= 1000");
    control<QComboBox>(window, "Range_CMB")->setCurrentIndex(1);
    EXPECT_EQ(told.back(), "[F2] >= 1000");
    type(control<QLineEdit>(window, "Range_To_EDT"), QStringLiteral("5"));
    EXPECT_EQ(told.back(), "[F2] >= 1000 AND [F2] <= 5");
    from->clear();
    EXPECT_EQ(told.back(), "[F2] <= 5");
    EXPECT_FALSE(from->isUnfinished());
    EXPECT_EQ(told, (std::vector<std::string>{"[F1] >= 1", "[F1] >= 1000", "[F2] >= 1000", "[F2] >= 1000 AND [F2] <= 5",
                                              "[F2] <= 5"}));
}

TEST_F(SearchFrames, anUnfinishedBoundIsForgottenWithItsRange) {
    auto* frame = screens.createCostRangeSearch("Range", &window);
    frame->AddItem({"F1", "همکار", TSearchDataType::Amount});
    frame->init();
    auto* from = control<SearchEdit>(window, "Range_From_EDT");
    type(from, QStringLiteral("1,0"));
    frame->Clear();
    EXPECT_EQ(frame->Filter(), "");
    EXPECT_FALSE(from->isUnfinished());
    type(from, QStringLiteral("1,0"));
    frame->SetRange({.Item = 0, .From = "20", .To = ""});
    EXPECT_EQ(frame->Filter(), "[F1] >= 20");
    EXPECT_FALSE(from->isUnfinished());
    type(from, QStringLiteral(",0"));
    frame->DeleteItem(0);
    EXPECT_EQ(frame->Filter(), "");
    EXPECT_FALSE(from->isUnfinished());
}

TEST_F(SearchFrames, aBoundThatIsNoNumberIsToldOfOnceItIsLeft) {
    auto* frame = screens.createCostRangeSearch("Range", &window);
    frame->AddItem({"F1", "همکار", TSearchDataType::Amount});
    frame->init();
    window.show();
    auto* from = control<QLineEdit>(window, "Range_From_EDT");
    type(from, QStringLiteral("1,5"));
    EXPECT_EQ(frame->Filter(), "[F1] >= 1");
    EXPECT_TRUE(messages.shown.empty()) << "it may become 1,500";
    messages.expect("MsgNotANumber");
    QTest::keyClick(from, Qt::Key_Return);
    QTest::keyClick(from, Qt::Key_Return);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(line(messages.shown[0]), "MsgNotANumber(همکار از; ۱,۵)");
    type(from, QStringLiteral("00"));
    EXPECT_EQ(frame->Filter(), "[F1] >= 1500");
    QTest::keyClick(from, Qt::Key_Return);
}

TEST_F(SearchFrames, aBoundThatIsNoNumberIsNothingToAScreenThatCloses) {
    auto* frame = screens.createCostRangeSearch("Range", &window);
    frame->AddItem({"F1", "همکار", TSearchDataType::Amount});
    frame->init();
    auto* from = focusedFrom();
    type(from, QStringLiteral("1,5"));
    ASSERT_TRUE(from->hasFocus());
    window.hide();
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(SearchFrames, aRangeWithoutItemsNarrowsNothing) {
    auto* frame = screens.createDigitRangeSearch("Range", &window);
    frame->init();
    EXPECT_EQ(frame->Filter(), "");
    EXPECT_FALSE(control<QLineEdit>(window, "Range_From_EDT")->isEnabled());
}

TEST_F(SearchFrames, aTabWhoseSearchFailsIsLeftAgain) {
    auto* frame = screens.createTabSearch("Tab", &window);
    frame->AddTab("خرید", "1");
    frame->AddTab("فروش", "2");
    auto* tabs = control<QTabBar>(window, "Tab_TBC");
    bool fails = true;
    bool adapted = false;
    frame->OnChange = [&] {
        if (fails) throw DatabaseError(ErrorCategory::Busy, "HYT00", 1222, "locked");
    };
    frame->OnTabChange = [&] {
        frame->Search_TBCChange();
        adapted = true;
    };
    messages.expect("DatabaseError");
    tabs->setCurrentIndex(1);
    EXPECT_EQ(frame->TabIndex(), 0);
    EXPECT_FALSE(adapted);
    fails = false;
    tabs->setCurrentIndex(1);
    EXPECT_EQ(frame->TabIndex(), 1);
    EXPECT_TRUE(adapted);
}

TEST_F(SearchFrames, aTabStandsForAValue) {
    auto* frame = screens.createTabSearch("Tab", &window);
    frame->SetFieldName("Status");
    frame->AddTab("&خرید  ", "1");
    frame->AddTab("&فروش  ", "2");
    frame->init();
    EXPECT_EQ(frame->Filter(), "[Status] = 1");
    std::vector<std::string> calls;
    frame->OnChange = [&] { calls.push_back(frame->Filter()); };
    frame->SetTabIndex(1);
    EXPECT_EQ(calls, std::vector<std::string>{"[Status] = 2"});
    // A screen that listens to the tabs decides itself when the frame reacts.
    frame->OnTabChange = [&] { calls.push_back("screen"); };
    control<QTabBar>(window, "Tab_TBC")->setCurrentIndex(0);
    EXPECT_EQ(calls, (std::vector<std::string>{"[Status] = 2", "screen"}));
    frame->Search_TBCChange();
    EXPECT_EQ(calls.back(), "[Status] = 1");
}

TEST_F(SearchFrames, tabsAreWholeInANarrowRow) {
    applyTheme(*qApp);
    setThemeFontSize(16);
    auto* frame = screens.createTabSearch("Tab", &window);
    frame->AddTab("خرید", "1");
    frame->AddTab("فروش", "2");
    auto* tabs = control<QTabBar>(window, "Tab_TBC");
    window.show();
    for (const int tab : {1, 0}) {
        tabs->setCurrentIndex(tab);
        frame->resize(frame->minimumSizeHint().width(), 50);
        QCoreApplication::processEvents();
        for (int i = 0; i < 2; ++i) {
            const QRect place = tabs->tabRect(i);
            EXPECT_TRUE(tabs->rect().contains(place))
                << i << " with " << tab << " in front: " << place.left() << " to " << place.right();
        }
    }
    setThemeFontSize(10);
}

TEST_F(SearchFrames, theManagerRunsTheNarrowedStatement) {
    auto* frame = general();
    open(priceRows({{1, "عمده", {}}, {2, "همکار", {}}}));
    auto manager = screens.createSearchManager();
    manager->SetDataSource(&source);
    manager->SetSQLScript("select Code,Name from CostLevel");
    manager->AddFrame(frame);
    int searches = 0;
    manager->AfterSearch = [&] { ++searches; };

    session.expect("SELECT * FROM (select Code,Name from CostLevel) AS T WHERE [Name] LIKE N'%a%'",
                   priceRows({{2, "همکار", {}}}));
    type(control<QLineEdit>(window, "General_EDT"), QStringLiteral("a"));
    EXPECT_EQ(query.RecordCount(), 1);
    EXPECT_EQ(searches, 1);

    session.expect("select Code,Name from CostLevel", priceRows({{1, "عمده", {}}, {2, "همکار", {}}}));
    QTest::keyClick(control<QLineEdit>(window, "General_EDT"), Qt::Key_Backspace);
    EXPECT_EQ(query.RecordCount(), 2);
    EXPECT_EQ(query.SQL.Text(), "select Code,Name from CostLevel");
    EXPECT_EQ(searches, 2);
}

TEST_F(SearchFrames, aRangeOfAFieldThatTheListLacksFindsNothing) {
    auto* frame = screens.createCostRangeSearch("Range", &window);
    frame->AddItem({"Price", "قیمت", TSearchDataType::Amount});
    frame->AddItem({"F11", "سطح یازدهم", TSearchDataType::Amount});
    frame->init();
    open(priceRows({{1, "عمده", {}}}));
    auto manager = screens.createSearchManager();
    manager->SetDataSource(&source);
    manager->SetSQLScript("select * from T1");
    manager->AddFrame(frame);
    session.expect("SELECT * FROM (select * from T1) AS T WHERE [Price] >= 5", priceRows({}));
    type(control<QLineEdit>(window, "Range_From_EDT"), QStringLiteral("5"));
    session.expect("SELECT * FROM (select * from T1) AS T WHERE 1 = 0", priceRows({}));
    control<QComboBox>(window, "Range_CMB")->setCurrentIndex(1);
    EXPECT_EQ(query.RecordCount(), 0);
    session.expect("select * from T1", priceRows({{1, "عمده", {}}}));
    QTest::keyClick(control<QLineEdit>(window, "Range_From_EDT"), Qt::Key_Backspace);
    EXPECT_EQ(query.RecordCount(), 1);
}

TEST_F(SearchFrames, severalFramesNarrowTogether) {
    auto* frame = general();
    auto* tab = screens.createTabSearch("Tab", &window);
    tab->SetFieldName("Status");
    tab->AddTab("خرید", "1");
    tab->init();
    open(priceRows({{1, "عمده", {}}}));
    auto manager = screens.createSearchManager();
    manager->SetDataSource(&source);
    manager->SetSQLScript("select * from T1");
    manager->AddFrame(frame);
    manager->AddFrame(tab);
    session.expect("SELECT * FROM (select * from T1) AS T WHERE ([Name] LIKE N'%b%') AND ([Status] = 1)",
                   priceRows({}));
    type(control<QLineEdit>(window, "General_EDT"), QStringLiteral("b"));
    EXPECT_EQ(query.RecordCount(), 0);
}

TEST_F(SearchFrames, theManagerSaysInWordsWhatItNarrowedTo) {
    auto* names = general();
    auto* codes = screens.createDigitRangeSearch("Codes", &window);
    codes->AddItem({"Code", "کد", TSearchDataType::Digits});
    auto* prices = screens.createCostRangeSearch("Prices", &window);
    prices->AddItem({"Price", "فی ", TSearchDataType::Amount});
    SearchManager manager;
    manager.SetDataSource(&source);
    for (TSearchFrame* frame :
         {static_cast<TSearchFrame*>(names), static_cast<TSearchFrame*>(codes), static_cast<TSearchFrame*>(prices)})
        manager.AddFrame(frame);
    open(priceRows({{1, "آب", "10"}}));
    manager.SetSQLScript("select rows");
    EXPECT_EQ(manager.narrowing().toStdString(), "");
    names->SetItemIndex(0);
    session.expect("SELECT * FROM (select rows) AS T WHERE CAST([Code] AS NVARCHAR(40)) LIKE N'12%'", priceRows({}));
    control<QLineEdit>(window, "General_EDT")->setText(QStringLiteral("12"));
    EXPECT_EQ(manager.narrowing().toStdString(), "جستجو: کد «۱۲»");
    prices->SetRange({.Item = 0, .From = "-1000", .To = "12345678.50"});
    codes->SetRange({.Item = 0, .From = "", .To = "1000"});
    session.expect(
        "SELECT * FROM (select rows) AS T WHERE (CAST([Code] AS NVARCHAR(40)) LIKE N'12%') AND ([Code] <= 1000) AND "
        "([Price] >= -1000 AND [Price] <= 12345678.5)",
        priceRows({}));
    manager.ExecuteFilter_DataSet();
    EXPECT_EQ(manager.narrowing().toStdString(),
              "جستجو: کد «۱۲»، کد تا ۱۰۰۰، فی از \u2066-۱٬۰۰۰\u2069 تا ۱۲٬۳۴۵٬۶۷۸٫۵");
    manager.SetSQLScript("select rows");
    EXPECT_EQ(manager.narrowing().toStdString(), "");
}

TEST_F(SearchFrames, anAmountOfARangeIsGroupedWhileItIsNotTyped) {
    auto* frame = screens.createCostRangeSearch("Range", &window);
    frame->AddItem({"Price", "فی", TSearchDataType::Amount});
    frame->init();
    int searches = 0;
    frame->OnChange = [&] { ++searches; };
    auto* from = focusedFrom();
    auto* to = control<QLineEdit>(window, "Range_To_EDT");
    type(from, QStringLiteral("12000"));
    EXPECT_EQ(from->text().toStdString(), "۱۲۰۰۰");
    to->setFocus();
    EXPECT_EQ(from->text().toStdString(), "۱۲٬۰۰۰");
    EXPECT_EQ(searches, 5);
    from->setFocus();
    EXPECT_EQ(from->text().toStdString(), "۱۲۰۰۰");
    from->end(false);
    type(from, QStringLiteral("0"));
    EXPECT_EQ(frame->Filter(), "[Price] >= 120000");
    EXPECT_EQ(searches, 6);
    to->setFocus();
    EXPECT_EQ(from->text().toStdString(), "۱۲۰٬۰۰۰");
}

TEST_F(SearchFrames, aCodeOfARangeIsNotGrouped) {
    auto* frame = screens.createDigitRangeSearch("Range", &window);
    frame->AddItem({"Code", "کد", TSearchDataType::Digits});
    frame->init();
    auto* from = focusedFrom();
    type(from, QStringLiteral("12000"));
    control<QLineEdit>(window, "Range_To_EDT")->setFocus();
    EXPECT_EQ(from->text().toStdString(), "۱۲۰۰۰");
}

TEST_F(SearchFrames, afterAFailureTheListIsWhatItWas) {
    auto* frame = general();
    open(priceRows({{1, "عمده", {}}}));
    auto manager = screens.createSearchManager();
    manager->SetDataSource(&source);
    manager->SetSQLScript("select * from T1");
    manager->AddFrame(frame);
    session.expectError("SELECT * FROM (select * from T1) AS T WHERE [Name] LIKE N'%b%'",
                        DatabaseError(ErrorCategory::Busy, "HYT00", 1222, "Lock request time out period exceeded."));
    messages.expect("DatabaseError");
    type(control<QLineEdit>(window, "General_EDT"), QStringLiteral("b"));
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].arguments.back(), "Lock request time out period exceeded.");
    EXPECT_EQ(query.SQL.Text(), "select rows");
    EXPECT_EQ(query.RecordCount(), 1);
}

TEST_F(SearchFrames, aRangeWhoseSearchFailsIsMadeUpFor) {
    const DatabaseError cancelled(ErrorCategory::Other, "HY008", 0, "given up");
    auto* codes = screens.createDigitRangeSearch("Codes", &window);
    codes->AddItem({"Code", "کد", TSearchDataType::Digits});
    codes->init();
    auto* prices = screens.createCostRangeSearch("Prices", &window);
    prices->AddItem({"Price", "قیمت", TSearchDataType::Amount});
    prices->init();
    open(priceRows({{1, "عمده", {}}}));
    SearchManager manager;
    manager.SetDataSource(&source);
    manager.SetSQLScript("select * from T1");
    manager.AddFrame(codes);
    manager.AddFrame(prices);
    session.expectError("SELECT * FROM (select * from T1) AS T WHERE [Code] >= 7", cancelled);
    type(control<QLineEdit>(window, "Codes_From_EDT"), QStringLiteral("7"));
    EXPECT_TRUE(manager.isBehind());
    session.expectError("SELECT * FROM (select * from T1) AS T WHERE ([Code] >= 7) AND ([Price] <= 5)", cancelled);
    type(control<QLineEdit>(window, "Prices_To_EDT"), QStringLiteral("5"));
    EXPECT_TRUE(manager.isBehind());
    EXPECT_EQ(query.RecordCount(), 1);
    EXPECT_EQ(query.SQL.Text(), "select rows");
    // Back to the one before, which has failed as well, and on to one that finds its rows.
    session.expectError("SELECT * FROM (select * from T1) AS T WHERE [Code] >= 7",
                        DatabaseError(ErrorCategory::Busy, "HYT00", 0, "too long"));
    messages.expect("DatabaseError");
    QTest::keyClick(control<QLineEdit>(window, "Prices_To_EDT"), Qt::Key_Backspace);
    EXPECT_TRUE(manager.isBehind());
    session.expect("SELECT * FROM (select * from T1) AS T WHERE [Code] >= 7", priceRows({}));
    manager.ExecuteFilter_DataSet();
    EXPECT_FALSE(manager.isBehind());
    EXPECT_EQ(query.RecordCount(), 0);
}

TEST_F(SearchFrames, aManagerWithoutQueryOrStatementSaysSo) {
    auto manager = screens.createSearchManager();
    EXPECT_THROW(manager->ExecuteFilter_DataSet(), UsageError);
    manager->SetDataSource(&source);
    EXPECT_THROW(manager->ExecuteFilter_DataSet(), UsageError);
}

}  // namespace
}  // namespace basalt::host
