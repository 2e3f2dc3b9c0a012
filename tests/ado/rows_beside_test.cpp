// Reading the rows of an open data set anew: what becomes of those that it shows meanwhile.
#include "ado/rows_beside.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ado/query.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

const char* const kSelect = "select Name from GoodInf";
const char* const kNarrowed = "select Name from GoodInf where Name like N'%x%'";
constexpr int kMegabyte = 1 << 20;

constexpr int kRows = 8192;  // of a megabyte

RowSet megabytes(int count) {
    RowSet rows({{.name = "Name", .type = FieldType::Text}});
    const std::string text(kMegabyte / kRows - sizeof(std::uint32_t), 'x');
    for (int i = 0; i < count * kRows; ++i) {
        rows.column(0).appendText(text);
        rows.finishRow();
    }
    return rows;
}

TEST(RoomBeside, isAQuarterOfALongListAndTheRestOfTheRoomForAShortOne) {
    EXPECT_EQ(roomBeside(0), 32U * kMegabyte);
    EXPECT_EQ(roomBeside(8U * kMegabyte), 24U * kMegabyte);
    EXPECT_EQ(roomBeside(28U * kMegabyte), 7U * kMegabyte);
    EXPECT_EQ(roomBeside(400U * kMegabyte), 100U * kMegabyte);
}

// Engines fill rows while the request runs; here they are filled when it is sent.
class RowsBesideOthers : public ::testing::Test, private StatementObserver, private DataSourceListener {
protected:
    RowsBesideOthers() {
        connection.addObserver(*this);
        query.addListener(*this);
    }
    ~RowsBesideOthers() override {
        query.removeListener(*this);
        connection.removeObserver(*this);
    }

    void open(int size) {
        request = [this, size] { session.expect(kSelect, megabytes(size)); };
        query.SQL = kSelect;
        query.Open();
        request = {};
        told.clear();
    }
    // The next request brings so much before it is given up.
    void giveUpAfter(int size) {
        request = [this, size] {
            const RowSet rows = megabytes(size);
            wasActive = query.Active();
            session.expectError(query.SQL.Text() == kSelect && !narrowing ? kSelect : kNarrowed,
                                DatabaseError(ErrorCategory::Other, "HY008", 0, "given up"));
        };
    }

    ScriptedSession session;
    TADOConnection connection{session};
    TADOQuery query{connection, "List_QUR"};
    std::function<void()> request;
    std::vector<std::string> told;
    bool wasActive = false;  // when the rows of the request had come
    bool narrowing = false;

private:
    void sending(const SentStatement&) override {
        if (request) request();
    }
    void activeChanged() override { told.emplace_back(query.Active() ? "opened" : "closed"); }
    void dataChanged() override { told.emplace_back("changed"); }
};

TEST_F(RowsBesideOthers, aShortListKeepsItsRowsWhateverComes) {
    open(4);
    giveUpAfter(20);
    EXPECT_THROW(query.Requery(), DatabaseError);
    EXPECT_TRUE(wasActive);
    EXPECT_EQ(query.RecordCount(), 4 * kRows);
    request = [this] { session.expect(kSelect, megabytes(20)); };
    query.Requery();
    EXPECT_EQ(query.RecordCount(), 20 * kRows);
    EXPECT_EQ(told, std::vector<std::string>{"changed"});
}

TEST_F(RowsBesideOthers, aLongListThatIsGivenUpEarlyIsWhatItWas) {
    open(40);
    giveUpAfter(9);
    EXPECT_THROW(query.Requery(), DatabaseError);
    EXPECT_TRUE(wasActive);
    EXPECT_EQ(query.RecordCount(), 40 * kRows);
    EXPECT_TRUE(told.empty());
}

TEST_F(RowsBesideOthers, aLongListGoesWhenAQuarterOfTheNewRowsIsThere) {
    open(40);
    giveUpAfter(12);
    EXPECT_THROW(query.Requery(), DatabaseError);
    EXPECT_FALSE(wasActive);
    EXPECT_FALSE(query.Active());
    EXPECT_EQ(query.State(), dsInactive);
    EXPECT_LT(query.rowSet().memory(), 1000U);
    EXPECT_EQ(query.SQL.Text(), kSelect);
    EXPECT_EQ(told, std::vector<std::string>{"closed"});
    request = [this] { session.expect(kSelect, megabytes(1)); };
    query.Requery();
    EXPECT_EQ(query.RecordCount(), kRows);
    EXPECT_EQ(told, (std::vector<std::string>{"closed", "opened"}));
}

TEST_F(RowsBesideOthers, aLongListIsReadAnewWhole) {
    open(40);
    query.Last();
    request = [this] {
        session.expect(kSelect, megabytes(44));
        wasActive = query.Active();
    };
    int scrolls = 0;
    query.AfterScroll = [&](TDataSet& rows) {
        ++scrolls;
        EXPECT_EQ(rows.RecordCount(), 44 * kRows);
    };
    query.Requery();
    EXPECT_FALSE(wasActive);
    EXPECT_EQ(query.RecNo(), 1);
    EXPECT_EQ(scrolls, 1);
    EXPECT_EQ(query.textAt(44 * kRows - 1, 0).size(), 124U);
    EXPECT_EQ(told, (std::vector<std::string>{"closed", "opened"}));
}

TEST_F(RowsBesideOthers, aSearchInALongListDoesTheSame) {
    open(40);
    narrowing = true;
    giveUpAfter(9);
    EXPECT_THROW(query.OpenInstead(kNarrowed), DatabaseError);
    EXPECT_EQ(query.RecordCount(), 40 * kRows);
    request = [this] { session.expect(kNarrowed, megabytes(9)); };
    query.OpenInstead(kNarrowed);
    EXPECT_EQ(told, std::vector<std::string>{"changed"}) << "what narrows leaves the old rows until the end";
    EXPECT_EQ(query.SQL.Text(), kNarrowed);

    narrowing = false;
    open(40);
    narrowing = true;
    giveUpAfter(12);
    EXPECT_THROW(query.OpenInstead(kNarrowed), DatabaseError);
    EXPECT_FALSE(query.Active());
    EXPECT_EQ(query.SQL.Text(), kSelect) << "the statement of what was shown last";
    request = [this] { session.expect(kNarrowed, megabytes(12)); };
    query.OpenInstead(kNarrowed);
    EXPECT_EQ(query.RecordCount(), 12 * kRows);
    EXPECT_EQ(query.SQL.Text(), kNarrowed);
}

TEST_F(RowsBesideOthers, nobodyCountsBetweenRequests) {
    open(40);
    const RowSet others = megabytes(12);
    EXPECT_TRUE(query.Active());
    request = [this] { session.expectError(kSelect, DatabaseError(ErrorCategory::Other, "HY008", 0, "given up")); };
    EXPECT_THROW(query.Requery(), DatabaseError);
    const RowSet more = megabytes(12);
    EXPECT_TRUE(query.Active());
}

}  // namespace
}  // namespace basalt
