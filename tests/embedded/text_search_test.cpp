// Texts that an index includes are looked up by what LIKE asks for, and whatever happens to the rows, what is found is
// what reading all of them would find.
#include <gmock/gmock.h>
#include <sqlite3.h>

#include <random>

#include "engines/embedded/embedded_session.h"
#include "engines/embedded/runtime/text_pieces.h"
#include "tests/support/temp_folder.h"

namespace basalt::embedded {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::unique_ptr<EmbeddedSession> newSession() {
    return EmbeddedSession::open(":memory:");
}

std::vector<std::int64_t> numbers(Session& session, const std::string& query) {
    const BatchResult result = session.run(query);
    const RowSet& rows = result.results.at(0).rows.value();
    std::vector<std::int64_t> found;
    for (std::size_t r = 0; r < rows.rowCount(); ++r)
        found.push_back(toInt64(rows.column(0).valueAt(r)));
    return found;
}

std::vector<std::int64_t> like(Session& session, const std::string& pattern) {
    return numbers(session, "select Code from Goods where Names like N'" + pattern + "' order by Code");
}

void makeGoods(Session& session) {
    session.run("create table Goods(Code int not null primary key, Names nvarchar(100), Price decimal(23,9))");
    session.run("create index IX_Goods_Names on Goods(Code) include(Names)");
    session.run("insert into Goods(Code, Names) values(1, N'!6260100100018!'), (2, N'!12345!67890!'), (3, null)");
}

// On the same file, behind the engine's back.
void directly(const std::string& path, const char* sql) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
    sqlite3_close(database);
}

TEST(TextPieces, beginAtEveryCharacter) {
    EXPECT_THAT(piecesOf("!626!"), ElementsAre("!626!", "26!", "626!"));
    EXPECT_THAT(piecesOf("ABCDEFGHIJ"),
                ElementsAre("abcdefgh", "bcdefghi", "cdefghij", "defghij", "efghij", "fghij", "ghij", "hij"));
    EXPECT_THAT(piecesOf("aaaa"), ElementsAre("aaa", "aaaa"));
    EXPECT_THAT(piecesOf("ab"), IsEmpty());
    EXPECT_THAT(piecesOf(""), IsEmpty());
    EXPECT_THAT(piecesOf("شیر"), ElementsAre("شیر"));
}

TEST(TextPieces, aNeedleIsTheLongestRunOfItsPattern) {
    EXPECT_EQ(needleOf("%!12345!%"), "!12345!");
    EXPECT_EQ(needleOf("%!6260100100018!%"), "0100018!");
    EXPECT_EQ(needleOf("Abc"), "abc");
    EXPECT_EQ(needleOf("%ab_cde%"), "cde");
    EXPECT_EQ(needleOf("%abc[d]efgh%"), "abc");
    EXPECT_EQ(needleOf("%ab%cd%"), std::nullopt);
    EXPECT_EQ(needleOf("%[a]bcdef"), std::nullopt);
    EXPECT_EQ(needleOf(""), std::nullopt);
}

TEST(TextSearch, findsWhatStandsInsideOfTexts) {
    const auto session = newSession();
    makeGoods(*session);
    EXPECT_THAT(like(*session, "%!12345!%"), ElementsAre(2));
    EXPECT_THAT(like(*session, "%!6260100100018!%"), ElementsAre(1));
    EXPECT_THAT(like(*session, "%!626%"), ElementsAre(1));
    EXPECT_THAT(like(*session, "%!%"), ElementsAre(1, 2));
    EXPECT_THAT(like(*session, "%234%890%"), ElementsAre(2));
    EXPECT_THAT(like(*session, "%234%018%"), IsEmpty());
    EXPECT_THAT(like(*session, "%nothing%"), IsEmpty());
}

