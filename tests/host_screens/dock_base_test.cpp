// The host's part of list screens: the order of the hooks, keys, buttons and errors.
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>
#include <set>

#include "host/screens/smart_grid.h"
#include "tests/host_screens/painted_text.h"
#include "tests/host_screens/recording_list.h"
#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

using Calls = std::vector<std::string>;

class DockBases : public ScreenTest {
protected:
    std::unique_ptr<RecordingList> made(TFormMode mode, const std::string& text = {}) {
        auto screen = CreateScreen<RecordingList>(calls, source, mode, text);
        screen->onOpen = [this] { open(priceRows({{1, "آب", "10"}, {2, "بادام", "20"}})); };
        return screen;
    }
    // Shows the screen modally and runs the steps one after the other inside of its loop, then closes it.
    int run(RecordingList& screen, const std::vector<std::function<void()>>& steps) {
        whenShown([&screen, &steps] {
            ASSERT_TRUE(QTest::qWaitForWindowActive(&screen));
            for (const auto& step : steps)
                step();
            if (screen.isVisible()) screen.reject();
        });
        return screen.ShowModal();
    }
    // What the screen was told after its creation and showing.
    [[nodiscard]] Calls handled() const {
        const auto shown = std::find(calls.begin(), calls.end(), "FormShow");
        return shown == calls.end() ? Calls{} : Calls(shown + 1, calls.end());
    }
    static TSmartButton_VRO& button(QWidget& screen, const char* name) {
        return *control<TSmartButton_VRO>(screen, name);
    }

    Calls calls;
};

TEST_F(DockBases, driveAListForBrowsing) {
    auto screen = made(fmBrowse, "متن");
    EXPECT_EQ(calls, (Calls{"CreateControls", "FormCreate", "SetComponents"}));
    run(*screen, {});
    EXPECT_EQ(calls, (Calls{"CreateControls", "FormCreate", "SetComponents", "Open", "InitSearch متن", "FormShow"}));
}

TEST_F(DockBases, driveAListForSelecting) {
    auto screen = made(fmSelect);
    run(*screen, {});
    EXPECT_EQ(calls, (Calls{"CreateControls", "FormCreate", "SetComponents", "Open", "InitSearch ", "InitSelect",
                            "FormShow"}));
}

TEST_F(DockBases, escapeLeavesWithoutAResult) {
    auto screen = made(fmSelect);
    EXPECT_EQ(run(*screen, {[&] { QTest::keyClick(screen.get(), Qt::Key_Escape); }}), mrCancel);
    EXPECT_EQ(handled(), Calls{});
}

TEST_F(DockBases, enterSelectsInSelectMode) {
    auto screen = made(fmSelect);
    EXPECT_EQ(run(*screen, {[&] { QTest::keyClick(screen->grid->View(), Qt::Key_Return); }}), mrOk);
    EXPECT_EQ(handled(), Calls{"Select"});
}

