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

// Some 40 megabytes in 300,000 rows.
constexpr int kLongList = 300'000;

RowSet longList(int count) {
    RowSet rows = priceRows({});
    const std::string name(120, 'x');
    for (int code = 1; code <= count; ++code) {
        rows.column(0).appendInt(code);
        rows.column(1).appendText(name);
        rows.column(2).appendNull();
        rows.finishRow();
    }
    return rows;
}

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
    // Has so many rows that they are let go before they are read anew.
    std::unique_ptr<RecordingList> madeLong() {
        auto screen = made(fmBrowse);
        screen->onOpen = [this] { open(longList(kLongList)); };
        screen->onRefresh = [this] { host.ResetDataset(query); };
        return screen;
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
        messages.expect("DatabaseError");
        QTest::keyClick(input, Qt::Key_Return);
        EXPECT_EQ(searches, 2);
        EXPECT_EQ(handled(), Calls{}) << "nothing is taken of a list that could not be searched";
    }});
}

// The rows of before stay, once and as often as it fails, and the line below says so until the search was made up for.
TEST_F(DockBases, aSearchThatIsGivenUpIsToldAndMadeUpFor) {
    const DatabaseError cancelled(ErrorCategory::Other, "HY008", 0, "given up");
    const DatabaseError lost(ErrorCategory::Connection, "08S01", 10054, "connection lost");
    const char* const narrowed = "SELECT * FROM (select rows) AS T WHERE [Name] LIKE N'%x%'";
    auto screen = made(fmBrowse);
    run(*screen, {[&] {
        auto* input = control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT");
        auto* summary = control<QLabel>(*screen, "Summary_LBL");
        const auto expectBehind = [&] {
            QCoreApplication::processEvents();
            EXPECT_EQ(
                summary->text().toStdString(),
                "فهرست هنوز جستجوی پیشین را نشان می‌دهد؛ برای جستجوی نوشته‌شده ⁦Enter⁩ یا "
                "⁦Ctrl+R⁩ را بزنید   |   ۲ سطر");
            EXPECT_EQ(screen->grid->View()->model()->rowCount(), 2);
            EXPECT_EQ(query.SQL.Text(), "select rows");
            EXPECT_EQ(input->text().toStdString(), "x");
        };
        session.expectError(narrowed, cancelled);
        type(input, QStringLiteral("x"));
        expectBehind();
        session.expectError(narrowed, lost);
        messages.expect("DatabaseError");
        QTest::keyClick(input, Qt::Key_Return);
        expectBehind();
        session.expectError(narrowed, cancelled);
        QTest::keyClick(screen.get(), Qt::Key_R, Qt::ControlModifier);
        expectBehind();
        EXPECT_EQ(handled(), Calls{}) << "the former statement is not run again";
        session.expect(narrowed, priceRows({{3, "x", {}}}));
        QTest::keyClick(screen.get(), Qt::Key_R, Qt::ControlModifier);
        QCoreApplication::processEvents();
        EXPECT_EQ(summary->text().toStdString(), "۱ سطر");
        QTest::keyClick(screen.get(), Qt::Key_R, Qt::ControlModifier);
        EXPECT_EQ(handled(), Calls{"RefreshList"});
    }});
}

// Brings rows while a request runs, as engines do, before it answers or is given up.
class BringsRows final : public StatementObserver {
public:
    BringsRows(TADOConnection& connection, ScriptedSession& session) : connection_(connection), session_(session) {
        connection_.addObserver(*this);
    }
    ~BringsRows() { connection_.removeObserver(*this); }
    BringsRows(const BringsRows&) = delete;
    BringsRows& operator=(const BringsRows&) = delete;

    int count = 0;
    std::optional<DatabaseError> error;
    std::vector<std::string> sent;
    std::function<void()> onRows;  // before the request ends

private:
    void sending(const SentStatement& statement) override {
        sent.push_back(statement.text);
        RowSet rows = longList(count);
        if (onRows) onRows();
        if (error) {
            session_.expectError(statement.text, *error);
        } else {
            session_.expect(statement.text, std::move(rows));
        }
    }

    TADOConnection& connection_;
    ScriptedSession& session_;
};

