#include "ado/rowset.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

#include "ado/error.h"
#include "tests/ado/named_case.h"

namespace basalt {
namespace {

ColumnInfo column(const char* name, FieldType type, int scale = 0) {
    ColumnInfo info;
    info.name = name;
    info.type = type;
    info.scale = scale;
    return info;
}

struct CellCase {
    const char* name;
    FieldType type;
    std::vector<Value> values;
    int scale = 0;
};

std::vector<CellCase> cellCases() {
    const auto n = [](std::int64_t value) { return Value(value); };
    const auto d = [](const char* text) { return Value(Decimal::parse(text).value()); };
    const auto t = [](std::string text) { return Value(std::move(text)); };
    const auto day = [](int year, int month, int dayOfMonth) { return Value(fromCivil({year, month, dayOfMonth})); };
    return {
        {"bit", FieldType::Boolean, {true, false, Null{}}},
        {"tinyint", FieldType::TinyInt, {n(0), n(255), Null{}}},
        {"smallint", FieldType::SmallInt, {n(INT16_MIN), n(INT16_MAX), Null{}}},
        {"integer", FieldType::Integer, {n(INT32_MIN), n(INT32_MAX), Null{}}},
        {"bigint", FieldType::BigInt, {n(INT64_MIN), n(INT64_MAX), Null{}}},
        {"real", FieldType::Float, {0.1, -1e300, Null{}}},
        {"decimal", FieldType::Decimal, {d("0.01"), d("-92233720368547758.08"), d("92233720368547758.08"), Null{}}, 2},
        {"largestDecimal", FieldType::Decimal, {d("99999999999999999999999999999999999999"), d("1"), Null{}}, 0},
        {"text", FieldType::Text, {t(""), t("عمده"), t(std::string(100'000, 'x')), t("a\0b"), Null{}}},
        {"binary", FieldType::Binary, {Bytes{}, Bytes{0, 255, 0}, Null{}}},
        {"date", FieldType::Date, {day(1, 1, 1), day(9999, 12, 31), Null{}}},
        {"datetime", FieldType::DateTime, {Value(DateTime{0}), Value(DateTime{3155378975999999999}), Null{}}},
    };
}

class EveryType : public ::testing::TestWithParam<CellCase> {};

// More rows than a chunk holds, the values in turn, so that each meets each border and null lies among values.
TEST_P(EveryType, keepsItsValuesOverChunkBorders) {
    const std::vector<Value>& values = GetParam().values;
    const std::size_t count = values[0] == Value(std::string()) ? 4200 : 10'000;
    RowSet rows({column("c", GetParam().type, GetParam().scale)});
    const auto valueOf = [&](std::size_t row) -> const Value& {
        // The longest text only now and then.
        const std::size_t at = row % 7 == 0 ? row % values.size() : (row * 3) % std::min<std::size_t>(values.size(), 2);
        return values[at];
    };
    for (std::size_t row = 0; row < count; ++row) {
        rows.column(0).appendValue(valueOf(row));
        rows.finishRow();
    }
    ASSERT_EQ(rows.rowCount(), count);
    ASSERT_EQ(rows.column(0).size(), count);
    for (std::size_t row = 0; row < count; ++row) {
        ASSERT_EQ(rows.column(0).valueAt(row), valueOf(row)) << row;
        ASSERT_EQ(rows.column(0).isNull(row), isNull(valueOf(row))) << row;
    }
}

TEST_P(EveryType, takesEveryValueInPlaceOfEveryOther) {
    const std::vector<Value>& values = GetParam().values;
    for (const Value& before : values) {
        for (const Value& after : values) {
            RowSet rows({column("c", GetParam().type, GetParam().scale)});
            for (const Value& each : {values[0], before, values[1]}) {
                rows.column(0).appendValue(each);
                rows.finishRow();
            }
            rows.column(0).set(1, after);
            EXPECT_EQ(rows.column(0).valueAt(0), values[0]);
            EXPECT_EQ(rows.column(0).valueAt(1), after);
            EXPECT_EQ(rows.column(0).valueAt(2), values[1]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Types, EveryType, ::testing::ValuesIn(cellCases()), NameOfCase());

class ChunkBorder : public ::testing::TestWithParam<std::size_t> {};

TEST_P(ChunkBorder, keepsEveryRow) {
    RowSet rows(
        {column("Code", FieldType::Integer), column("Name", FieldType::Text), column("Price", FieldType::Decimal, 9)});
    for (std::size_t i = 0; i < GetParam(); ++i) {
        rows.column(0).appendInt(static_cast<std::int64_t>(i));
        rows.column(1).appendText("name " + std::to_string(i));
        if (i % 5 == 0) {
            rows.column(2).appendNull();
        } else {
            rows.column(2).appendDecimal(static_cast<Int128>(i) * powerOfTen(9));
        }
        rows.finishRow();
    }
    for (std::size_t i = 0; i < GetParam(); ++i) {
        ASSERT_EQ(rows.column(0).intAt(i), static_cast<std::int64_t>(i));
        ASSERT_EQ(rows.column(1).textAt(i), "name " + std::to_string(i));
        ASSERT_EQ(rows.column(2).isNull(i), i % 5 == 0);
        if (i % 5 == 0) continue;
        ASSERT_TRUE(rows.column(2).coefficientAt(i) == static_cast<Int128>(i) * powerOfTen(9));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, ChunkBorder, ::testing::Values(0U, 1U, 4U, 5U, 4095U, 4096U, 4097U, 8192U, 8193U));

TEST(RowSet, aWideDecimalWidensItsChunkAndKeepsTheOthers) {
    RowSet rows({column("d", FieldType::Decimal)});
    for (int i = 0; i < 5000; ++i) {
        rows.column(0).appendDecimal(i == 4500 ? powerOfTen(37) : Int128{i});
        rows.finishRow();
    }
    for (int i = 0; i < 5000; ++i)
        ASSERT_TRUE(rows.column(0).coefficientAt(static_cast<std::size_t>(i)) ==
                    (i == 4500 ? powerOfTen(37) : Int128{i}))
            << i;
    rows.column(0).set(3, Value(Decimal(-powerOfTen(30), 0)));
    EXPECT_TRUE(rows.column(0).coefficientAt(3) == -powerOfTen(30));
    EXPECT_TRUE(rows.column(0).coefficientAt(4) == 4);
}

// Removing is compared with a plain list that does the same.
TEST(RowSet, removesRowsAnywhere) {
    RowSet rows(
        {column("Code", FieldType::Integer), column("Name", FieldType::Text), column("Wide", FieldType::Decimal)});
    std::vector<int> expected;
    for (int i = 0; i < 9000; ++i) {
        rows.column(0).appendInt(i);
        if (i % 3 == 0) {
            rows.column(1).appendNull();
        } else {
            rows.column(1).appendText(std::string(static_cast<std::size_t>(i % 11), 'n') + std::to_string(i));
        }
        rows.column(2).appendDecimal(i == 4097 ? powerOfTen(30) : Int128{i});
        rows.finishRow();
        expected.push_back(i);
    }
    std::mt19937 random(7);
    const auto remove = [&](std::size_t row) {
        rows.removeRow(row);
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(row));
    };
    const auto compare = [&] {
        ASSERT_EQ(rows.rowCount(), expected.size());
        for (std::size_t row = 0; row < expected.size(); ++row) {
            const int i = expected[row];
            ASSERT_EQ(rows.column(0).intAt(row), i);
            ASSERT_EQ(rows.column(1).isNull(row), i % 3 == 0);
            if (i % 3 != 0) {
                ASSERT_EQ(rows.column(1).textAt(row),
                          std::string(static_cast<std::size_t>(i % 11), 'n') + std::to_string(i));
            }
            ASSERT_TRUE(rows.column(2).coefficientAt(row) == (i == 4097 ? powerOfTen(30) : Int128{i}));
        }
    };
    for (const std::size_t row : {8999UL, 0UL, 4095UL, 4094UL, 4096UL})
        remove(row);
    compare();
    while (expected.size() > 4000)
        remove(random() % expected.size());
    compare();
    rows.column(0).appendInt(7);
    rows.column(1).appendText("n7" + std::string());
    rows.column(2).appendDecimal(7);
    rows.finishRow();
    EXPECT_EQ(rows.column(0).intAt(expected.size()), 7);
    rows.removeRow(expected.size());
    while (!expected.empty())
        remove(expected.size() / 2);
    EXPECT_EQ(rows.rowCount(), 0U);
    rows.column(1).appendText("again");
    EXPECT_EQ(rows.column(1).textAt(0), "again");
}

TEST(RowSet, aRowRemovedFromAFullSetLeavesRoomForTheNext) {
    RowSet rows({column("c", FieldType::Integer)});
    for (int i = 0; i < 4096; ++i) {
        rows.column(0).appendInt(i);
        rows.finishRow();
    }
    rows.removeRow(10);
    rows.column(0).appendInt(9999);
    rows.finishRow();
    rows.column(0).appendInt(10'000);
    rows.finishRow();
    ASSERT_EQ(rows.column(0).size(), 4097U);
    EXPECT_EQ(rows.column(0).intAt(10), 11);
    EXPECT_EQ(rows.column(0).intAt(4095), 9999);
    EXPECT_EQ(rows.column(0).intAt(4096), 10'000);
}

TEST(RowSet, findsColumnsWithoutCase) {
    const RowSet rows(
        {column("Code", FieldType::Integer), column("", FieldType::Integer), column("Änderung", FieldType::Text)});
    EXPECT_EQ(rows.indexOf("CODE"), 0);
    EXPECT_EQ(rows.indexOf(""), 1);
    EXPECT_EQ(rows.indexOf("änderung"), 2);
    EXPECT_EQ(rows.indexOf("Name"), -1);
}

struct RefusedCase {
    const char* name;
    ColumnInfo column;
    Value value;
    const char* message;
};

class RefusedValue : public ::testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedValue, leavesTheColumnAsItWas) {
    RowSet cellsSet({GetParam().column});
    Column& cells = cellsSet.column(0);
    cells.appendNull();
    for (const bool append : {true, false}) {
        try {
            append ? cells.appendValue(GetParam().value) : cells.set(0, GetParam().value);
            ADD_FAILURE() << "was taken";
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.category(), ErrorCategory::Conversion);
            EXPECT_STREQ(error.what(), GetParam().message);
        }
    }
    EXPECT_EQ(cells.size(), 1U);
    EXPECT_TRUE(cells.isNull(0));
}

INSTANTIATE_TEST_SUITE_P(
    Values, RefusedValue,
    ::testing::Values(
        RefusedCase{"tinyint", column("Type", FieldType::TinyInt), std::int64_t{256},
                    "column Type (tinyint): the value '256' is out of range; it must lie between 0 and 255"},
        RefusedCase{"smallint", column("c", FieldType::SmallInt), std::int64_t{-32769},
                    "column c (smallint): the value '-32769' is out of range; it must lie between -32768 and 32767"},
        RefusedCase{"integer", column("Code", FieldType::Integer), std::int64_t{2147483648},
                    "column Code (int): the value '2147483648' is out of range; it must lie between -2147483648 and "
                    "2147483647"},
        RefusedCase{"textForInteger", column("Code", FieldType::Integer), std::string("abc"),
                    "the value 'abc' cannot be converted to an integer"},
        RefusedCase{"decimal", ColumnInfo{.name = "Cost", .type = FieldType::Decimal, .precision = 5, .scale = 2},
                    Decimal(100000, 2),
                    "column Cost (decimal): the value '1000.00' is out of range; at most 3 digits may stand before the "
                    "point"},
        RefusedCase{"date", column("Day", FieldType::Date), std::string("1403/13/01"),
                    "column Day (date): the value '1403/13/01' is not a date"},
        RefusedCase{"binary", column("Picture", FieldType::Binary), true,
                    "column Picture (binary): the value 'True' is not binary"}),
    NameOfCase());

TEST(RowSet, appendedIntegersOutOfRangeAreRefused) {
    RowSet cellsSet({column("Code", FieldType::Integer)});
    Column& cells = cellsSet.column(0);
    EXPECT_THROW(cells.appendInt(std::numeric_limits<std::int64_t>::max()), DatabaseError);
    EXPECT_EQ(cells.size(), 0U);
    cells.appendInt(5);
    EXPECT_EQ(cells.intAt(0), 5);
}

TEST(RowSet, convertsWhatFits) {
    RowSet priceSet({ColumnInfo{.name = "Cost", .type = FieldType::Decimal, .precision = 23, .scale = 9}});
    Column& price = priceSet.column(0);
    price.appendValue(0.1);
    price.appendValue(std::string("12500.5"));
    price.appendValue(std::int64_t{3});
    EXPECT_EQ(toText(price.valueAt(0)), "0.100000000");
    EXPECT_EQ(toText(price.valueAt(1)), "12500.500000000");
    EXPECT_EQ(toText(price.valueAt(2)), "3.000000000");
    RowSet nameSet({column("Name", FieldType::Text)});
    Column& name = nameSet.column(0);
    name.appendValue(std::int64_t{7});
    EXPECT_EQ(name.textAt(0), "7");
    RowSet daySet({column("Day", FieldType::Date)});
    Column& day = daySet.column(0);
    day.appendValue(std::string("2024-02-29 13:00"));
    EXPECT_EQ(toText(day.valueAt(0)), "2024-02-29");
}

TEST(RowSet, memoryStaysCloseToTheValues) {
    RowSet rows({column("a", FieldType::Integer), column("b", FieldType::BigInt), column("t", FieldType::Text)});
    const std::size_t count = 200'000;
    const std::string name(20, 'n');
    for (std::size_t i = 0; i < count; ++i) {
        rows.column(0).appendInt(static_cast<std::int64_t>(i));
        rows.column(1).appendInt(static_cast<std::int64_t>(i));
        rows.column(2).appendText(name);
        rows.finishRow();
    }
    EXPECT_LT(rows.memory(), count * (4 + 8 + name.size()) * 12 / 10);
    RowSet one({column("a", FieldType::Integer)});
    one.column(0).appendInt(1);
    EXPECT_LT(one.memory(), 600U);
}

}  // namespace
}  // namespace basalt
