#include "cli/statement_end.h"

#include <gtest/gtest.h>

#include <vector>

namespace basalt::cli {
namespace {

struct EndRow {
    const char* name;
    std::vector<std::string> lines;
    bool reached;
};

class StatementEnds : public ::testing::TestWithParam<EndRow> {};

TEST_P(StatementEnds, areFound) {
    StatementEnd end;
    for (const std::string& line : GetParam().lines)
        end.read(line);
    EXPECT_EQ(end.reached(), GetParam().reached);
}

INSTANTIATE_TEST_SUITE_P(
    Table, StatementEnds,
    ::testing::Values(EndRow{"nothing", {""}, false}, EndRow{"open", {"select 1"}, false},
                      EndRow{"semicolon", {"select 1 ;  "}, true}, EndRow{"twoLines", {"select 1", "from T;"}, true},
                      EndRow{"semicolonInside", {"select 1; select 2"}, false}, EndRow{"inText", {"select 'a;"}, false},
                      EndRow{"afterText", {"select 'a;", "b';"}, true}, EndRow{"inName", {"select [a;"}, false},
                      EndRow{"inComment", {"select 1 -- a;"}, false}, EndRow{"beforeComment", {"select 1; -- a"}, true},
                      EndRow{"commentLine", {"select 1 -- a", ", 2;"}, true},
                      EndRow{"blockComment", {"select /* ;", "*/ 1;"}, true},
                      EndRow{"lineCommentBehindBlockComment", {"select /* a */-- b", "1;"}, true},
                      EndRow{"block", {"if 1 = 1 begin", "print 1;"}, false},
                      EndRow{"endOfBlock", {"if 1 = 1 begin", "print 1;", "end;"}, true},
                      EndRow{"cases", {"select case a when 1 then 2 end;"}, true},
                      EndRow{"transaction", {"begin tran;"}, true}, EndRow{"tryBlock", {"begin try select 1;"}, false},
                      EndRow{"procedure", {"create procedure p as", "select 1;"}, false},
                      EndRow{"alterFunction", {"ALTER FUNCTION f() returns int as begin return 1 end;"}, false},
                      EndRow{"createOrAlter", {"create or alter proc p as select 1;"}, false},
                      EndRow{"view", {"create view v as select 1 as a;"}, true}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace basalt::cli
