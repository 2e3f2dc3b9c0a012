// What keeps NULL single in unique indexes: in files of former versions, and unseen by everyone.
#include <gmock/gmock.h>
#include <sqlite3.h>

#include "engines/embedded/embedded_session.h"
#include "tests/support/temp_folder.h"

namespace basalt::embedded {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class NullGuards : public testing::Test {
protected:
    [[nodiscard]] std::string path() const { return folder_.file("shop.basalt"); }

    // By SQLite alone.
    void alter(const char* sql) const {
        sqlite3* file = nullptr;
        ASSERT_EQ(sqlite3_open(path().c_str(), &file), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(file, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(file);
        sqlite3_close(file);
    }

    // Names of the guards in the file.
    [[nodiscard]] std::vector<std::string> guards() const {
        sqlite3* file = nullptr;
        EXPECT_EQ(sqlite3_open(path().c_str(), &file), SQLITE_OK);
        std::vector<std::string> names;
        sqlite3_exec(
            file, "select name from sqlite_schema where name glob 'basalt_null_*' order by name",
            [](void* into, int, char** values, char**) {
                static_cast<std::vector<std::string>*>(into)->emplace_back(values[0]);
                return 0;
            },
            &names, nullptr);
        sqlite3_close(file);
        return names;
    }

    static std::string refusal(Session& session, const std::string& sql) {
        try {
            session.run(sql);
        } catch (const DatabaseError& error) {
            return std::to_string(error.nativeCode()) + " " + error.what();
        }
        return "no error";
    }

    test::TempFolder folder_;
};

// A former version made an index for each set of columns that may be NULL together, and did not name the table.
class FormerNullGuards : public NullGuards {
protected:
    void SetUp() override {
        EmbeddedSession::open(path(), {.createIfMissing = true})
            ->run(
                "create table T(ID int not null, A int, B int, C int, constraint UQ_T unique (A, B)) "
                "create unique index UX on T(B, C) "
                "insert into T values (1, null, 1, 1), (2, 1, null, 1), (3, null, null, 2)");
        alter(
            "drop index \"basalt_null_0_T.UQ_T\"; drop index \"basalt_null_0_T.UX\";"
            "create unique index basalt_null_1_UQ_T on T(B) where A is null;"
            "create unique index basalt_null_2_UQ_T on T(A) where B is null;"
            "create unique index basalt_null_3_UQ_T on T(A is null) where A is null and B is null;"
            "create unique index basalt_null_1_UX on T(C) where B is null;"
            "create unique index basalt_null_2_UX on T(B) where C is null;"
            "create unique index basalt_null_3_UX on T(B is null) where B is null and C is null;");
    }

    static constexpr const char* kBreaksTheConstraint =
        "2627 Violation of UNIQUE KEY constraint 'UQ_T'. Cannot insert duplicate key in object 'dbo.T'.";
};

TEST_F(FormerNullGuards, stillHold) {
    const auto session = EmbeddedSession::open(path());
    EXPECT_EQ(refusal(*session, "insert into T values (4, null, 1, 5)"), kBreaksTheConstraint);
    EXPECT_EQ(refusal(*session, "insert into T values (4, 1, null, 5)"), kBreaksTheConstraint);
    EXPECT_EQ(refusal(*session, "insert into T values (4, null, null, 5)"), kBreaksTheConstraint);
    EXPECT_EQ(refusal(*session, "insert into T values (4, 7, null, 1)"),
              "2601 Cannot insert duplicate key row in object 'dbo.T' with unique index 'UX'.");
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
}

TEST_F(FormerNullGuards, goWithTheirIndex) {
    const auto session = EmbeddedSession::open(path());
    session->run("drop index UX on T insert into T values (4, 7, null, 1)");
    EXPECT_EQ(refusal(*session, "insert into T values (5, null, 1, 5)"), kBreaksTheConstraint);
    EXPECT_THAT(guards(), ElementsAre("basalt_null_1_UQ_T", "basalt_null_2_UQ_T", "basalt_null_3_UQ_T"));
}

TEST_F(FormerNullGuards, becomeNewOnesWithTheTable) {
    const auto session = EmbeddedSession::open(path());
    session->run("alter table T add D int");
    EXPECT_THAT(guards(), ElementsAre("basalt_null_0_T.UQ_T", "basalt_null_0_T.UX"));
    EXPECT_EQ(refusal(*session, "insert into T(A, B, ID) values (null, 1, 4)"), kBreaksTheConstraint);
    session->run("alter table T drop constraint UQ_T");
    EXPECT_THAT(guards(), ElementsAre("basalt_null_0_T.UX"));
    session->run("insert into T(A, B, C, ID) values (null, 1, 6, 4)");
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
}

// They held nothing of the kind there.
TEST_F(NullGuards, aFormerIndexWithDoublesIsToldOfWhenItIsMadeAnew) {
    const auto session = EmbeddedSession::open(path(), {.createIfMissing = true});
    session->run("create table T(A int, B int not null) create unique index UX on T(A) where B = 0");
    alter("drop index \"basalt_null_0_T.UX\"");
    session->run("insert into T values (null, 0), (null, 0)");
    EXPECT_EQ(refusal(*session, "alter table T add C int"),
              "1505 The CREATE UNIQUE INDEX statement terminated because a duplicate key was found for the object name "
              "'dbo.T' and the index name 'UX'.");
    // All or nothing: its rows are there, and the refused column is not.
    session->run("if (select count(*) from T) <> 2 or col_length('T', 'C') is not null throw 50001, N'lost', 1");
    session->run("update T set B = 1 alter table T add C int");
    EXPECT_THAT(guards(), ElementsAre("basalt_null_0_T.UX"));
}

TEST_F(NullGuards, areShownToNobody) {
    const auto session = EmbeddedSession::open(path(), {.createIfMissing = true});
    session->run(
        "create table T(A int, B nvarchar(9), constraint UQ_T unique (A, B)) create unique index UX on T(B) where A = 1 "
        "insert into T values (null, N'x'), (1, null), (null, null)");
    EXPECT_THAT(guards(), SizeIs(2));
    const DatabaseSchema schema = session->schema();
    ASSERT_THAT(schema.tables, SizeIs(1));
    EXPECT_THAT(schema.tables[0].keys, ElementsAre(testing::Field(&KeySchema::name, "UQ_T")));
    EXPECT_THAT(schema.tables[0].indexes, ElementsAre(testing::Field(&IndexSchema::name, "UX")));
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
    session->run("drop table T");
    EXPECT_THAT(guards(), IsEmpty());
}

// A query that asks for NULL reads by the index that people know, or the table.
TEST_F(NullGuards, areReadByNoQuery) {
    const auto session = EmbeddedSession::open(path(), {.createIfMissing = true});
    session->run("create table T(ID int, A int, B int not null, C int) create unique index UX on T(B, A)");
    sqlite3* file = nullptr;
    ASSERT_EQ(sqlite3_open(path().c_str(), &file), SQLITE_OK);
    for (const char* condition : {"A is null", "A is null and B > 5", "A is null order by B"}) {
        std::string steps;
        sqlite3_exec(
            file, (std::string("explain query plan select ID from T where ") + condition).c_str(),
            [](void* into, int, char** values, char**) {
                static_cast<std::string*>(into)->append(values[3]).append("; ");
                return 0;
            },
            &steps, nullptr);
        EXPECT_THAT(steps, testing::HasSubstr("T")) << condition;
        EXPECT_THAT(steps, testing::Not(testing::HasSubstr("basalt_null"))) << condition;
    }
    sqlite3_close(file);
}

}  // namespace
}  // namespace basalt::embedded
