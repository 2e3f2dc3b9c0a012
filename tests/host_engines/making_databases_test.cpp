// New databases and copies: whole or not at all, whoever else is at work and whatever lies about.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <functional>
#include <optional>

#include "ado/error.h"
#include "host/engines/open_database.h"
#include "tests/support/files.h"
#include "tests/support/small_files.h"

namespace basalt::host {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::ThrowsMessage;
using ::testing::UnorderedElementsAre;

class MakingDatabases : public test::Files {
protected:
    [[nodiscard]] DatabaseUrl url(const std::string& name) const { return {EngineKind::Embedded, path(name).string()}; }
    void make(const std::string& name, const std::function<void(Session&)>& fill) const {
        createDatabase(url(name), fill);
    }
    static void addLevel(Session& session, const std::string& name) {
        session.run("create table Level(Name nvarchar(50))");
        session.run("insert into Level values(N'" + name + "')");
    }
    [[nodiscard]] std::string level(const std::string& name) const {
        const BatchResult found = openDatabase(url(name))->run("select Name from Level");
        return toText(found.results.at(0).rows->column(0).valueAt(0));
    }
    // As it is left by a program that died: committed rows stand in the log only.
    void leaveLog(const std::string& name) {
        make("living.db", [](Session&) {});
        const auto session = openDatabase(url("living.db"));
        addLevel(*session, "of yesterday");
        std::filesystem::copy_file(path("living.db-wal"), path(name));
    }
};

TEST_F(MakingDatabases, whatIsMadeStandsInTheFileAlone) {
    make("a.db", [](Session& session) { addLevel(session, "عمده"); });
    EXPECT_THAT(names(), UnorderedElementsAre("a.db"));
    EXPECT_EQ(level("a.db"), "عمده");
}

TEST_F(MakingDatabases, aDatabaseThatFindsNoRoomAtTheEndIsNotMade) {
    std::optional<test::SmallFiles> full;
    EXPECT_THROW(make("a.db",
                      [&full](Session& session) {
                          addLevel(session, "عمده");
                          // The log has taken everything; the file has not.
                          full.emplace(8192);
                      }),
                 DatabaseError);
    full.reset();
    EXPECT_THAT(names(), UnorderedElementsAre());
}

TEST_F(MakingDatabases, whoIsFirstKeepsTheFile) {
    EXPECT_THAT(
        [this] {
            make("a.db", [this](Session& session) {
                addLevel(session, "second");
                make("a.db", [](Session& other) { addLevel(other, "first"); });
            });
        },
        ThrowsMessage<FileExists>(HasSubstr("a.db already")));
    EXPECT_EQ(level("a.db"), "first");
}

TEST_F(MakingDatabases, theLogOfADatabaseThatIsGoneIsNotTakenUp) {
    leaveLog("a.db-wal");
    const std::string log = read("a.db-wal");
    ASSERT_FALSE(log.empty());
    const auto remains = ThrowsMessage<DatabaseRemains>(HasSubstr("a.db-wal; what was written into it last"));
    EXPECT_THAT([this] { createDatabase(url("a.db"), false); }, remains);
    EXPECT_THAT([this] { static_cast<void>(openOrCreateDatabase(url("a.db"))); }, remains);
    EXPECT_THAT([this] { backUpDatabase(url("living.db"), path("a.db").string()); }, remains);
    EXPECT_FALSE(std::filesystem::exists(path("a.db")));
    EXPECT_EQ(read("a.db-wal"), log);
}

// It would be made, and never opened again.
TEST_F(MakingDatabases, aNameMustLeaveRoomForThatOfTheLog) {
    const std::string longest = std::string(252, 'd') + ".db";
    make("a.db", [](Session& session) { addLevel(session, "عمده"); });
    const auto tooLong = ThrowsMessage<DatabaseError>(HasSubstr(".db is too long a name for a database"));
    EXPECT_THAT([&] { createDatabase(url(longest), false); }, tooLong);
    EXPECT_THAT([&] { backUpDatabase(url("a.db"), path(longest).string()); }, tooLong);
    EXPECT_FALSE(std::filesystem::exists(path(longest)));
}

TEST_F(MakingDatabases, aCopyThatFindsNoRoomIsNotMade) {
    make("a.db", [](Session& session) {
        session.run("create table Remark(Text nvarchar(4000))");
        for (int i = 0; i < 50; ++i)
            session.run("insert into Remark values(N'" + std::string(4000, 'x') + "')");
    });
    {
        // Enough to open the database, too little for all of it.
        const test::SmallFiles full(65536);
        EXPECT_THROW(backUpDatabase(url("a.db"), path("b.db").string()), DatabaseError);
    }
    EXPECT_THAT(names(), Not(Contains(HasSubstr("b.db"))));
}

TEST_F(MakingDatabases, aDatabaseOfAnotherProgramIsNotWritten) {
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(path("other.db").c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "CREATE TABLE t(a)", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(other);
    const std::string before = read("other.db");
    for (const auto& open : {openDatabase, openOrCreateDatabase})
        EXPECT_THAT([&] { static_cast<void>(open(url("other.db"), {})); },
                    ThrowsMessage<DatabaseError>(HasSubstr("not one of this program")));
    EXPECT_EQ(read("other.db"), before);
    EXPECT_THAT(names(), UnorderedElementsAre("other.db"));
}

TEST_F(MakingDatabases, anEmptyFileIsFilledOnlyWhereOneIsMade) {
    write(path("empty.db"), "");
    EXPECT_THAT([this] { static_cast<void>(openDatabase(url("empty.db"))); },
                ThrowsMessage<DatabaseError>(HasSubstr("is empty")));
    EXPECT_EQ(read("empty.db"), "");
    addLevel(*openOrCreateDatabase(url("empty.db")), "عمده");
    EXPECT_EQ(level("empty.db"), "عمده");
}

}  // namespace
}  // namespace basalt::host