TEST(TextSearch, looksUpInsteadOfReading) {
    test::TempFolder folder;
    const std::string path = folder.file("shop.basalt");
    makeGoods(*EmbeddedSession::open(path, {.createIfMissing = true}));
    directly(path, "delete from \"basalt_pieces.Goods.Names\"");
    const auto session = EmbeddedSession::open(path);
    // Without its pieces a text is not found any more, unless the pattern is one for which all are read.
    EXPECT_THAT(like(*session, "%!12345!%"), IsEmpty());
    EXPECT_THAT(like(*session, "%[!]12345!%"), ElementsAre(2));
    EXPECT_THAT(numbers(*session, "select Code from Goods where Code = 2 and Names like N'%12345%'"), ElementsAre(2));
    EXPECT_THAT(session->integrityCheck(), ElementsAre(HasSubstr("Goods.Names")));
    session->run("drop index IX_Goods_Names on Goods");
    session->run("create index IX_Goods_Names on Goods(Code) include(Names)");
    EXPECT_THAT(like(*session, "%!12345!%"), ElementsAre(2));
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
}

TEST(TextSearch, aPieceTooManyIsAProblemToo) {
    test::TempFolder folder;
    const std::string path = folder.file("shop.basalt");
    makeGoods(*EmbeddedSession::open(path, {.createIfMissing = true}));
    directly(path, "insert into \"basalt_pieces.Goods.Names\" values(x'616263', 3)");
    const auto session = EmbeddedSession::open(path);
    EXPECT_THAT(like(*session, "%abc%"), IsEmpty());
    EXPECT_THAT(session->integrityCheck(), ElementsAre(HasSubstr("Goods.Names")));
}

TEST(TextSearch, readsAllWhenManyComeIntoQuestion) {
    const auto session = newSession();
    makeGoods(*session);
    session->run(
        "with N as (select 10 as C union all select C + 1 from N where C < 3000) insert into Goods(Code, Names) "
        "select C, N'common ' + cast(C as nvarchar(10)) from N option (maxrecursion 0)");
    EXPECT_EQ(like(*session, "%common%").size(), 2991U);
    EXPECT_THAT(like(*session, "%common 2999%"), ElementsAre(2999));
    EXPECT_THAT(numbers(*session, "select top 2 Code from Goods where Names like N'%common%' order by Code desc"),
                ElementsAre(3000, 2999));
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
}

TEST(TextSearch, takesThePatternOfEachRun) {
    const auto session = newSession();
    makeGoods(*session);
    const std::string query = "select Code from Goods where Names like ? order by Code";
    const auto found = [&](Value pattern) {
        const std::vector<Value> values{std::move(pattern)};
        return session->run(query, values).results.at(0).rows->rowCount();
    };
    EXPECT_EQ(found(std::string("%!12345!%")), 1U);
    EXPECT_EQ(found(std::string("%1%")), 2U);
    EXPECT_EQ(found(Null{}), 0U);
    EXPECT_EQ(found(std::string("%0018!")), 1U);
    EXPECT_THAT(numbers(*session,
                        "declare @p nvarchar(50); set @p = N'%678%'; select Code from Goods where Names like "
                        "@p"),
                ElementsAre(2));
    session->run("create procedure Find @p nvarchar(50) as select Code from Goods where Names like @p order by Code");
    for (int i = 0; i < 2; ++i) {
        EXPECT_THAT(numbers(*session, "exec Find N'%!12345%'"), ElementsAre(2));
        EXPECT_THAT(numbers(*session, "exec Find N'%!%'"), ElementsAre(1, 2));
    }
}

