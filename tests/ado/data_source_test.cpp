// Who is told what.
#include "ado/data_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ado/query.h"
#include "tests/ado/price_levels.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Listener final : public DataSourceListener {
public:
    std::vector<std::string> told;
    std::function<void()> onCursorMoved;

    void activeChanged() override { told.emplace_back("active"); }
    void dataChanged() override { told.emplace_back("data"); }
    void rowChanged(std::int64_t row) override { told.push_back("row " + std::to_string(row)); }
    void stateChanged() override { told.emplace_back("state"); }
    void cursorMoved() override {
        told.emplace_back("cursor");
        if (onCursorMoved) onCursorMoved();
    }
    void sourceGone() override { told.emplace_back("gone"); }

    std::vector<std::string> take() { return std::exchange(told, {}); }
};

class DataSource : public ::testing::Test {
protected:
    DataSource() {
        session.setTable(levelTable());
        query.SQL = "select 1";
        source.SetDataSet(&query);
        source.addListener(listener);
    }
    void open() {
        session.expect("select 1", levelRows());
        query.Open();
        listener.take();
    }

    ScriptedSession session;
    TADOConnection connection{session};
    TADOQuery query{connection, "List_QUR"};
    Listener listener;
    Listener second;
    Listener third;
    Listener late;
    TDataSource source;
};

TEST_F(DataSource, tellsEachChange) {
    session.expect("select 1", levelRows());
    query.Open();
    EXPECT_THAT(listener.take(), ElementsAre("active", "cursor"));
    query.Next();
    EXPECT_THAT(listener.take(), ElementsAre("cursor"));
    query.Edit();
    EXPECT_THAT(listener.take(), ElementsAre("state"));
    query.FieldByName("Name") = "x";
    EXPECT_THAT(listener.take(), ElementsAre("row 1"));
    query.Cancel();
    EXPECT_THAT(listener.take(), ElementsAre("state", "row 1"));
    query.Append();
    EXPECT_THAT(listener.take(), ElementsAre("state", "cursor"));
    query.FieldByName("Code") = 9;
    EXPECT_THAT(listener.take(), ElementsAre("row -1"));
    session.expectChange("INSERT INTO [CostLevel] ([Code]) VALUES (?)", {integer(9)}, 1);
    query.Post();
    EXPECT_THAT(listener.take(), ElementsAre("state", "data", "cursor"));
    query.Filter("Code = 7");
    query.Filtered(true);
    EXPECT_THAT(listener.take(), ElementsAre("data", "cursor"));
    session.expect("select 1", levelRows());
    query.Requery();
    EXPECT_THAT(listener.take(), ElementsAre("data", "cursor"));
    query.Close();
    EXPECT_THAT(listener.take(), ElementsAre("active"));
}

TEST_F(DataSource, anotherDataSetIsToldAndListenedTo) {
    open();
    TADOQuery other(connection, "Other_QUR");
    source.SetDataSet(&other);
    EXPECT_THAT(listener.take(), ElementsAre("active"));
    query.Next();
    EXPECT_THAT(listener.take(), IsEmpty());
    source.SetDataSet(nullptr);
    EXPECT_EQ(source.DataSet(), nullptr);
}

TEST_F(DataSource, losesADataSetThatGoesAway) {
    {
        TADOQuery shortLived(connection, "Short_QUR");
        source.SetDataSet(&shortLived);
        listener.take();
    }
    EXPECT_EQ(source.DataSet(), nullptr);
    EXPECT_THAT(listener.take(), ElementsAre("active"));
}

TEST_F(DataSource, goesAwayBeforeItsDataSet) {
    open();
    auto shortLived = std::make_unique<TDataSource>(&query);
    Listener other;
    shortLived->addListener(other);
    shortLived.reset();
    EXPECT_THAT(other.take(), ElementsAre("gone"));
    query.Next();
    EXPECT_EQ(query.RecNo(), 2);
}

TEST_F(DataSource, listenersComeAndGoWhileTheyAreTold) {
    open();
    source.addListener(second);
    source.addListener(third);
    source.addListener(third);
    listener.onCursorMoved = [&] {
        source.removeListener(listener);
        source.removeListener(second);
        source.addListener(late);
    };
    query.Next();
    EXPECT_THAT(listener.take(), ElementsAre("cursor"));
    EXPECT_THAT(second.take(), IsEmpty());
    EXPECT_THAT(third.take(), ElementsAre("cursor"));
    EXPECT_THAT(late.take(), IsEmpty());
    query.Next();
    EXPECT_THAT(listener.take(), IsEmpty());
    EXPECT_THAT(third.take(), ElementsAre("cursor"));
    EXPECT_THAT(late.take(), ElementsAre("cursor"));
}

TEST_F(DataSource, aListenerThatThrowsLeavesTheListUsable) {
    open();
    source.addListener(second);
    listener.onCursorMoved = [&] {
        source.removeListener(second);
        throw UsageError("listener");
    };
    EXPECT_THROW(query.Next(), UsageError);
    listener.onCursorMoved = nullptr;
    listener.take();
    query.Next();
    EXPECT_THAT(listener.take(), ElementsAre("cursor"));
    EXPECT_THAT(second.take(), IsEmpty());
}

}  // namespace
}  // namespace basalt
