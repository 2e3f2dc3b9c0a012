#include "cli/statement_end.h"

#include <gtest/gtest.h>

#include <vector>

namespace basalt::cli {
namespace {

struct EndRow {
    const char* name;
    std::vector<std::string> lines;
    bool reached;
    std::string oneLine;
};

class StatementEnds : public ::testing::TestWithParam<EndRow> {};

TEST_P(StatementEnds, areFound) {
    StatementEnd end;
    for (const std::string& line : GetParam().lines)
        end.read(line);
    EXPECT_EQ(end.reached(), GetParam().reached);
    EXPECT_EQ(end.oneLine(), GetParam().oneLine);
}

INSTANTIATE_TEST_SUITE_P(
    Table, StatementEnds,
    ::testing::Values(
        EndRow{"nothing", {""}, false, ""}, EndRow{"open", {"select 1"}, false, "select 1"},
        EndRow{"semicolon", {"select 1 ;  "}, true, "select 1 ;"},
        EndRow{"twoLines", {"select 1", "from T;"}, true, "select 1 from T;"},
        EndRow{"semicolonInside", {"select 1; select 2"}, false, "select 1; select 2"},
        EndRow{"inText", {"select 'a;"}, false, "select 'a;"},
        EndRow{"afterText", {"select 'a;", "b';"}, true, "select 'a; b';"},
        EndRow{"inName", {"select [a;"}, false, "select [a;"},
        EndRow{"inComment", {"select 1 -- a;"}, false, "select 1"},
        EndRow{"beforeComment", {"select 1; -- a"}, true, "select 1;"},
        EndRow{"commentLine", {"select 1 -- a", ", 2;"}, true, "select 1 , 2;"},
        EndRow{"blockComment", {"select /* ;", "*/ 1;"}, true, "select /* ; */ 1;"},
        EndRow{"lineCommentBehindBlockComment", {"select /* a */-- b", "1;"}, true, "select /* a */ 1;"},
        EndRow{"block", {"if 1 = 1 begin", "print 1;"}, false, "if 1 = 1 begin print 1;"},
        EndRow{"endOfBlock", {"if 1 = 1 begin", "print 1;", "end;"}, true, "if 1 = 1 begin print 1; end;"},
        EndRow{"cases", {"select case a when 1 then 2 end;"}, true, "select case a when 1 then 2 end;"},
        EndRow{"transaction", {"begin tran;"}, true, "begin tran;"},
        EndRow{"tryBlock", {"begin try select 1;"}, false, "begin try select 1;"},
        EndRow{"procedure", {"create procedure p as", "select 1;"}, false, "create procedure p as select 1;"},
        EndRow{"alterFunction",
               {"ALTER FUNCTION f() returns int as begin return 1 end;"},
               false,
               "ALTER FUNCTION f() returns int as begin return 1 end;"},
        EndRow{"createOrAlter", {"create or alter proc p as select 1;"}, false, "create or alter proc p as select 1;"},
        EndRow{"view", {"create view v as select 1 as a;"}, true, "create view v as select 1 as a;"}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace basalt::cli