TEST(TextSearch, worksInEveryPlaceOfAQuery) {
    const auto session = newSession();
    makeGoods(*session);
    EXPECT_THAT(numbers(*session,
                        "select g.Code from Goods g join Goods o on o.Code = g.Code + 1 where o.Names like "
                        "N'%12345%' and g.Names like N'%626%'"),
                ElementsAre(1));
    EXPECT_THAT(numbers(*session,
                        "select a.Code from Goods a left join Goods b on b.Code = a.Code + 1 and b.Code > 2 "
                        "where b.Names like N'%12345%'"),
                IsEmpty());
    EXPECT_THAT(numbers(*session,
                        "select Code from Goods where Code in (select Code from Goods where Names like "
                        "N'%12345%') union all select 9"),
                ElementsAre(2, 9));
    EXPECT_THAT(numbers(*session, "select Code from Goods where Names not like N'%12345%'"), ElementsAre(1));
    EXPECT_THAT(numbers(*session, "select Code from Goods where Names like N'%12345%' or Code = 3 order by Code"),
                ElementsAre(2, 3));
    EXPECT_THAT(numbers(*session, "select Code from Goods where Names like N'%!!12345%' escape N'!'"), ElementsAre(2));
    EXPECT_THAT(numbers(*session,
                        "select x.Code from Goods g cross apply (select Code from Goods where Names like "
                        "N'%12345%' and Code > g.Code) x"),
                ElementsAre(2));
    session->run("update Goods set Price = 5 where Names like N'%12345%'");
    session->run("delete from Goods where Names like N'%626%'");
    EXPECT_THAT(numbers(*session, "select Code from Goods where Price = 5"), ElementsAre(2));
    EXPECT_THAT(numbers(*session, "select count(*) from Goods"), ElementsAre(2));
}

TEST(TextSearch, whatIsUndoneIsNotFound) {
    const auto session = newSession();
    makeGoods(*session);
    session->begin();
    session->run("update Goods set Names = N'!new!' where Code = 2");
    session->run("insert into Goods(Code, Names) values(4, N'!newer!')");
    EXPECT_THAT(like(*session, "%!new%"), ElementsAre(2, 4));
    EXPECT_THAT(like(*session, "%12345%"), IsEmpty());
    session->rollback();
    EXPECT_THAT(like(*session, "%!new%"), IsEmpty());
    EXPECT_THAT(like(*session, "%12345%"), ElementsAre(2));

    session->run("begin tran; update Goods set Names = N'first' where Code = 1");
    session->run("save tran S; delete from Goods where Code = 2; update Goods set Names = N'second' where Code = 1");
    EXPECT_THAT(like(*session, "%second%"), ElementsAre(1));
    session->run("rollback tran S");
    EXPECT_THAT(like(*session, "%second%"), IsEmpty());
    EXPECT_THAT(like(*session, "%first%"), ElementsAre(1));
    EXPECT_THAT(like(*session, "%12345%"), ElementsAre(2));
    session->run("commit");
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
}

TEST(TextSearch, aStatementThatFailsChangesNothing) {
    const auto session = newSession();
    makeGoods(*session);
    for (const bool inside : {false, true}) {
        if (inside) session->begin();
        // The third row has a key that is taken, or a number that does not fit, when two are written already.
        EXPECT_THROW(session->run("insert into Goods(Code, Names) values(10, N'!lost!'), (11, N'!lost!'), (1, N'x')"),
                     DatabaseError);
        EXPECT_THROW(session->run("update Goods set Names = N'!lost!', Code = 5 where Code < 3"), DatabaseError);
        EXPECT_THROW(session->run("update Goods set Names = N'!lost!', Price = 1 / (Code - 2)"), DatabaseError);
        EXPECT_THROW(session->run("insert into Goods(Code, Names) values(1, N'!lost!')"), DatabaseError);
        EXPECT_THAT(like(*session, "%!lost!%"), IsEmpty());
        EXPECT_THAT(like(*session, "%12345%"), ElementsAre(2));
        if (inside) session->commit();
        EXPECT_THAT(session->integrityCheck(), IsEmpty());
    }
}

