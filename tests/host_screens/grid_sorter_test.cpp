// The order of rows by one field.
#include "host/screens/grid_sorter.h"

#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

RowSet oneColumn(FieldType type, int scale, const std::vector<Value>& values) {
    ColumnInfo info;
    info.name = "F";
    info.type = type;
    info.precision = type == FieldType::Decimal ? 23 : 0;
    info.scale = scale;
    RowSet rows({info});
    for (const Value& value : values) {
        rows.column(0).appendValue(value);
        rows.finishRow();
    }
    return rows;
}

using Order = std::vector<std::uint32_t>;

class GridSorter : public ScreenTest {};

TEST_F(GridSorter, numbersByValueAndNullsFirst) {
    open(oneColumn(FieldType::Integer, 0,
                   {Value{std::int64_t{10}}, Value{}, Value{std::int64_t{-3}}, Value{std::int64_t{9}}}));
    EXPECT_EQ(sortedRows(query, 0, false), (Order{1, 2, 3, 0}));
    EXPECT_EQ(sortedRows(query, 0, true), (Order{0, 3, 2, 1}));
}

TEST_F(GridSorter, decimalsByValue) {
    open(
        oneColumn(FieldType::Decimal, 2, {*Decimal::parse("10.50"), *Decimal::parse("9.75"), *Decimal::parse("-100")}));
    EXPECT_EQ(sortedRows(query, 0, false), (Order{2, 1, 0}));
}

TEST_F(GridSorter, equalValuesKeepTheirOrderBothWays) {
    open(oneColumn(FieldType::Integer, 0,
                   {Value{std::int64_t{2}}, Value{std::int64_t{1}}, Value{std::int64_t{2}}, Value{std::int64_t{1}}}));
    EXPECT_EQ(sortedRows(query, 0, false), (Order{1, 3, 0, 2}));
    EXPECT_EQ(sortedRows(query, 0, true), (Order{0, 2, 1, 3}));
}

TEST_F(GridSorter, textsAsPersianReadersSortThem) {
    const auto text = [](const char* value) { return Value{std::string(value)}; };
    // Peh, cheh, gaf and zheh stand between the letters that they look like, not behind them all.
    open(oneColumn(
        FieldType::Text, 0,
        {text("ژاله"), text("گلاب"), text("پنیر"), text("هل"), text("آب"), text("تخم"), text("بادام"), text("مربا")}));
    EXPECT_EQ(sortedRows(query, 0, false), (Order{4, 6, 2, 5, 0, 1, 7, 3}));
}

TEST_F(GridSorter, bothYehsAndKafsAreOneLetter) {
    const auto text = [](const char* value) { return Value{std::string(value)}; };
    open(oneColumn(FieldType::Text, 0, {text("کيك ۲"), text("کیک ۱"), text("كیک ۳")}));
    EXPECT_EQ(sortedRows(query, 0, false), (Order{1, 0, 2}));
}

TEST_F(GridSorter, numbersInTextsCompareAsNumbers) {
    const auto text = [](const char* value) { return Value{std::string(value)}; };
    open(oneColumn(FieldType::Text, 0, {text("سطح 10"), text("سطح 9"), text("سطح ۱"), text("")}));
    EXPECT_EQ(sortedRows(query, 0, false), (Order{3, 2, 1, 0}));
}

TEST_F(GridSorter, calculatedFieldsToo) {
    query.AddCalculatedField("Row", FieldType::Integer);
    query.OnCalcFields = [](TDataSet& rows) { rows.FieldByName("Row") = -rows.RecNo(); };
    open(oneColumn(FieldType::Integer, 0, {Value{std::int64_t{1}}, Value{std::int64_t{2}}, Value{std::int64_t{3}}}));
    EXPECT_EQ(sortedRows(query, 1, false), (Order{2, 1, 0}));
}

TEST_F(GridSorter, aMillionRowsWithinSeconds) {
    ColumnInfo info;
    info.name = "Name";
    RowSet rows({info});
    for (int i = 0; i < 1'000'000; ++i) {
        rows.column(0).appendText("کالای " + std::to_string((i * 7919LL) % 1'000'003));
        rows.finishRow();
    }
    open(std::move(rows));
    QElapsedTimer timer;
    timer.start();
    const Order order = sortedRows(query, 0, false);
    EXPECT_LT(timer.elapsed(), 30'000);
    ASSERT_EQ(order.size(), 1'000'000U);
    EXPECT_EQ(order.front(), 0U);
    EXPECT_EQ(query.textAt(order[0], 0), "کالای 0");
}

}  // namespace
}  // namespace basalt::host