// Its old rows go while the new ones come, so that it never takes twice its memory.
TEST_F(DockBases, aLongListThatIsGivenUpLateHasNoRowsAndSaysSo) {
    const std::string all = "select rows";
    const std::string narrowed = "SELECT * FROM (select rows) AS T WHERE [Name] LIKE N'%x%'";
    const char* const unread =
        "سطرها هنوز خوانده نشده‌اند؛ برای خواندن \u2066Ctrl+R\u2069 را بزنید";
    auto screen = madeLong();
    run(*screen, {[&] {
        auto* input = control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT");
        auto* summary = control<QLabel>(*screen, "Summary_LBL");
        auto* grid = static_cast<SmartGrid*>(screen->grid);
        QWidget* page = grid->View()->viewport();
        const auto painted = [&] {
            PaintedText text;
            page->render(&text);
            return text.text().toStdString();
        };
        const auto rowsShown = [&] {
            QCoreApplication::processEvents();
            return grid->View()->model()->rowCount();
        };
        BringsRows requests(host.DM().ADOConnection1, session);
        requests.error = DatabaseError(ErrorCategory::Other, "HY008", 0, "given up");

        // Early enough: what it was.
        requests.count = kLongList / 5;
        type(input, QStringLiteral("x"));
        EXPECT_EQ(rowsShown(), kLongList);
        EXPECT_EQ(query.SQL.Text(), all);

        // Too late.
        requests.count = kLongList / 2;
        int rowsMeanwhile = -1;
        requests.onRows = [&] { rowsMeanwhile = grid->View()->model()->rowCount(); };
        QTest::keyClick(input, Qt::Key_Return);
        EXPECT_EQ(rowsMeanwhile, 0);
        EXPECT_EQ(rowsShown(), 0);
        EXPECT_EQ(summary->text().toStdString(), unread);
        EXPECT_EQ(painted(), "سطرها هنوز خوانده نشده‌اند");
        EXPECT_EQ(input->text().toStdString(), "x");
        EXPECT_TRUE(input->hasFocus());
        EXPECT_FALSE(button(*screen, "Edit_BTN").isEnabled());
        EXPECT_EQ(button(*screen, "Edit_BTN").accessibleDescription().toStdString(),
                  "سطرهای فهرست هنوز خوانده نشده‌اند.");
        EXPECT_EQ(requests.sent, (Calls{narrowed, narrowed}));

        // What needs the rows reads them first, and does nothing when they do not come.
        grid->print();
        EXPECT_EQ(requests.sent.back(), narrowed);
        EXPECT_TRUE(output.previews.empty());
        requests.error.reset();
        requests.sent.clear();
        requests.count = kLongList / 5;
        QTest::keyClick(input, Qt::Key_Return);
        EXPECT_EQ(requests.sent, Calls{narrowed});
        EXPECT_EQ(rowsShown(), kLongList / 5);
        EXPECT_TRUE(isUsable(&button(*screen, "Edit_BTN")));
        EXPECT_EQ(summary->text().toStdString(), "۶۰٬۰۰۰ سطر");

        // Read anew and given up, twice; then the same statement brings them.
        requests.error = DatabaseError(ErrorCategory::Other, "HY008", 0, "given up");
        requests.sent.clear();
        QTest::keyClick(screen.get(), Qt::Key_R, Qt::ControlModifier);
        EXPECT_EQ(rowsShown(), kLongList / 5) << "the list is short now";
        requests.count = 2 * kLongList;
        QTest::keyClick(screen.get(), Qt::Key_R, Qt::ControlModifier);
        EXPECT_EQ(rowsShown(), 0);
        EXPECT_EQ(summary->text().toStdString(), unread);
        QTest::keyClick(screen.get(), Qt::Key_R, Qt::ControlModifier);
        EXPECT_EQ(rowsShown(), 0);
        requests.error.reset();
        requests.count = 7;
        // Enter needs them, too.
        QTest::keyClick(grid->View(), Qt::Key_Return);
        EXPECT_EQ(rowsShown(), 7);
        EXPECT_EQ(summary->text().toStdString(), "۷ سطر");
        EXPECT_EQ(requests.sent, Calls(4, narrowed));
    }});
}