TEST(TextSearch, livesThroughChangesOfTheTable) {
    const auto session = newSession();
    makeGoods(*session);
    session->run("alter table Goods add Comment nvarchar(20)");
    EXPECT_THAT(like(*session, "%12345%"), ElementsAre(2));
    session->run("insert into Goods(Code, Names) values(4, N'!fourth!')");
    EXPECT_THAT(like(*session, "%fourth%"), ElementsAre(4));
    session->run("alter table Goods alter column Names nvarchar(200)");
    session->run("alter table Goods drop column Comment");
    session->run("update Goods set Names = N'!fifth!' where Code = 4");
    EXPECT_THAT(like(*session, "%fourth%"), IsEmpty());
    EXPECT_THAT(like(*session, "%fifth%"), ElementsAre(4));
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
    EXPECT_THROW(session->run("alter table Goods alter column Code nvarchar(1) not null; alter table Goods add A int "
                              "not null"),
                 DatabaseError);
    EXPECT_THAT(like(*session, "%fifth%"), ElementsAre(4));
    EXPECT_THAT(session->integrityCheck(), IsEmpty());

    session->begin();
    session->run("drop table Goods");
    session->rollback();
    EXPECT_THAT(like(*session, "%fifth%"), ElementsAre(4));
    session->run("truncate table Goods");
    EXPECT_THAT(like(*session, "%fifth%"), IsEmpty());
    session->run("drop table Goods");
    session->run("create table Goods(Code int not null primary key, Names nvarchar(100))");
    session->run("insert into Goods(Code, Names) values(7, N'!fifth!')");
    EXPECT_THAT(like(*session, "%fifth%"), ElementsAre(7));
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
}

TEST(TextSearch, goesWithTheLastIndexThatIncludesTheText) {
    const auto session = newSession();
    makeGoods(*session);
    session->run("create index IX_More on Goods(Price) include(Names)");
    session->run("drop index IX_Goods_Names on Goods");
    EXPECT_THAT(like(*session, "%12345%"), ElementsAre(2));
    session->run("insert into Goods(Code, Names) values(4, N'!fourth!')");
    EXPECT_THAT(like(*session, "%fourth%"), ElementsAre(4));
    session->run("drop index IX_More on Goods");
    session->run("insert into Goods(Code, Names) values(5, N'!fourth!')");
    EXPECT_THAT(like(*session, "%fourth%"), ElementsAre(4, 5));
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
}

TEST(TextSearch, knowsRowsByKeysOfAllKinds) {
    const auto session = newSession();
    session->run(
        "create table Goods(Code int not null, Kind nvarchar(10) not null, Weight decimal(9,3) not null, Names "
        "nvarchar(100), primary key(Kind, Weight, Code))");
    session->run("create index IX on Goods(Names, Kind) include(Weight)");
    session->run("create index IX_Names on Goods(Kind) include(Names)");
    session->run(
        "insert into Goods values(1, N'الف', 1.5, N'شیر پاک'), (2, N'A', 1.5, N'شیر کاله'), (3, N'A', 2, N'x')");
    EXPECT_THAT(like(*session, "%شیر %"), ElementsAre(1, 2));
    EXPECT_THAT(like(*session, "%شیر ک%"), ElementsAre(2));
    session->run("update Goods set Kind = N'a' where Code = 2");
    session->run("update Goods set Weight = Weight + 1");
    EXPECT_THAT(like(*session, "%شیر ک%"), ElementsAre(2));
    session->run("delete from Goods where Code = 2");
    EXPECT_THAT(like(*session, "%شیر %"), ElementsAre(1));
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
}

TEST(TextSearch, followsReferencesThatChangeRows) {
    const auto session = newSession();
    session->run("create table Kinds(Kind int not null primary key)");
    session->run("insert into Kinds values(1), (2)");
    session->run(
        "create table Goods(Code int not null, Kind int not null references Kinds(Kind) on delete cascade on update "
        "cascade, Names nvarchar(100), primary key(Kind, Code))");
    session->run("create index IX_Names on Goods(Kind) include(Names)");
    session->run("insert into Goods values(1, 1, N'!first!'), (2, 2, N'!second!')");
    session->run("update Kinds set Kind = 3 where Kind = 1");
    EXPECT_THAT(like(*session, "%first%"), ElementsAre(1));
    session->run("delete from Kinds where Kind = 2");
    EXPECT_THAT(like(*session, "%second%"), IsEmpty());
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
}

