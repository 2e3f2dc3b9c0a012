// A long list on the embedded engine, searched in while its windows are painted: its old rows go amid the request.
#include <QTabBar>

#include "engines/embedded/embedded_session.h"
#include "host/screens/search_manager.h"
#include "host/screens/smart_grid.h"
#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

const char* const kAll =
    "SELECT A.X AS Code, A.T AS Name, 1 + A.X % 2 AS Status FROM N AS A CROSS JOIN (SELECT TOP 500 X FROM N) AS B";
constexpr int kRows = 1000 * 500;  // some 60 megabytes

class LongLists : public ::testing::Test {
protected:
    LongLists() {
        host.setMessages(messages);
        neverBusy(screens);
        session->run("CREATE TABLE N (X int, T nvarchar(200))");
        for (int x = 0; x < 10; ++x)
            session->run("INSERT INTO N VALUES (" + std::to_string(x) + ", REPLICATE(N'x', 100))");
        session->run("INSERT INTO N SELECT A.X + 10 * B.X, A.T FROM N AS A CROSS JOIN N AS B WHERE B.X > 0");
        session->run(
            "INSERT INTO N SELECT A.X + 100 * B.X, A.T FROM N AS A CROSS JOIN N AS B WHERE B.X BETWEEN 1 AND 9");
        grid->AddColumn({.FieldName = "Code", .Title = QStringLiteral("کد")});
        grid->AddColumn({.FieldName = "Name", .Title = QStringLiteral("عنوان")});
        grid->SetDataSource(&source);
        tabs->SetFieldName("Status");
        tabs->AddTab("خرید", "1");
        tabs->AddTab("فروش", "2");
        tabs->init();
        manager.AddFrame(tabs);
        manager.SetDataSource(&source);
        manager.SetSQLScript(kAll);
        grid->resize(600, 300);
        window.resize(700, 500);
        window.show();
        query.SQL = kAll;
        query.Open();
    }
    ~LongLists() override { session->onProgress({}); }

    // Paints while requests run, and gives them up as soon as the list has lost its rows, when told so.
    void whileTheyRun(bool giveUp) {
        session->onProgress([this, giveUp] {
            if (grid->View()->model()->rowCount() > 0) return true;
            ++timesWithoutRows;
            grid->View()->viewport()->repaint();
            return !giveUp;
        });
    }
    [[nodiscard]] int rowsShown() const { return grid->View()->model()->rowCount(); }

    std::unique_ptr<embedded::EmbeddedSession> session =
        embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
    QueuedMessages messages;
    ReferenceHost host{*session, testOptions()};
    HostScreenServices screens{host};
    AttachedHost attached{host};
    TADOQuery query{host.DM().ADOConnection1, "List_QUR"};
    TDataSource source{&query};
    QWidget window;
    SmartGrid* grid = new SmartGrid(screens.context(), QStringLiteral("List_GRD"), &window);
    TTab_Search_Frame* tabs = screens.createTabSearch("Tabs", &window);
    SearchManager manager;
    int timesWithoutRows = 0;
};

TEST_F(LongLists, aTabThatIsGivenUpLateLeavesAListThatCanBeReadAgain) {
    ASSERT_EQ(rowsShown(), kRows);
    auto* bar = control<QTabBar>(window, "Tabs_TBC");
    whileTheyRun(true);
    bar->setCurrentIndex(1);
    EXPECT_EQ(timesWithoutRows, 1);
    EXPECT_EQ(rowsShown(), 0);
    EXPECT_TRUE(grid->model().isUnread());
    EXPECT_EQ(bar->currentIndex(), 0) << "the tab of the rows that were there";
    EXPECT_EQ(query.SQL.Text(), kAll);

    // The list is read again as the host does it, and then the tab is taken for good.
    whileTheyRun(false);
    host.ResetDataset(query);
    EXPECT_EQ(rowsShown(), kRows);
    EXPECT_FALSE(grid->model().isUnread());
    bar->setCurrentIndex(1);
    EXPECT_GT(timesWithoutRows, 1);
    EXPECT_EQ(rowsShown(), kRows / 2);
    EXPECT_FALSE(manager.isBehind());
}

TEST_F(LongLists, theCurrentRecordIsFoundAgainAndTheSortStays) {
    grid->sortBy(0, true);
    ASSERT_TRUE(query.Locate("Code", std::int64_t{700}));
    whileTheyRun(false);
    host.ResetDataset(query);
    EXPECT_GT(timesWithoutRows, 0);
    EXPECT_EQ(rowsShown(), kRows);
    EXPECT_EQ(query.FieldByName("Code").AsInteger(), 700);
    EXPECT_EQ(grid->model().value(0, 0), Value(std::int64_t{999}));
    EXPECT_EQ(grid->CurrentRow(), query.RecNo() - 1);
}

}  // namespace
}  // namespace basalt::host
