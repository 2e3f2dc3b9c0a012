#include "cli/report_writer.h"

#include <gtest/gtest.h>

#include <sstream>

namespace basalt::cli {
namespace {

std::string written(const host::CallReport& report) {
    std::ostringstream out;
    writeReport(out, report, false);
    return out.str();
}

TEST(ReportWriter, tellsAllThatACallDid) {
    host::CallReport report;
    report.function = "Sell";
    report.result = Datum(Decimal(125, 1));
    report.out = {{"Done", true},
                  {"Rest", Datum()},
                  {"Lines", Datum::list({Datum::record({{"Code", 1}, {"Name", "یک"}}),
                                         Datum::record({{"Code", 12}, {"Name", Datum()}})})}};
    report.statements.push_back({.component = "Q",
                                 .action = "exec",
                                 .text = "update T set A = ?",
                                 .procedure = {},
                                 .parameters = {{"@P1", std::int64_t{5}, false}, {"@P2", Null(), false}}});
    report.statements.push_back(
        {.component = "SP", .action = "call", .text = {}, .procedure = "Count_sp", .parameters = {}});
    report.queries.push_back({.name = "Q", .text = "select 1", .active = true, .rows = {}});
    report.messages.push_back({{.operation = "ShowSmartMessage", .number = 30055, .arguments = {"a", "b"}}, 6});
    report.events.push_back({114, 2, "3"});
    report.programs.push_back({.verb = "open", .file = "scale.exe", .parameters = "-a", .directory = {}, .show = 1});
    EXPECT_EQ(written(report),
              "Sell: 12.5\n"
              "  Done: yes\n"
              "  Rest: (nothing)\n"
              "  Lines:\n"
              "    Code | Name\n"
              "    -----+-----\n"
              "       1 | یک\n"
              "      12 | NULL\n"
              "sent\n"
              "  Q exec: update T set A = ?\n"
              "    @P1 = 5\n"
              "    @P2 = NULL\n"
              "  SP call: Count_sp\n"
              "queries\n"
              "  Q: 0 rows\n"
              "messages\n"
              "  ShowSmartMessage 30055 (a | b): yes\n"
              "user log\n"
              "  part 114, permission 2: 3\n"
              "started\n"
              "  open scale.exe -a\n");
}

TEST(ReportWriter, whatDidNothingIsOneLine) {
    host::CallReport report;
    report.function = "Check";
    report.result = Datum(false);
    EXPECT_EQ(written(report), "Check: no\n");
}

}  // namespace
}  // namespace basalt::cli