// No row need be chosen for it, so that it must not keep quiet as over an empty list.
TEST_F(DockBases, aPrintOfAnUnreadListReadsItFirst) {
    const std::string all = "select rows";
    auto screen = madeLong();
    screen->base().AddButton("PrintList_BTN", "پیش نمایش ليست F9", TListButton::Print);
    run(*screen, {[&] {
        auto* input = control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT");
        QAbstractItemView* list = screen->grid->View();
        const auto isUnread = [&] { return static_cast<SmartGrid*>(screen->grid)->model().isUnread(); };
        {
            BringsRows requests(host.DM().ADOConnection1, session);
            requests.error = DatabaseError(ErrorCategory::Other, "HY008", 0, "given up");
            requests.count = kLongList / 2;
            QTest::keyClick(input, Qt::Key_R, Qt::ControlModifier);
            ASSERT_TRUE(isUnread());
            // Wherever the focus is, and given up again.
            for (QWidget* focused : std::initializer_list<QWidget*>{input, list}) {
                requests.sent.clear();
                focused->setFocus();
                QTest::keyClick(focused, Qt::Key_F9);
                EXPECT_EQ(requests.sent, Calls{all});
                EXPECT_TRUE(isUnread());
                EXPECT_TRUE(isUsable(&button(*screen, "PrintList_BTN")));
                EXPECT_TRUE(output.previews.empty());
            }
        }
        session.expect(all, priceRows({{1, "آب", {}}}));
        expectCompanyName();
        QTest::keyClick(list, Qt::Key_F9);
        EXPECT_EQ(output.previews.size(), 1U);
        EXPECT_EQ(list->model()->rowCount(), 1);
    }});
}

TEST_F(DockBases, anUnreadListThatTurnsOutToBeEmptyIsNotPrinted) {
    auto screen = made(fmBrowse);
    screen->base().AddButton("PrintList_BTN", "پیش نمایش ليست F9", TListButton::Print);
    screen->onRefresh = [this] { host.ResetDataset(query); };
    run(*screen, {[&] {
        query.Close();
        session.expect("select rows", priceRows({}));
        QTest::keyClick(screen->grid->View(), Qt::Key_F9);
        EXPECT_TRUE(output.previews.empty());
        EXPECT_FALSE(isUsable(&button(*screen, "PrintList_BTN")));
        EXPECT_EQ(button(*screen, "PrintList_BTN").accessibleDescription().toStdString(), "فهرست خالی است.");
    }});
}

// Keys that are pressed then wait until the request is over, and what they were to do may be done by then.
TEST_F(DockBases, whileItIsReadAListAdvisesNothing) {
    auto screen = madeLong();
    run(*screen, {[&] {
        auto* input = control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT");
        auto* summary = control<QLabel>(*screen, "Summary_LBL");
        BringsRows requests(host.DM().ADOConnection1, session);
        requests.error = DatabaseError(ErrorCategory::Other, "HY008", 0, "given up");
        const auto whatItSays = [&] {
            QCoreApplication::processEvents();
            return summary->text().toStdString();
        };
        std::string meanwhile;
        WhenBusy busy([&](QWidget&) { meanwhile = summary->text().toStdString(); });
        requests.onRows = [&] {
            screens.busyNotice().setPatience(0);
            for (int turn = 0; turn < 20 && meanwhile.empty(); ++turn) {
                QTest::qSleep(5);
                EXPECT_TRUE(screens.busyNotice().writes(turn, 20));
            }
            neverBusy(screens);
        };

        type(input, QStringLiteral("x"));
        EXPECT_EQ(meanwhile, "۳۰۰٬۰۰۰ سطر");
        const std::string behind = "فهرست هنوز جستجوی پیشین را نشان می‌دهد";
        const std::string rows = "   |   ۳۰۰٬۰۰۰ سطر";
        EXPECT_EQ(
            whatItSays(),
            behind +
                "؛ برای جستجوی نوشته‌شده \u2066Enter\u2069 یا \u2066Ctrl+R\u2069 را بزنید" +
                rows);
        meanwhile.clear();
        QTest::keyClick(input, Qt::Key_Return);
        EXPECT_EQ(meanwhile, behind + rows);

        requests.count = kLongList / 2;
        const std::string unread = "سطرها هنوز خوانده نشده‌اند";
        const std::string advice = "؛ برای خواندن \u2066Ctrl+R\u2069 را بزنید";
        for (int time = 0; time < 2; ++time) {
            meanwhile.clear();
            QTest::keyClick(input, Qt::Key_R, Qt::ControlModifier);
            EXPECT_EQ(meanwhile, unread) << time;
            EXPECT_EQ(whatItSays(), unread + advice) << time;
        }
    }});
}