TEST_F(DockBases, enterInTheSearchSelectsToo) {
    auto screen = made(fmSelect);
    EXPECT_EQ(run(*screen,
                  {[&] { QTest::keyClick(control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT"), Qt::Key_Enter); }}),
              mrOk);
    EXPECT_EQ(handled(), Calls{"Select"});
}

TEST_F(DockBases, enterEditsWhenBrowsingAndLeadsFromTheSearchToTheList) {
    auto screen = made(fmBrowse);
    run(*screen, {[&] {
        auto* input = control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT");
        EXPECT_TRUE(input->hasFocus());
        QTest::keyClick(input, Qt::Key_Return);
        EXPECT_TRUE(screen->grid->View()->hasFocus());
        QTest::keyClick(screen->grid->View(), Qt::Key_Return);
    }});
    EXPECT_EQ(handled(), Calls{"Edit"});
}

TEST_F(DockBases, theKeysOfTheCaptionsWork) {
    auto screen = made(fmBrowse);
    run(*screen, {[&] {
        QTest::keyClick(control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT"), Qt::Key_F4);
        QTest::keyClick(screen->grid->View(), Qt::Key_F5);
        QTest::keyClick(screen.get(), Qt::Key_F7);
    }});
    EXPECT_EQ(handled(), (Calls{"New", "Edit", "Delete"}));
}

TEST_F(DockBases, aHiddenButtonHasNoKey) {
    auto screen = made(fmBrowse);
    run(*screen, {[&] {
        button(*screen, "New_BTN").hide();
        QTest::keyClick(screen.get(), Qt::Key_F4);
    }});
    EXPECT_EQ(handled(), Calls{});
}

TEST_F(DockBases, buttonsThatActOnARowNeedOne) {
    auto screen = made(fmSelect);
    run(*screen, {[&] {
        for (const char* name : {"New_BTN", "Edit_BTN", "Delete_BTN", "Select_BTN", "Exit_BTN"})
            EXPECT_TRUE(isUsable(&button(*screen, name))) << name;
        open(priceRows({}));
        for (const char* name : {"Edit_BTN", "Delete_BTN", "Select_BTN"})
            EXPECT_FALSE(button(*screen, name).isEnabled()) << name;
        for (const char* name : {"New_BTN", "Exit_BTN"})
            EXPECT_TRUE(button(*screen, name).isEnabled()) << name;
        QTest::keyClick(screen->grid->View(), Qt::Key_Return);
        QTest::keyClick(screen.get(), Qt::Key_F5);
    }});
    EXPECT_EQ(handled(), Calls{});
}

TEST_F(DockBases, thereIsNothingToSelectWhenBrowsing) {
    auto screen = made(fmBrowse);
    run(*screen, {[&] { EXPECT_FALSE(isUsable(&button(*screen, "Select_BTN"))); }});
}

TEST_F(DockBases, aSearchEnablesTheButtonsAgain) {
    auto screen = made(fmBrowse);
    run(*screen, {[&] {
        session.expect("SELECT * FROM (select rows) AS T WHERE [Name] LIKE N'%x%'", priceRows({}));
        type(control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT"), QStringLiteral("x"));
        EXPECT_FALSE(button(*screen, "Edit_BTN").isEnabled());
        session.expect("select rows", priceRows({{1, "آب", {}}}));
        QTest::keyClick(control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT"), Qt::Key_Backspace);
        EXPECT_TRUE(button(*screen, "Edit_BTN").isEnabled());
    }});
}

// After a slow search further letters wait for a pause in the typing; Enter does not.
TEST_F(DockBases, aSearchThatWaitsIsRunBeforeItsRowsAreTaken) {
    auto screen = made(fmSelect);
    int searches = 0;
    run(*screen, {[&] {
        auto* input = control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT");
        screen->search->OnChange = [&] {
            ++searches;
            if (searches == 1) QTest::qSleep(200);
            screen->manager->ExecuteFilter_DataSet();
        };
        session.expect("SELECT * FROM (select rows) AS T WHERE [Name] LIKE N'%x%'", priceRows({{1, "x", {}}}));
        type(input, QStringLiteral("x"));
        type(input, QStringLiteral("y"));
        EXPECT_EQ(searches, 1);
        session.expect("SELECT * FROM (select rows) AS T WHERE [Name] LIKE N'%xy%'", priceRows({}));
        QTest::keyClick(input, Qt::Key_Return);
        EXPECT_EQ(searches, 2);
        EXPECT_TRUE(screen->isVisible()) << "there is no row to select";
        EXPECT_EQ(handled(), Calls{});

        searches = 0;
        session.expect("SELECT * FROM (select rows) AS T WHERE [Name] LIKE N'%xyz%'", priceRows({{2, "xyz", {}}}));
        type(input, QStringLiteral("z"));
        type(input, QStringLiteral("!"));
        session.expectError("SELECT * FROM (select rows) AS T WHERE [Name] LIKE N'%xyz!%'",
                            DatabaseError(ErrorCategory::Busy, "HYT00", 1222, "locked"));
        session.expect("SELECT * FROM (select rows) AS T WHERE [Name] LIKE N'%xyz%'", priceRows({{2, "xyz", {}}}));
        messages.expect("DatabaseError");
        QTest::keyClick(input, Qt::Key_Return);
        EXPECT_EQ(searches, 2);
        EXPECT_EQ(handled(), Calls{}) << "nothing is taken of a list that could not be searched";
    }});
}

TEST_F(DockBases, aRowThatIsPointedAtIsTakenThoughASearchWaits) {
    auto screen = made(fmSelect);
    int searches = 0;
    run(*screen, {[&] {
        auto* input = control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT");
        screen->search->OnChange = [&] {
            if (++searches == 1) QTest::qSleep(200);
        };
        type(input, QStringLiteral("x"));
        type(input, QStringLiteral("y"));
        screen->grid->View()->setFocus();
        button(*screen, "Select_BTN").Click();
    }});
    EXPECT_EQ(searches, 1);
    EXPECT_EQ(handled(), Calls{"Select"});
}

TEST_F(DockBases, anErrorOfAHandlerIsAMessageAndTheScreenLivesOn) {
    auto screen = made(fmBrowse);
    screen->onHandler = [] { throw DatabaseError(ErrorCategory::Connection, "08S01", 10054, "connection lost"); };
    run(*screen, {[&] {
        messages.expect("DatabaseError");
        QTest::keyClick(screen.get(), Qt::Key_F5);
        EXPECT_TRUE(screen->isVisible());
        EXPECT_EQ(messages.shown.at(0).form, screen.get());
        screen->onHandler = {};
        QTest::keyClick(screen.get(), Qt::Key_F5);
    }});
    EXPECT_EQ(handled(), (Calls{"Edit", "Edit"}));
}

TEST_F(DockBases, anErrorBeforeTheScreenIsShownPasses) {
    auto screen = made(fmBrowse);
    screen->onOpen = [] { throw DatabaseError(ErrorCategory::NotFound, "42S02", 208, "no table"); };
    EXPECT_THROW(static_cast<void>(screen->ShowModal()), DatabaseError);
    EXPECT_FALSE(screen->isVisible());
    EXPECT_EQ(calls.back(), "Open");
}

TEST_F(DockBases, anErrorThatNobodyCanShowEndsTheScreenAndPasses) {
    class Unable final : public MessageService {
        int show(const MessageRequest&) override { throw UsageError("nobody there"); }
    } unable;
    host.setMessages(unable);
    auto screen = made(fmBrowse);
    screen->onHandler = [] { throw UsageError("broken"); };
    EXPECT_THROW(run(*screen, {[&] { QTest::keyClick(screen.get(), Qt::Key_F5); }}), UsageError);
    EXPECT_FALSE(screen->isVisible());
}

TEST_F(DockBases, theContextMenuOffersTheButtonsAndTheGridsActions) {
    auto screen = made(fmBrowse);
    Calls titles;
    run(*screen, {[&] {
        QTimer::singleShot(0, screen.get(), [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            for (const QAction* action : menu->actions())
                titles.push_back(action->objectName().toStdString());
            menu->close();
        });
        emit screen->grid->View()->customContextMenuRequested(QPoint(5, 5));
    }});
    EXPECT_EQ(titles, (Calls{"New_BTN_ACT", "Edit_BTN_ACT", "Delete_BTN_ACT", "Exit_BTN_ACT", "", "GridRefresh_ACT",
                             "GridCopy_ACT", "GridColumns_ACT", "GridPrint_ACT", "GridPdf_ACT", "GridXlsx_ACT",
                             "GridCsv_ACT"}));
}

TEST_F(DockBases, printingUsesTheScreensTitle) {
    auto screen = made(fmBrowse);
    run(*screen, {[&] {
        expectCompanyName();
        static_cast<SmartGrid*>(screen->grid)->print();
    }});
    ASSERT_EQ(output.previews.size(), 1U);
    EXPECT_EQ(output.previews[0].toStdString(), "سطوح قیمت");
    EXPECT_EQ(control<QLabel>(*screen, "Title_LBL")->text().toStdString(), "سطوح قیمت");
}

TEST_F(DockBases, theListIsReadAnewByItsKeyAndFromItsMenus) {
    auto screen = made(fmBrowse);
    run(*screen, {[&] {
        QTest::keyClick(control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT"), Qt::Key_R, Qt::ControlModifier);
        EXPECT_EQ(handled(), Calls{"RefreshList"});
        QTest::keyClick(screen->grid->View(), Qt::Key_R, Qt::ControlModifier);
        EXPECT_EQ(handled(), (Calls{"RefreshList", "RefreshList"}));
        const QList<QAction*> actions = control<QToolButton>(*screen, "ListTools_BTN")->menu()->actions();
        ASSERT_FALSE(actions.isEmpty());
        EXPECT_EQ(actions.first()->text().toStdString(), "به‌روزآوری");
        EXPECT_EQ(actions.first()->shortcut().toString().toStdString(), "Ctrl+R");
        actions.first()->trigger();
        EXPECT_EQ(handled().size(), 3U);
    }});
}

// Both texts stand above a printed list; that of the current row is asked for by its code.
TEST_F(DockBases, theTextsOfTheScreenStandAboveAPrint) {
    auto screen = made(fmBrowse);
    screen->masterDescription = {"گروه مواد غذایی", "1"};
    screen->detailDescription = {"ردیف جاری"};
    PaintedText painted;
    output.onPreview = [&](PrintDocument& document) {
        document.layOut(output.layouts.back());
        QPainter painter(&painted);
        document.paintPage(painter, 0);
    };
    run(*screen, {[&] {
        dynamic_cast<SmartGrid&>(*screen->grid).model().dataSet()->Next();
        expectCompanyName();
        static_cast<SmartGrid*>(screen->grid)->print();
    }});
    EXPECT_EQ(handled(), (Calls{"master description", "detail description 2"}));
    EXPECT_TRUE(painted.text().contains("گروه مواد غذایی")) << painted.text().toStdString();
    EXPECT_TRUE(painted.text().contains("ردیف جاری")) << painted.text().toStdString();
    EXPECT_EQ(output.previews, std::vector<QString>{"سطوح قیمت"});
}

TEST_F(DockBases, everythingIsReachableByKeyboard) {
    auto screen = made(fmBrowse);
    run(*screen, {[&] {
        std::set<QString> reached;
        for (int i = 0; i < 30; ++i) {
            for (QWidget* widget = QApplication::focusWidget(); widget; widget = widget->parentWidget())
                if (!widget->objectName().isEmpty()) reached.insert(widget->objectName());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        for (const char* name : {"TGeneral_Search_Frame1_CMB", "TGeneral_Search_Frame1_EDT", "List_GRD", "New_BTN",
                                 "Edit_BTN", "Delete_BTN", "Exit_BTN", "ListTools_BTN"})
            EXPECT_TRUE(reached.contains(QString::fromLatin1(name))) << name;
    }});
}

}  // namespace
}  // namespace basalt::host
