// What a server answers, through FreeTDS: results, counts, messages, errors and values.
#include "freetds.h"

namespace basalt::odbc {
namespace {

namespace tds = test::tds;
using test::errorOf;
using test::FreeTds;
using test::TdsReply;
using test::TdsType;
using testing::ElementsAre;

TEST_F(FreeTds, aBatchReachesTheServerAsItStands) {
    const std::string batch = "select N'قیمت عمده ۱۲ 𐎠 ''{fn now()}'' ?' as [نام] -- {call x}\r\n";
    server_.answer(TdsReply().columns({tds::nvarchar("نام", 50)}).row({std::string("عمده 𐎠")}).done(1));
    const BatchResult result = session().run(batch);
    EXPECT_THAT(sent(), ElementsAre(batch));
    const RowSet& rows = result.results.at(0).rows.value();
    EXPECT_EQ(rows.column(0).info().name, "نام");
    EXPECT_EQ(rows.column(0).info().size, 50);
    EXPECT_EQ(rows.column(0).textAt(0), "عمده 𐎠");
}

TEST_F(FreeTds, allResultsOfABatchComeInTheirOrder) {
    server_.answer(TdsReply()
                       .info(0, "first")
                       .done(-1, true)
                       .done(3, true)
                       .columns({tds::integer("A")})
                       .row({std::int64_t{1}})
                       .row({std::int64_t{2}})
                       .done(2, true)
                       .info(0, "پیام")
                       .done(-1, true)
                       .columns({tds::nvarchar("B", 10)})
                       .done(0, true)
                       .done(0, true)
                       .info(0, "last")
                       .done());
    const BatchResult result = session().run("...");
    ASSERT_EQ(result.results.size(), 4U);
    EXPECT_EQ(result.results[0].affectedRows, 3);
    EXPECT_EQ(result.results[1].rows.value().column(0).intAt(1), 2);
    EXPECT_EQ(result.results[2].rows.value().rowCount(), 0U);
    EXPECT_EQ(result.results[3].affectedRows, 0);
    EXPECT_THAT(result.messages, ElementsAre("first", "پیام", "last"));
    EXPECT_EQ(affectedRows(result), 0);
}

TEST_F(FreeTds, anErrorBeforeFurtherResultsIsThrownAndTheRestIsRead) {
    server_.answer(TdsReply()
                       .error(2627, 14, "Violation of PRIMARY KEY constraint 'PK_T'.")
                       .info(3621, "The statement has been terminated.")
                       .doneWithError(true)
                       .columns({tds::integer("A")})
                       .row({std::int64_t{1}})
                       .done(1));
    server_.answer(TdsReply().done(1));
    const DatabaseError error = errorOf([&] { session().run("insert into T values(1); select 1 as A"); });
    EXPECT_EQ(error.category(), ErrorCategory::Constraint);
    EXPECT_EQ(error.sqlState(), "23000");
    EXPECT_EQ(error.nativeCode(), 2627);
    EXPECT_STREQ(error.what(), "Violation of PRIMARY KEY constraint 'PK_T'.");
    EXPECT_EQ(error.statement(), "insert into T values(1); select 1 as A");
    ASSERT_NE(error.results(), nullptr);
    ASSERT_EQ(error.results()->results.size(), 1U);
    EXPECT_EQ(error.results()->results[0].rows.value().column(0).intAt(0), 1);
    EXPECT_EQ(server_.attentions(), 0);
    EXPECT_EQ(affectedRows(session().run("next")), 1);
    EXPECT_EQ(server_.logins(), 1);
}

TEST_F(FreeTds, whatFollowsAnErrorIsReadInFull) {
    const std::string longText(100'000, 'x');
    server_.answer(TdsReply()
                       .error(2627, 14, "first")
                       .doneWithError(true)
                       .columns({tds::integer("A"), tds::nvarchar("N", 20)})
                       .row({std::int64_t{1}, std::string("یک")})
                       .row({std::int64_t{2}, Null{}})
                       .done(2, true)
                       .done(3, true)
                       .error(547, 16, "second")
                       .doneWithError(true)
                       .info(0, "said behind")
                       .done(-1, true)
                       .columns({tds::column("L", TdsType::NvarcharMax)})
                       .row({longText})
                       .done(1));
    server_.answer(TdsReply().done(7));
    const DatabaseError error = errorOf([&] { session().run("..."); });
    EXPECT_STREQ(error.what(), "first");
    ASSERT_NE(error.results(), nullptr);
    const BatchResult& rest = *error.results();
    ASSERT_EQ(rest.results.size(), 3U);
    EXPECT_EQ(rest.results[0].rows.value().column(1).textAt(0), "یک");
    EXPECT_TRUE(rest.results[0].rows.value().column(1).isNull(1));
    EXPECT_EQ(rest.results[1].affectedRows, 3);
    EXPECT_EQ(rest.results[2].rows.value().column(0).textAt(0), longText);
    EXPECT_THAT(rest.messages, ElementsAre("said behind"));
    EXPECT_EQ(rest.placeOf(0), 2U);
    EXPECT_EQ(server_.attentions(), 0);
    EXPECT_EQ(affectedRows(session().run("next")), 7);
}

class FailingProcedures : public FreeTds, public testing::WithParamInterface<bool> {};

// Whether its error comes first or behind a result.
TEST_P(FailingProcedures, loseNoneOfTheirResults) {
    const auto result = [](TdsReply& reply, std::int64_t value) {
        reply.columns({tds::integer("A")}).row({value}).doneInProcedure(1);
    };
    TdsReply reply;
    std::vector<std::int64_t> sent = {2, 3};
    if (GetParam()) {
        result(reply, 1);
        sent.insert(sent.begin(), 1);
    }
    reply.error(547, 16, "refused").doneInProcedure();
    result(reply, 2);
    result(reply, 3);
    server_.answer(reply.returnStatus(-6).doneProcedure(true));
    server_.answer(TdsReply().done(7));
    const DatabaseError error = errorOf([&] { session().run("exec P"); });
    EXPECT_EQ(error.nativeCode(), 547);
    ASSERT_NE(error.results(), nullptr);
    std::vector<std::int64_t> got;
    for (const StatementResult& each : error.results()->results)
        got.push_back(each.rows.value().column(0).intAt(0));
    EXPECT_EQ(got, sent);
    EXPECT_EQ(server_.attentions(), 0);
    EXPECT_EQ(affectedRows(session().run("next")), 7);
}

INSTANTIATE_TEST_SUITE_P(Places, FailingProcedures, testing::Bool());

TEST_F(FreeTds, messagesKeepTheirPlaceBetweenTheResults) {
    server_.answer(TdsReply()
                       .columns({tds::integer("A")})
                       .row({std::int64_t{1}})
                       .done(1, true)
                       .info(0, "between")
                       .done(-1, true)
                       .columns({tds::integer("A")})
                       .row({std::int64_t{2}})
                       .info(0, "with the rows")
                       .done(1));
    const BatchResult result = session().run("...");
    EXPECT_THAT(result.messages, ElementsAre("between", "with the rows"));
    EXPECT_EQ(result.placeOf(0), 1U);
    EXPECT_EQ(result.placeOf(1), 2U);
}

TEST_F(FreeTds, anErrorAfterRowsIsThrown) {
    server_.answer(TdsReply()
                       .columns({tds::integer("A")})
                       .row({std::int64_t{1}})
                       .error(8134, 16, "Divide by zero error encountered.")
                       .doneWithError());
    server_.answer(TdsReply().done(7));
    const DatabaseError error = errorOf([&] { session().run("select 1/A from T"); });
    EXPECT_EQ(error.category(), ErrorCategory::Conversion);
    EXPECT_EQ(error.nativeCode(), 8134);
    EXPECT_EQ(affectedRows(session().run("next")), 7);
}

TEST_F(FreeTds, anErrorAfterAWholeResultIsThrown) {
    server_.answer(TdsReply()
                       .columns({tds::integer("A")})
                       .row({std::int64_t{1}})
                       .done(1, true)
                       .done(2, true)
                       .error(50000, 16, "خطای برنامه")
                       .doneWithError());
    server_.answer(TdsReply().done(7));
    const DatabaseError error = errorOf([&] { session().run("select 1; update T; raiserror"); });
    EXPECT_EQ(error.category(), ErrorCategory::Other);
    EXPECT_EQ(error.nativeCode(), 50000);
    EXPECT_STREQ(error.what(), "خطای برنامه");
    EXPECT_EQ(affectedRows(session().run("next")), 7);
}

TEST_F(FreeTds, everyTypeKeepsItsValue) {
    const Decimal largest = *Decimal::parse("-12345678901234567890123456789.123456789");
    server_.answer(TdsReply()
                       .columns({tds::bit("B"), tds::integer("T", 1), tds::integer("S", 2), tds::integer("I"),
                                 tds::integer("L", 8), tds::column("F", TdsType::Float), tds::decimal("D", 38, 9),
                                 tds::column("M", TdsType::Money), tds::nvarchar("N", 20),
                                 tds::column("V", TdsType::Varchar, 20), tds::column("DT", TdsType::Datetime),
                                 tds::column("D2", TdsType::Datetime2, 8, 7), tds::column("G", TdsType::Guid, 16)})
                       .row({true, std::int64_t{200}, std::int64_t{-32768}, std::int64_t{-2147483648},
                             std::int64_t{-9223372036854775807}, -1.5e300, largest, *Decimal::parse("-1.0205"),
                             std::string("ی"), std::string("caf\xE9"), *parseDateTime("2024-03-20 10:15:00.997"),
                             *parseDateTime("2024-03-20 10:15:00.1234567"),
                             Bytes{0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD,
                                   0xEE, 0xFF}})
                       .row(std::vector<Value>(13, Null{}))
                       .done(2));
    const BatchResult result = session().run("...");
    const RowSet& rows = result.results.at(0).rows.value();
    std::vector<std::string> values;
    std::vector<std::string> types;
    for (std::size_t i = 0; i < rows.columnCount(); ++i) {
        values.push_back(toText(rows.column(i).valueAt(0)));
        types.push_back(rows.column(i).info().typeName);
        EXPECT_TRUE(rows.column(i).isNull(1)) << i;
    }
    EXPECT_THAT(values, ElementsAre("True", "200", "-32768", "-2147483648", "-9223372036854775807", "-1.5e+300",
                                    "-12345678901234567890123456789.123456789", "-1.0205", "ی", "café",
                                    "2024-03-20 10:15:00.997", "2024-03-20 10:15:00.1234567",
                                    "00112233-4455-6677-8899-AABBCCDDEEFF"));
    EXPECT_THAT(types, ElementsAre("bit", "tinyint", "smallint", "int", "bigint", "float", "decimal", "money",
                                   "nvarchar", "varchar", "datetime", "datetime2", "uniqueidentifier"));
    const auto info = [&](std::size_t i) -> const ColumnInfo& { return rows.column(i).info(); };
    EXPECT_EQ(info(1).type, FieldType::TinyInt);
    EXPECT_EQ(info(6).type, FieldType::Decimal);
    EXPECT_EQ(info(6).precision, 38);
    EXPECT_EQ(info(6).scale, 9);
    EXPECT_EQ(info(7).scale, 4);
    EXPECT_EQ(info(8).size, 20);
    EXPECT_EQ(info(12).type, FieldType::Text);
    EXPECT_EQ(info(12).size, 36);
}

// FreeTDS delivers one as often as it is asked to, and says each time that it was cut.
TEST_F(FreeTds, aVariantIsReadOnce) {
    server_.answer(TdsReply()
                       .columns({tds::integer("A"), tds::column("V", TdsType::Variant)})
                       .row({std::int64_t{1}, std::int64_t{-7}})
                       .row({std::int64_t{2}, std::string("سلام")})
                       .row({std::int64_t{3}, *Decimal::parse("-123.45")})
                       .row({std::int64_t{4}, Null{}})
                       .done(4));
    const BatchResult result = session().run("...");
    const RowSet& rows = result.results.at(0).rows.value();
    ASSERT_EQ(rows.rowCount(), 4U);
    EXPECT_EQ(rows.column(1).valueAt(0), Value(std::string("-7")));
    EXPECT_EQ(rows.column(1).valueAt(1), Value(std::string("سلام")));
    EXPECT_EQ(rows.column(1).valueAt(2), Value(std::string("-123.45")));
    EXPECT_TRUE(rows.column(1).isNull(3));
}

TEST_F(FreeTds, aVariantBehindALongValueIsReadOnceToo) {
    server_.answer(TdsReply()
                       .columns({tds::column("L", TdsType::NvarcharMax), tds::column("V", TdsType::Variant)})
                       .row({std::string("long"), std::int64_t{-7}})
                       .row({std::string("long"), std::string("سلام")})
                       .done(2));
    const BatchResult result = session().run("...");
    const RowSet& rows = result.results.at(0).rows.value();
    ASSERT_EQ(rows.rowCount(), 2U);
    EXPECT_EQ(rows.column(1).valueAt(0), Value(std::string("-7")));
    EXPECT_EQ(rows.column(1).valueAt(1), Value(std::string("سلام")));
}

TEST_F(FreeTds, longValuesAreReadWhole) {
    std::string text;
    for (int i = 0; i < 50000; ++i)
        text += "قیمت𐎠";
    Bytes bytes(200000);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 7);
    server_.answer(TdsReply()
                       .columns({tds::integer("A"), tds::column("Long", TdsType::NvarcharMax), tds::nvarchar("N", 20),
                                 tds::column("Image", TdsType::VarbinaryMax), tds::decimal("D", 18, 2)})
                       .row({std::int64_t{1}, text, std::string("پس"), bytes, *Decimal::parse("1.25")})
                       .row({std::int64_t{2}, std::string(), std::string(), Bytes{}, Null{}})
                       .row({std::int64_t{3}, Null{}, Null{}, Null{}, *Decimal::parse("-0.05")})
                       .done(3));
    const BatchResult result = session().run("...");
    const RowSet& rows = result.results.at(0).rows.value();
    ASSERT_EQ(rows.rowCount(), 3U);
    EXPECT_TRUE(rows.column(1).textAt(0) == text);
    EXPECT_EQ(rows.column(2).textAt(0), "پس");
    EXPECT_TRUE(rows.column(3).valueAt(0) == Value(bytes));
    EXPECT_EQ(toText(rows.column(4).valueAt(0)), "1.25");
    EXPECT_EQ(rows.column(1).valueAt(1), Value(std::string()));
    EXPECT_EQ(rows.column(2).valueAt(1), Value(std::string()));
    EXPECT_EQ(rows.column(3).valueAt(1), Value(Bytes{}));
    EXPECT_TRUE(rows.column(1).isNull(2));
    EXPECT_TRUE(rows.column(3).isNull(2));
    EXPECT_EQ(toText(rows.column(4).valueAt(2)), "-0.05");
}

// FreeTDS loses what follows a result without rows when it is asked for one.
TEST_F(FreeTds, whatFollowsAnEmptyResultIsNotLost) {
    const TdsReply empty = TdsReply().columns({tds::integer("A")}).done(0, true);
    server_.answer(TdsReply(empty).done(2));
    EXPECT_EQ(affectedRows(session().run("select; update")), 2);
    server_.answer(TdsReply(empty).info(0, "پایان").done());
    EXPECT_THAT(session().run("select; print").messages, ElementsAre("پایان"));
    server_.answer(TdsReply(empty).error(50000, 16, "late").doneWithError());
    EXPECT_EQ(errorOf([&] { session().run("select; raiserror"); }).nativeCode(), 50000);
    server_.answer(TdsReply().columns({tds::column("L", TdsType::NvarcharMax)}).done(0, true).done(3));
    EXPECT_EQ(affectedRows(session().run("select long; update")), 3);
}

TEST_F(FreeTds, anErrorBringsWhatTheOtherStatementsBrought) {
    server_.answer(TdsReply()
                       .columns({tds::integer("A")})
                       .row({std::int64_t{5}})
                       .done(1, true)
                       .info(0, "پایان")
                       .done(3, true)
                       .error(2627, 14, "late")
                       .doneWithError());
    const DatabaseError error = errorOf([&] { session().run("select; print; update; insert"); });
    EXPECT_EQ(error.nativeCode(), 2627);
    ASSERT_NE(error.results(), nullptr);
    ASSERT_GE(error.results()->results.size(), 2U);
    EXPECT_EQ(error.results()->results[0].rows.value().column(0).intAt(0), 5);
    EXPECT_EQ(error.results()->results[1].affectedRows, 3);
    EXPECT_THAT(error.results()->messages, ElementsAre("پایان"));
}

// With counting off the end of a result bears no count.
TEST_F(FreeTds, anErrorAfterAnUncountedEmptyResultIsNotLost) {
    server_.answer(TdsReply().columns({tds::integer("A")}).done(-1, true).error(50000, 16, "late").doneWithError());
    EXPECT_EQ(errorOf([&] { session().run("set nocount on; select; raiserror"); }).nativeCode(), 50000);
    server_.answer(TdsReply().done(1));
    EXPECT_EQ(affectedRows(session().run("next")), 1);
}

// As a procedure answers that counts nothing and returns several results.
TEST_F(FreeTds, theResultsOfAProcedureThatCountsNothing) {
    server_.answer(TdsReply()
                       .columns({tds::integer("A")})
                       .doneInProcedure()
                       .columns({tds::integer("B")})
                       .row({std::int64_t{5}})
                       .doneInProcedure()
                       .columns({tds::integer("C")})
                       .doneInProcedure()
                       .returnStatus(0)
                       .doneProcedure());
    const BatchResult result = session().run("exec p 1");
    ASSERT_EQ(result.results.size(), 3U);
    EXPECT_EQ(result.results[0].rows.value().rowCount(), 0U);
    EXPECT_EQ(result.results[1].rows.value().column(0).intAt(0), 5);
    EXPECT_EQ(result.results[2].rows.value().column(0).info().name, "C");
    server_.answer(TdsReply().done(1));
    EXPECT_EQ(affectedRows(session().run("next")), 1);
}

TEST_F(FreeTds, anErrorOfAProcedureAfterAnEmptyResultIsNotLost) {
    for (const std::int64_t count : {-1, 0}) {
        server_.answer(TdsReply()
                           .columns({tds::integer("A")})
                           .doneInProcedure(count)
                           .error(50000, 16, "late")
                           .doneInProcedure()
                           .returnStatus(-6)
                           .doneProcedure(true));
        EXPECT_EQ(errorOf([&] { session().run("exec p 1"); }).nativeCode(), 50000) << count;
    }
    server_.answer(TdsReply().done(1));
    EXPECT_EQ(affectedRows(session().run("next")), 1);
}

class RowCounts : public FreeTds, public testing::WithParamInterface<int> {};

TEST_P(RowCounts, everyRowIsReadAndWhatFollowsToo) {
    TdsReply reply;
    reply.columns({tds::integer("A"), tds::nvarchar("N", 50)});
    for (std::int64_t i = 0; i < GetParam(); ++i)
        reply.row({i, "نام " + std::to_string(i)});
    server_.answer(reply.done(GetParam(), true).done(7));
    const BatchResult result = session().run("...");
    const RowSet& rows = result.results.at(0).rows.value();
    ASSERT_EQ(rows.rowCount(), static_cast<std::size_t>(GetParam()));
    for (std::size_t i = 0; i < rows.rowCount(); ++i) {
        ASSERT_EQ(rows.column(0).intAt(i), static_cast<std::int64_t>(i));
        ASSERT_EQ(rows.column(1).textAt(i), "نام " + std::to_string(i));
    }
    EXPECT_EQ(affectedRows(result), 7);
}

// Around the rows of one fetch.
INSTANTIATE_TEST_SUITE_P(Blocks, RowCounts, testing::Values(0, 1, 511, 512, 513, 1024, 5000));

TEST_F(FreeTds, errorsOneAfterTheOtherAreOneFailure) {
    server_.answer(TdsReply()
                       .error(207, 16, "Invalid column name 'A'.")
                       .error(207, 16, "Invalid column name 'B'.")
                       .doneWithError());
    EXPECT_STREQ(errorOf([&] { session().run("select A, B from T"); }).what(), "Invalid column name 'A'.");
    server_.answer(TdsReply().done(1));
    EXPECT_EQ(affectedRows(session().run("next")), 1);
}

}  // namespace
}  // namespace basalt::odbc
