// What is refused, with which number and words, and where the mark stands.
#include <gtest/gtest.h>

#include <string>

#include "engines/embedded/parser/parser.h"

namespace basalt::embedded {
namespace {

struct ErrorCase {
    const char* name;
    const char* sql;
    int number;
    const char* message;  // the first line
    const char* place;    // the second line
};

void PrintTo(const ErrorCase& c, std::ostream* os) {
    *os << c.name;
}

class SyntaxError : public testing::TestWithParam<ErrorCase> {};

TEST_P(SyntaxError, IsReportedAsTheServerDoes) {
    const ErrorCase& c = GetParam();
    try {
        static_cast<void>(parse(c.sql));
        FAIL() << "accepted: " << c.sql;
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Syntax);
        EXPECT_EQ(error.nativeCode(), c.number);
        EXPECT_EQ(error.statement(), c.sql);
        const std::string what = error.what();
        const std::size_t first = what.find('\n');
        EXPECT_EQ(what.substr(0, first), c.message);
        EXPECT_EQ(what.substr(first + 1, what.find('\n', first + 1) - first - 1), c.place);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Parser, SyntaxError,
    testing::Values(
        ErrorCase{"WordAfterStatement", "select * form t", 102, "Incorrect syntax near 'form'.", "Line 1, column 10:"},
        ErrorCase{"Keyword", "select * from where x = 1", 156, "Incorrect syntax near the keyword 'where'.",
                  "Line 1, column 15:"},
        ErrorCase{"SecondLine", "select *\nfrom t\nwhere = 1", 102, "Incorrect syntax near '='.", "Line 3, column 7:"},
        ErrorCase{"EndOfText", "select * from", 102, "Incorrect syntax near 'from'.", "Line 1, column 14:"},
        ErrorCase{"EndAfterOperator", "select 1 +", 102, "Incorrect syntax near '+'.", "Line 1, column 11:"},
        ErrorCase{"Unclosed parenthesis", "select (1", 102, "Incorrect syntax near '1'.", "Line 1, column 10:"},
        ErrorCase{"Extra parenthesis", "select 1)", 102, "Incorrect syntax near ')'.", "Line 1, column 9:"},
        ErrorCase{"EmptyIn", "select 1 where 1 in ()", 102, "Incorrect syntax near ')'.", "Line 1, column 22:"},
        ErrorCase{"UnclosedText", "select 'abc", 105, "Unclosed quotation mark after the character string 'abc'.",
                  "Line 1, column 8:"},
        ErrorCase{"UnclosedNationalText", "select N'عمده", 105,
                  "Unclosed quotation mark after the character string 'عمده'.", "Line 1, column 8:"},
        ErrorCase{"UnclosedBracket", "select [abc", 105, "Unclosed quotation mark after the character string 'abc'.",
                  "Line 1, column 8:"},
        ErrorCase{"UnclosedComment", "select 1 /* x /* */", 113, "Missing end comment mark '*/'.",
                  "Line 1, column 10:"},
        ErrorCase{"LargeNumber", "select 123456789012345678901234567890123456789", 1007,
                  "The number '123456789012345678901234567890123456789' is out of the range for numeric representation "
                  "(maximum precision 38).",
                  "Line 1, column 8:"},
        ErrorCase{"LargeFloat", "select 1e400", 168,
                  "The floating point value '1e400' is out of the range of computer representation (8 bytes).",
                  "Line 1, column 8:"},
        ErrorCase{"UnknownCharacter", "select 1 \\ 2", 102, "Incorrect syntax near '\\'.", "Line 1, column 10:"},
        ErrorCase{"ValueAsCondition", "select 1 where a", 4145,
                  "An expression of non-boolean type specified in a context where a condition is expected, near 'a'.",
                  "Line 1, column 16:"},
        ErrorCase{"ValueInAnd", "select 1 where a and b = 1", 4145,
                  "An expression of non-boolean type specified in a context where a condition is expected, near 'and'.",
                  "Line 1, column 18:"},
        ErrorCase{
            "ValueInIf", "if 1 print 2", 4145,
            "An expression of non-boolean type specified in a context where a condition is expected, near 'print'.",
            "Line 1, column 6:"},
        ErrorCase{"ConditionAsValue", "select (a = 1)", 102, "Incorrect syntax near '='.", "Line 1, column 11:"},
        ErrorCase{"ConditionAsOperand", "select 1 where (a = 1) + 1 = 2", 102, "Incorrect syntax near '+'.",
                  "Line 1, column 24:"},
        ErrorCase{"ComparisonChain", "select 1 where a = b = c", 102, "Incorrect syntax near '='.",
                  "Line 1, column 22:"},
        ErrorCase{"ReservedAlias", "select 1 as desc", 156, "Incorrect syntax near the keyword 'desc'.",
                  "Line 1, column 13:"},
        ErrorCase{"EmptyName", "select [] from t", 1038,
                  "An object or column name is missing or empty. Aliases defined as \"\" or [] are not allowed.",
                  "Line 1, column 8:"},
        ErrorCase{"EmptyTextAlias", "select 1 as ''", 1038,
                  "An object or column name is missing or empty. Aliases defined as \"\" or [] are not allowed.",
                  "Line 1, column 13:"},
        ErrorCase{"FiveParts", "select a.b.c.d.e", 102, "Incorrect syntax near '.'.", "Line 1, column 15:"},
        ErrorCase{"DerivedTableWithoutName", "select * from (select 1 a)", 102, "Incorrect syntax near ')'.",
                  "Line 1, column 27:"},
        ErrorCase{"JoinWithoutCondition", "select * from a join b where 1=1", 156,
                  "Incorrect syntax near the keyword 'where'.", "Line 1, column 24:"},
        ErrorCase{"EmptyBlock", "begin end", 156, "Incorrect syntax near the keyword 'end'.", "Line 1, column 7:"},
        ErrorCase{"EndAlone", "end", 156, "Incorrect syntax near the keyword 'end'.", "Line 1, column 1:"},
        ErrorCase{"ElseAlone", "else print 1", 156, "Incorrect syntax near the keyword 'else'.", "Line 1, column 1:"},
        ErrorCase{"TryWithoutCatch", "begin try print 1 end try", 102, "Incorrect syntax near 'try'.",
                  "Line 1, column 26:"},
        ErrorCase{"ExpressionAsArgument", "exec p 1 + 1", 102, "Incorrect syntax near '+'.", "Line 1, column 10:"},
        ErrorCase{"ProcedureNotFirst", "print 1 create procedure p as print 2", 111,
                  "'CREATE/ALTER PROCEDURE' must be the first statement in a query batch.", "Line 1, column 9:"},
        ErrorCase{"NameInTheMiddle", "print 1 p 2", 102, "Incorrect syntax near 'p'.", "Line 1, column 9:"},
        ErrorCase{"DropIndexWithoutTable", "drop index x", 159,
                  "Must specify the table name and index name for the DROP INDEX statement.", "Line 1, column 12:"},
        ErrorCase{"CaseWithoutWhen", "select case a end", 156, "Incorrect syntax near the keyword 'end'.",
                  "Line 1, column 15:"},
        ErrorCase{"TypeLengthTooLarge", "declare @a varchar(2147483648)", 102, "Incorrect syntax near '2147483648'.",
                  "Line 1, column 20:"},
        ErrorCase{"OrderedOperand", "(select 1 a order by 1) union select 2", 156,
                  "Incorrect syntax near the keyword 'order'.", "Line 1, column 13:"},
        ErrorCase{"Merge", "merge t using s on 1=1 when matched then delete;", 40517,
                  "Keyword or statement option 'MERGE' is not supported in this database.", "Line 1, column 1:"},
        ErrorCase{"Cursor", "declare c cursor for select 1", 40517,
                  "Keyword or statement option 'CURSOR' is not supported in this database.", "Line 1, column 9:"},
        ErrorCase{"CreateTrigger", "create trigger x on t for insert as print 1", 40517,
                  "Keyword or statement option 'CREATE trigger' is not supported in this database.",
                  "Line 1, column 8:"},
        ErrorCase{"Pivot", "select * from t pivot (sum(a) for b in ([1])) p", 40517,
                  "Keyword or statement option 'PIVOT' is not supported in this database.", "Line 1, column 17:"},
        ErrorCase{"Rollup", "select a from t group by rollup(a)", 40517,
                  "Keyword or statement option 'ROLLUP' is not supported in this database.", "Line 1, column 26:"},
        ErrorCase{"Backup", "backup database x to disk = 'y'", 40517,
                  "Keyword or statement option 'BACKUP' is not supported in this database.", "Line 1, column 1:"}),
    [](const testing::TestParamInfo<ErrorCase>& test) {
        std::string name = test.param.name;
        std::erase(name, ' ');
        return name;
    });

TEST(SyntaxErrorContext, ShowsTheLineAndTheMark) {
    try {
        static_cast<void>(parse("select Name\n from CostLevel\n where Name = 'عمده' adn Code = 3"));
        FAIL();
    } catch (const DatabaseError& error) {
        EXPECT_STREQ(error.what(),
                     "Incorrect syntax near 'adn'.\n"
                     "Line 3, column 22:\n"
                     " where Name = 'عمده' adn Code = 3\n"
                     "                     ^^^");
    }
}

}  // namespace
}  // namespace basalt::embedded