TEST_F(DockBases, aListThatWasNeverReadIsOnlyEmpty) {
    auto screen = made(fmBrowse);
    screen->onOpen = {};
    run(*screen, {[&] {
        EXPECT_EQ(control<QLabel>(*screen, "Summary_LBL")->text().toStdString(), "۰ سطر");
        QTest::keyClick(control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT"), Qt::Key_Return);
    }});
    EXPECT_EQ(handled(), Calls{}) << "nothing is read that the screen has not read";
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
                             "GridCopy_ACT", "GridColumns_ACT", "GridSort_ACT", "GridPrint_ACT", "GridPdf_ACT",
                             "GridXlsx_ACT", "GridCsv_ACT"}));
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

// A narrowed list must not pass for the whole on paper. What is said of it is what its rows are, not what was typed
// since.
TEST_F(DockBases, aPrintTellsWhatWasSearchedFor) {
    auto screen = made(fmBrowse);
    std::vector<QString> painted;
    output.onPreview = [&](PrintDocument& document) {
        document.layOut(output.layouts.back());
        PaintedText page;
        QPainter painter(&page);
        document.paintPage(painter, 0);
        painter.end();
        painted.push_back(page.text());
    };
    run(*screen, {[&] {
        auto* input = control<QLineEdit>(*screen, "TGeneral_Search_Frame1_EDT");
        const auto print = [&] { static_cast<SmartGrid*>(screen->grid)->print(); };
        expectCompanyName();
        print();
        session.expect("SELECT * FROM (select rows) AS T WHERE [Name] LIKE N'%ج%'", priceRows({{1, "x", {}}}));
        type(input, QStringLiteral("ج"));
        print();
        session.expectError("SELECT * FROM (select rows) AS T WHERE [Name] LIKE N'%جم%'",
                            DatabaseError(ErrorCategory::Busy, "HYT00", 1222, "locked"));
        messages.expect("DatabaseError");
        type(input, QStringLiteral("م"));
        static_cast<SmartGrid*>(screen->grid)
            ->PrintPreview(
                {.Title = "قیمت‌ها", .Columns = {{.FieldName = "Name", .Title = "نام", .Visible = true}}});
        session.expect("select rows", priceRows({{1, "x", {}}}));
        input->clear();
        print();
    }});
    ASSERT_EQ(painted.size(), 4U);
    EXPECT_FALSE(painted[0].contains("جستجو")) << painted[0].toStdString();
    EXPECT_TRUE(painted[1].contains("جستجو: عنوان «ج»")) << painted[1].toStdString();
    EXPECT_TRUE(painted[2].contains("جستجو: عنوان «ج»")) << painted[2].toStdString();
    EXPECT_FALSE(painted[3].contains("جستجو")) << painted[3].toStdString();
}

// As far as the screen has it; the tests' screen is one of 1920x1080.
TEST_F(DockBases, aListOpensWithTheRoomThatItsColumnsWant) {
    const auto widthWith = [this](int columns) {
        auto screen = made(fmBrowse);
        for (int i = 0; i < columns; ++i)
            screen->grid->AddColumn({.FieldName = "Price", .Title = QStringLiteral("قیمت"), .Width = 150});
        int width = 0;
        run(*screen, {[&] { width = screen->width(); }});
        return width;
    };
    EXPECT_EQ(widthWith(0), 760);
    EXPECT_GT(widthWith(6), 900);
    EXPECT_LT(widthWith(6), 1300);
    EXPECT_EQ(widthWith(30), 1728);
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
