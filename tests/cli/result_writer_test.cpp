#include "cli/result_writer.h"

#include <gtest/gtest.h>

#include <sstream>

namespace basalt::cli {
namespace {

BatchResult sample() {
    RowSet rows({{.name = "Code", .type = FieldType::Integer},
                 {.name = "Name", .type = FieldType::Text},
                 {.name = "", .type = FieldType::Decimal, .precision = 10, .scale = 2}});
    rows.column(0).appendInt(1);
    rows.column(1).appendText("عمده\u200Cفروشی");  // the non-joiner takes no column
    rows.column(2).appendDecimal(1250);
    rows.finishRow();
    rows.column(0).appendInt(200);
    rows.column(1).appendText("a, \"b\"\nc");
    rows.column(2).appendNull();
    rows.finishRow();
    BatchResult batch;
    batch.results.push_back({.rows = std::move(rows), .affectedRows = -1});
    batch.results.push_back({.rows = std::nullopt, .affectedRows = 3});
    batch.messages = {"made"};
    return batch;
}

std::string written(ResultFormat format, bool terminal = false) {
    std::ostringstream out;
    ResultWriter(out, format, terminal).write(sample());
    return out.str();
}

TEST(ResultWriter, tableIsAlignedByDisplayColumns) {
    EXPECT_EQ(written(ResultFormat::Table),
              "made\n"
              "Code | Name      | COLUMN3\n"
              "-----+-----------+--------\n"
              "   1 | عمده\u200Cفروشی |   12.50\n"
              " 200 | a, \"b\" c  |    NULL\n"
              "(2 rows)\n"
              "(3 rows affected)\n");
}

TEST(ResultWriter, terminalKeepsRightToLeftCellsApart) {
    EXPECT_NE(written(ResultFormat::Table, true).find("عمده\u200Cفروشی\u200E |"), std::string::npos);
}

TEST(ResultWriter, csvQuotesWhatNeedsIt) {
    EXPECT_EQ(written(ResultFormat::Csv),
              "Code,Name,COLUMN3\r\n1,عمده\u200Cفروشی,12.50\r\n200,\"a, \"\"b\"\"\nc\",\r\n");
}

TEST(ResultWriter, jsonIsOneLineAResult) {
    EXPECT_EQ(written(ResultFormat::Json),
              "[{\"Code\":1,\"Name\":\"عمده\u200Cفروشی\",\"COLUMN3\":12.5},"
              "{\"Code\":200,\"Name\":\"a, \\\"b\\\"\\nc\",\"COLUMN3\":null}]\n{\"affectedRows\":3}\n");
}

}  // namespace
}  // namespace basalt::cli