TEST(TextSearch, anotherProgramMayMakeAndDropTheIndex) {
    test::TempFolder folder;
    const std::string path = folder.file("shop.basalt");
    const auto one = EmbeddedSession::open(path, {.createIfMissing = true});
    makeGoods(*one);
    const auto other = EmbeddedSession::open(path);
    EXPECT_THAT(like(*other, "%12345%"), ElementsAre(2));
    one->run("insert into Goods(Code, Names) values(4, N'!12345!')");
    EXPECT_THAT(like(*other, "%12345%"), ElementsAre(2, 4));
    one->run("drop index IX_Goods_Names on Goods");
    EXPECT_THAT(like(*other, "%12345%"), ElementsAre(2, 4));
    other->run("insert into Goods(Code, Names) values(5, N'!12345!')");
    one->run("create index IX_Goods_Names on Goods(Code) include(Names)");
    other->run("insert into Goods(Code, Names) values(6, N'!12345!')");
    EXPECT_THAT(like(*other, "%12345%"), ElementsAre(2, 4, 5, 6));
    EXPECT_THAT(like(*one, "%12345%"), ElementsAre(2, 4, 5, 6));
    EXPECT_THAT(one->integrityCheck(), IsEmpty());
    const std::string copy = folder.file("copy.basalt");
    one->backUp(copy);
    const auto copied = EmbeddedSession::open(copy);
    EXPECT_THAT(like(*copied, "%12345%"), ElementsAre(2, 4, 5, 6));
    EXPECT_THAT(copied->integrityCheck(), IsEmpty());
}

TEST(TextSearch, isMadeAnewWhenCharactersFoldInAnotherWay) {
    test::TempFolder folder;
    const std::string path = folder.file("shop.basalt");
    makeGoods(*EmbeddedSession::open(path, {.createIfMissing = true}));
    directly(path,
             "delete from \"basalt_pieces.Goods.Names\"; update basalt_property set value = '1' where name = "
             "'collation_version'");
    const auto session = EmbeddedSession::open(path);
    EXPECT_THAT(like(*session, "%!12345!%"), ElementsAre(2));
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
}

// Random changes to two tables that differ in nothing but the index, and random patterns.
TEST(TextSearch, agreesWithReadingAllTexts) {
    std::mt19937 random(13990101);
    const std::vector<std::string> letters{
        "a", "A", "b", "ß", "ẞ", "k", "K",        "\xE2\x84\xAA",     "ı", "İ", "i", "I", "ی", "ي", "ک", "ك",
        " ", "!", "1", "é", "É", "e", "\xCC\x81", "\xF0\x9F\x98\x80", "σ", "ς", "Σ"};
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
    const auto text = [&](std::size_t longest) {
        std::string result;
        // Few different ones, so that patterns meet texts.
        const std::size_t first = below(letters.size());
        for (std::size_t i = below(longest + 1); i > 0; --i)
            result += letters[(first + below(4)) % letters.size()];
        return result;
    };
    const auto session = newSession();
    makeGoods(*session);
    session->run("create table Plain(Code int not null primary key, Names nvarchar(100), Price decimal(23,9))");
    session->run("insert into Plain select * from Goods");
    for (int round = 0; round < 1500; ++round) {
        const std::string code = std::to_string(below(40));
        const std::string value = below(12) == 0 ? "null" : "N'" + text(14) + "'";
        const bool undone = below(5) == 0;
        if (undone) session->begin();
        for (const std::string table : {"Goods", "Plain"}) {
            session->run("update " + table + " set Names = " + value + " where Code = " + code +
                         "; if @@rowcount = 0 " + "insert into " + table + "(Code, Names) values(" + code + ", " +
                         value + ")");
            if (round % 7 == 0) session->run("delete from " + table + " where Code = " + std::to_string(round % 40));
            if (round % 50 == 0) session->run("delete from " + table + " where Code >= 100");
            if (round % 50 == 0)
                session->run("update " + table + " set Code = Code + 100 where Code % 3 = 0 and Code < 40");
        }
        if (undone) session->rollback();
        std::string pattern = "%" + text(6);
        if (below(3) == 0) pattern += below(2) == 0 ? "_" : "%" + text(5);
        pattern += "%";
        const std::string condition = " where Names like N'" + pattern + "' order by Code";
        EXPECT_EQ(numbers(*session, "select Code from Goods" + condition),
                  numbers(*session, "select Code from Plain" + condition))
            << pattern;
    }
    EXPECT_THAT(session->integrityCheck(), IsEmpty());
}

}  // namespace
}  // namespace basalt::embedded
