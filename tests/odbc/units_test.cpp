// What needs no driver: connection strings, categories of errors, types of the catalog.
#include <gmock/gmock.h>

#include "engines/odbc/column_types.h"
#include "engines/odbc/connection_string.h"
#include "engines/odbc/diagnostics.h"
#include "engines/odbc/driver_traits.h"
#include "engines/odbc/odbc_session.h"
#include "engines/odbc/timestamps.h"
#include "engines/odbc/transaction_words.h"
#include "engines/odbc/utf16.h"

namespace basalt::odbc {
namespace {

struct StringCase {
    const char* name;
    const char* text;
    const char* publicParts;
    const char* message;  // that holds the secrets
    const char* told;
};

void PrintTo(const StringCase& each, std::ostream* out) {
    *out << each.name;
}

class ConnectionStrings : public testing::TestWithParam<StringCase> {};

TEST_P(ConnectionStrings, tellsWhereButNoSecret) {
    const ConnectionString text(GetParam().text);
    EXPECT_EQ(text.text(), GetParam().text);
    EXPECT_EQ(text.publicParts(), GetParam().publicParts);
    EXPECT_EQ(text.withoutSecrets(GetParam().message), GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, ConnectionStrings,
    testing::Values(
        StringCase{"plain", "Driver=FreeTDS;Server=shop;Database=Basalt;UID=sa;PWD=secret",
                   "Server=shop;Database=Basalt", "PWD=secret is wrong", "PWD=*** is wrong"},
        StringCase{"otherCase", "SERVER=shop;pWd=Secret", "SERVER=shop", "Secret secret", "*** secret"},
        StringCase{"password", "Server=shop;Password=a b c;Encrypt=yes", "Server=shop", "a b c", "***"},
        StringCase{"braces", "PWD={a;Server=x}};};Server=shop", "Server=shop", "{a;Server=x}};} and a;Server=x};",
                   "*** and ***"},
        StringCase{"blanks", " Server = shop ; PWD = {secret} ;", "Server=shop", "secret", "***"},
        StringCase{"openBrace", "Server=shop;PWD={secret", "Server=shop", "{secret or secret", "*** or ***"},
        StringCase{"tokens", "DSN=shop;AccessToken=abc;KeystoreSecret=def", "DSN=shop", "abc def", "*** ***"},
        StringCase{"emptyParts", ";;Server=shop;;PWD=;UID=sa;", "Server=shop", "sa", "sa"},
        StringCase{"oneLetter", "Server=shop;PWD={x}", "Server=shop", "x does not exist: PWD={x};'x' xx",
                   "*** does not exist: PWD=***;'***' xx"},
        StringCase{"shortInOtherScript", "Server=shop;PWD=ان", "Server=shop", "کاربران: ان", "کاربران: ***"},
        StringCase{"longInsideOfAWord", "Server=shop;PWD=exists", "Server=shop", "preexists", "pre***"},
        StringCase{"twice", "PWD=one;Server=shop;PWD=two", "Server=shop", "one two one", "*** *** ***"},
        StringCase{"nothing", "", "", "text", "text"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(ConnectionStrings, theWholeTextHidesEveryPassword) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"Driver=FreeTDS;Server=shop;UID=sa;PWD=top-secret;", "Driver=FreeTDS;Server=shop;UID=sa;PWD=***;"},
        {"Server=shop;pwd = {a;b}};c} ;UID=sa", "Server=shop;pwd = *** ;UID=sa"},
        {"PASSWORD={open;Server=shop", "PASSWORD=***"},
        {"Provider=SQLOLEDB;Password=\"a;b\";Data Source=shop", "Provider=SQLOLEDB;Password=***;Data Source=shop"},
        {"Password='a;b' ;Data Source=shop", "Password=*** ;Data Source=shop"},
        {"Password=\"a;PWD=b\";PWD=c", "Password=***;PWD=***"},
        {"PWD=\"a;Server=shop", "PWD=***;Server=shop"},
        {"PWD=;UID=sa", "PWD=;UID=sa"},
        {"PWD=one;;Trusted_Connection=no;AccessToken=two", "PWD=***;;Trusted_Connection=no;AccessToken=***"},
        {"PWD=رمز;Server=فروشگاه", "PWD=***;Server=فروشگاه"},
        {"Server=shop", "Server=shop"},
        {"", ""},
    };
    for (const auto& [text, masked] : cases)
        EXPECT_EQ(ConnectionString(text).masked(), masked);
}

TEST(ConnectionStrings, aDriverThatIsNotThereIsAConnectionErrorWithoutThePassword) {
    try {
        static_cast<void>(OdbcSession::open("Driver=/nowhere/driver.so;Server=shop;PWD={nowhere}"));
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Connection);
        EXPECT_STREQ(error.what(), "cannot connect to Server=shop: Can't open lib '/***/driver.so' : file not found");
    }
}

TEST(Diagnostics, theServersNumberDecidesWhereItSaysMore) {
    const std::vector<std::tuple<const char*, int, ErrorCategory>> cases = {
        {"42000", 102, ErrorCategory::Syntax},
        {"42000", 156, ErrorCategory::Syntax},
        {"42S02", 208, ErrorCategory::NotFound},
        {"42S22", 207, ErrorCategory::NotFound},
        {"42000", 2812, ErrorCategory::NotFound},
        {"23000", 515, ErrorCategory::Constraint},
        {"23000", 547, ErrorCategory::Constraint},
        {"23000", 2601, ErrorCategory::Constraint},
        {"23000", 2627, ErrorCategory::Constraint},
        {"22007", 241, ErrorCategory::Conversion},
        {"22018", 245, ErrorCategory::Conversion},
        {"42000", 8114, ErrorCategory::Conversion},
        {"22003", 8115, ErrorCategory::Conversion},
        {"22012", 8134, ErrorCategory::Conversion},
        {"22001", 8152, ErrorCategory::Truncation},
        {"42000", 2628, ErrorCategory::Truncation},
        {"40001", 1205, ErrorCategory::Busy},
        {"HYT00", 1222, ErrorCategory::Busy},
        {"42000", 1222, ErrorCategory::Busy},
        {"HYT00", 0, ErrorCategory::Busy},
        {"HYT01", 0, ErrorCategory::Connection},
        {"08S01", 0, ErrorCategory::Connection},
        {"08001", 20009, ErrorCategory::Connection},
        {"28000", 18456, ErrorCategory::Connection},
        {"IM002", 0, ErrorCategory::Connection},
        {"42000", 50000, ErrorCategory::Other},
        {"42000", 229, ErrorCategory::Syntax},
        {"HY000", 0, ErrorCategory::Other},
        {"42000", 9002, ErrorCategory::DiskFull},
        {"HY000", 824, ErrorCategory::Corrupt},
        {"", 0, ErrorCategory::Other},
    };
    for (const auto& [state, number, category] : cases)
        EXPECT_EQ(categoryOf(state, number), category) << state << " " << number;
}

TEST(Diagnostics, theErrorIsTheFirstRecordThatIsOne) {
    const std::vector<Diagnostic> records = {
        {"01000", 0, "a warning"}, {"23000", 2627, "the error"}, {"42000", 1750, "a consequence"}};
    const DatabaseError error = errorOf(records, "insert");
    EXPECT_STREQ(error.what(), "the error");
    EXPECT_EQ(error.statement(), "insert");
    EXPECT_STREQ(errorOf({}, "").what(), "the driver failed and does not say why");
}

TEST(Diagnostics, labelsOfTheSourceAreNotPartOfTheMessage) {
    EXPECT_EQ(withoutSource("[FreeTDS][SQL Server]Invalid object name 'T'."), "Invalid object name 'T'.");
    EXPECT_EQ(withoutSource("[Microsoft][ODBC Driver 18 for SQL Server][SQL Server][dbo].[T] is gone"),
              "[dbo].[T] is gone");
    EXPECT_EQ(withoutSource("[unixODBC][Driver Manager]Can't open lib"), "Can't open lib");
    EXPECT_EQ(withoutSource("[T] is gone"), "[T] is gone");
    EXPECT_EQ(withoutSource("["), "[");
    EXPECT_EQ(withoutSource(""), "");
}

TEST(ColumnTypes, theCatalogsTypesAndTheirDeclarations) {
    struct Case {
        CatalogType type;
        FieldType field;
        int size;
        const char* declared;
    };
    const std::vector<Case> cases = {
        {{"int", 4, 10, 0}, FieldType::Integer, 0, "int"},
        {{"tinyint", 1, 3, 0}, FieldType::TinyInt, 0, "tinyint"},
        {{"decimal", 13, 23, 9}, FieldType::Decimal, 0, "decimal(23, 9)"},
        {{"money", 8, 19, 4}, FieldType::Decimal, 0, "money"},
        {{"nvarchar", 100, 0, 0}, FieldType::Text, 50, "nvarchar(50)"},
        {{"nvarchar", -1, 0, 0}, FieldType::Text, 0, "nvarchar(max)"},
        {{"varchar", 50, 0, 0}, FieldType::Text, 50, "varchar(50)"},
        {{"nchar", 20, 0, 0}, FieldType::Text, 10, "nchar(10)"},
        {{"varbinary", -1, 0, 0}, FieldType::Binary, 0, "varbinary(max)"},
        {{"uniqueidentifier", 16, 0, 0}, FieldType::Text, 0, "uniqueidentifier"},
        {{"datetime2", 8, 27, 7}, FieldType::DateTime, 0, "datetime2"},
        {{"date", 3, 10, 0}, FieldType::Date, 0, "date"},
        {{"bit", 1, 1, 0}, FieldType::Boolean, 0, "bit"},
        {{"real", 4, 24, 0}, FieldType::Float, 0, "real"},
    };
    for (const Case& each : cases) {
        ColumnInfo column;
        describeFromCatalog(column, each.type);
        EXPECT_EQ(column.type, each.field) << each.declared;
        EXPECT_EQ(column.size, each.size) << each.declared;
        EXPECT_EQ(declaredType(column), each.declared);
    }
}

TEST(Timestamps, isoTextKeepsTheFractionThatIsThere) {
    EXPECT_EQ(isoText(*parseDateTime("2024-03-20")), "2024-03-20T00:00:00.000");
    EXPECT_EQ(isoText(*parseDateTime("2024-03-20 10:15:00.997")), "2024-03-20T10:15:00.997");
    EXPECT_EQ(isoText(*parseDateTime("0001-01-01 23:59:59.0000001")), "0001-01-01T23:59:59.0000001");
}

TEST(Timestamps, aDatetimeIsRoundedToMilliseconds) {
    SQL_TIMESTAMP_STRUCT stamp{};
    stamp.year = 2024;
    stamp.month = 3;
    stamp.day = 20;
    stamp.hour = 23;
    stamp.minute = 59;
    stamp.second = 59;
    stamp.fraction = 996'666'600;
    EXPECT_EQ(fromTimestamp(stamp, true), *parseDateTime("2024-03-20 23:59:59.997"));
    EXPECT_EQ(fromTimestamp(stamp, false), *parseDateTime("2024-03-20 23:59:59.9966666"));
    stamp.fraction = 3'333'333;
    EXPECT_EQ(fromTimestamp(stamp, true), *parseDateTime("2024-03-20 23:59:59.003"));
}

// Each such batch costs a question when somebody wants to know; one that is missed costs the truth.
TEST(TransactionWords, areThoseThatBeginEndOrCall) {
    for (const char* text : {"commit",
                             "COMMIT TRAN",
                             "begin transaction",
                             "save tran A",
                             "update T set A = 1 rollback",
                             "exec P",
                             "select 1;EXECUTE P",
                             "insert into T exec('select 1')",
                             "P",
                             "dbo.P 1",
                             "[P]",
                             "\"P\"",
                             "سند_بستن 5",
                             "{call P(1)}",
                             "{? = call P}",
                             "; -- note\n/* note */ P",
                             "set transaction isolation level snapshot begin transaction",
                             "/* /* nested */ */ P",
                             "create procedure P as commit",
                             "select N'commit'"}) {
        EXPECT_TRUE(mayChangeTransaction(text)) << text;
    }
    for (const char* text :
         {"", " ;\n", "-- exe", "/* open", "select 1", "SELECT[A] from T", "(select 1)", "update T set Committed = 1",
          "select @commit, #tran, rollback_, execs", "declare @a int set @a = 1", "if 1 = 1 select 1",
          "begin select 1 end", "with C as (select 1 as A) select A from C", "truncate table T", "drop table #t",
          "print N'سند'", "set nocount on", "set transaction isolation level snapshot",
          "/* note */ select 1 -- note"}) {
        EXPECT_FALSE(mayChangeTransaction(text)) << text;
    }
}

TEST(TransactionWords, aTextThatDoesNothingButEndATransaction) {
    for (const char* text :
         {"rollback", "ROLLBACK TRAN", "Rollback Transaction;", " rollback work ; ", "-- back\nrollback",
          "if @@TRANCOUNT > 0 ROLLBACK", "IF @@TRANCOUNT>0 ROLLBACK TRANSACTION"})
        EXPECT_EQ(transactionEnd(text), TransactionEnd::Rollback) << text;
    for (const char* text :
         {"commit", "COMMIT TRAN", "commit transaction;", "Commit Work", "if @@trancount > 0 commit"})
        EXPECT_EQ(transactionEnd(text), TransactionEnd::Commit) << text;
    for (const char* text : {"", "rollback tran A", "rollback select 1", "select 1 rollback", "rollback; select 1",
                             "begin tran", "if @@trancount > 1 rollback", "if @@trancount = 0 rollback", "rollback 'a'",
                             "commit commit", "if @@trancount > 0 select 1"})
        EXPECT_EQ(transactionEnd(text), TransactionEnd::None) << text;
}

TEST(TransactionWords, thatBeginOneStandOutsideOfTexts) {
    for (const char* text : {"begin tran", "SELECT 1 BEGIN TRANSACTION", "exec('begin tran')",
                             "EXEC sp_executesql N'BEGIN TRAN'", "select 'it''s' begin tran"})
        EXPECT_TRUE(mayBeginTransaction(text)) << text;
    for (const char* text :
         {"SELECT Name FROM CostLevel WHERE Name LIKE N'%tran%'", "SELECT 'it''s a tran' AS [tran]",
          "SELECT 1 -- begin tran", "SELECT /* tran */ 1 AS \"tran\"", "UPDATE T SET A = N'begin tran"})
        EXPECT_FALSE(mayBeginTransaction(text)) << text;
}

TEST(TransactionWords, implicitTransactionsAreASettingOfTheirOwn) {
    EXPECT_TRUE(mayChangeImplicitTransactions("set nocount on set IMPLICIT_TRANSACTIONS on"));
    EXPECT_TRUE(mayChangeImplicitTransactions("set ansi_defaults on"));
    EXPECT_FALSE(mayChangeImplicitTransactions("set ansi_nulls on begin tran"));
}

TEST(Utf16, roundTripAndDamage) {
    EXPECT_EQ(toUtf8(toUtf16("سلام 𐎠 abc")), "سلام 𐎠 abc");
    EXPECT_EQ(toUtf16(""), u"");
    const std::u16string lone = {u'a', char16_t{0xD800}, u'b'};
    EXPECT_EQ(toUtf8(lone),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_THROW(static_cast<void>(toUtf16("\xFF")), DatabaseError);
}

}  // namespace
}  // namespace basalt::odbc
