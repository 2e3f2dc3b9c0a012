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

std::string written(ResultFormat format, std::size_t terminalColumns = 0) {
    std::ostringstream out, notes;
    ResultWriter(out, notes, format, terminalColumns).write(sample());
    EXPECT_EQ(notes.str(), format == ResultFormat::Table ? "" : "made\n");
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
    EXPECT_EQ(written(ResultFormat::Table, 40),
              "made\n"
              "Code | Name      | COLUMN3\n"
              "-----+-----------+--------\n"
              "   1 | عمده\u200Cفروشی\u200E |   12.50\n"
              " 200 | a, \"b\" c  |    NULL\n"
              "(2 rows)\n"
              "(3 rows affected)\n");
}

TEST(ResultWriter, whatIsWiderThanTheTerminalIsShownRowByRow) {
    EXPECT_EQ(written(ResultFormat::Table, 25),
              "made\n"
              "--- 1 ---\n"
              "Code   : 1\n"
              "Name   : عمده\u200Cفروشی\n"
              "COLUMN3: 12.50\n"
              "--- 2 ---\n"
              "Code   : 200\n"
              "Name   : a, \"b\" c\n"
              "COLUMN3: NULL\n"
              "(2 rows)\n"
              "(3 rows affected)\n");
    // Just wide enough.
    EXPECT_NE(written(ResultFormat::Table, 26).find("Code | Name"), std::string::npos);
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

// A result of one column and the given cells.
BatchResult column(ColumnInfo info, const std::vector<Value>& cells) {
    RowSet rows({std::move(info)});
    for (const Value& cell : cells) {
        rows.column(0).appendValue(cell);
        rows.finishRow();
    }
    BatchResult batch;
    batch.results.push_back({.rows = std::move(rows), .affectedRows = -1});
    return batch;
}

TEST(ResultWriter, csvTellsEmptyTextsFromNullAndResultsFromEachOther) {
    std::ostringstream out, notes;
    ResultWriter writer(out, notes, ResultFormat::Csv, 0);
    writer.write(column({.name = "A", .type = FieldType::Text}, {std::string(), Null()}));
    writer.write(column({.name = "B", .type = FieldType::Integer}, {std::int64_t{7}}));
    EXPECT_EQ(out.str(), "A\r\n\"\"\r\n\r\n\r\nB\r\n7\r\n");
}

TEST(ResultWriter, jsonKeepsFloatsWhole) {
    std::ostringstream out, notes;
    ResultWriter(out, notes, ResultFormat::Json, 0)
        .write(column({.name = "A", .type = FieldType::Float}, {1e-12, 1e300, 0.1, -2.0}));
    EXPECT_EQ(out.str(), "[{\"A\":1e-12},{\"A\":1e+300},{\"A\":0.1},{\"A\":-2}]\n");
}

// What a real holds is less than the double that carries it.
TEST(ResultWriter, realsShowTheDigitsThatTheyHold) {
    const auto shown = [](ResultFormat format, const char* typeName) {
        const auto real = [](float value) { return Value(static_cast<double>(value)); };
        std::ostringstream out, notes;
        ResultWriter(out, notes, format, 0)
            .write(column(
                {.name = "A", .type = FieldType::Float, .typeName = typeName},
                {real(1.1F), real(-0.3F), real(16777216.0F), real(1e-10F), real(3.4028235e38F), real(0), Null()}));
        return out.str();
    };
    EXPECT_EQ(shown(ResultFormat::Csv, "real"), "A\r\n1.1\r\n-0.3\r\n16777216\r\n1e-10\r\n3.4028235e+38\r\n0\r\n\r\n");
    EXPECT_EQ(
        shown(ResultFormat::Json, "real"),
        "[{\"A\":1.1},{\"A\":-0.3},{\"A\":16777216},{\"A\":1e-10},{\"A\":3.4028235e+38},{\"A\":0},{\"A\":null}]\n");
    EXPECT_NE(shown(ResultFormat::Table, "real").find("          1.1\n         -0.3\n"), std::string::npos);
    EXPECT_EQ(shown(ResultFormat::Csv, "float").substr(0, 22), "A\r\n1.100000023841858\r\n");
    EXPECT_EQ(shown(ResultFormat::Json, "float").substr(0, 24), "[{\"A\":1.100000023841858}");
}

TEST(ResultWriter, jsonKeepsColumnsOfOneNameApart) {
    RowSet rows({{.name = "A", .type = FieldType::Integer}, {.name = "A", .type = FieldType::Integer}});
    rows.column(0).appendInt(1);
    rows.column(1).appendInt(2);
    rows.finishRow();
    BatchResult batch;
    batch.results.push_back({.rows = std::move(rows), .affectedRows = -1});
    std::ostringstream out, notes;
    ResultWriter(out, notes, ResultFormat::Json, 0).write(batch);
    EXPECT_EQ(out.str(), "[{\"A\":1,\"A_2\":2}]\n");
}

}  // namespace
}  // namespace basalt::cli
