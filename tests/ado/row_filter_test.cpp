#include "ado/row_filter.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "ado/error.h"
#include "ado/names.h"
#include "tests/ado/named_case.h"
#include "tests/ado/price_levels.h"

namespace basalt {
namespace {

// One record: Code 7, Name "Beta ", Rate 2.50, Nothing null, Active true, Day 2024-02-29, [or] 1.
const std::vector<std::pair<ColumnInfo, Value>>& record() {
    static const std::vector<std::pair<ColumnInfo, Value>> fields = {
        {{.name = "Code", .type = FieldType::Integer}, integer(7)},
        {{.name = "Name", .type = FieldType::Text}, text("Beta ")},
        {{.name = "Rate", .type = FieldType::Decimal, .scale = 2}, Decimal(250, 2)},
        {{.name = "Nothing", .type = FieldType::Text}, Null{}},
        {{.name = "Active", .type = FieldType::Boolean}, true},
        {{.name = "Day", .type = FieldType::Date}, *parseDateTime("2024-02-29")},
        {{.name = "or", .type = FieldType::Integer}, integer(1)},
        {{.name = "نام", .type = FieldType::Text}, text("عمده")},
        {{.name = "Weight", .type = FieldType::Float}, 0.5},
        {{.name = "Stamp", .type = FieldType::DateTime}, *parseDateTime("2024-02-29 10:00")},
    };
    return fields;
}

bool accepts(const std::string& filter) {
    const RowFilter compiled(filter, [](std::string_view name) -> std::optional<RowFilter::FilterField> {
        for (std::size_t i = 0; i < record().size(); ++i) {
            if (sameName(record()[i].first.name, name))
                return RowFilter::FilterField{static_cast<int>(i), record()[i].first.type};
        }
        return std::nullopt;
    });
    return compiled.accepts([](int field) { return record()[static_cast<std::size_t>(field)].second; });
}

struct FilterCase {
    const char* name;
    const char* filter;
    bool accepted;
};

class Filter : public ::testing::TestWithParam<FilterCase> {};

TEST_P(Filter, acceptsOrNot) {
    EXPECT_EQ(accepts(GetParam().filter), GetParam().accepted);
}

INSTANTIATE_TEST_SUITE_P(
    Conditions, Filter,
    ::testing::Values(
        FilterCase{"equal", "Code = 7", true}, FilterCase{"equalNot", "Code = 8", false},
        FilterCase{"unequal", "Code <> 8", true}, FilterCase{"less", "Code < 7", false},
        FilterCase{"lessEqual", "Code <= 7", true}, FilterCase{"greater", "Code > 6.5", true},
        FilterCase{"greaterEqual", "Code >= 8", false}, FilterCase{"negative", "Code > -1", true},
        FilterCase{"noBlanks", "Code=7AND Rate=2.5", true}, FilterCase{"decimalByValue", "Rate = 2.500", true},
        FilterCase{"floatField", "Weight = 0.5", true}, FilterCase{"valueFirst", "7 = code", true},
        FilterCase{"valueFirstLess", "8 > Code", true}, FilterCase{"valueFirstGreater", "8 < Code", false},
        FilterCase{"valueFirstAtMost", "7 <= Code", true}, FilterCase{"valueFirstAtLeast", "6 >= Code", false},
        FilterCase{"quotedNumber", "Code = '7'", true}, FilterCase{"text", "Name = 'Beta'", true},
        FilterCase{"textCase", "Name = 'BETA'", true}, FilterCase{"textBlanks", "Name = 'beta   '", true},
        FilterCase{"textOrder", "Name > 'alpha'", true}, FilterCase{"numberForText", "Name = 5", false},
        FilterCase{"quoteDoubled", "Name = 'Be''ta'", false}, FilterCase{"persian", "[نام] = 'عمده'", true},
        FilterCase{"persianBare", "نام like 'عم*'", true}, FilterCase{"likeStar", "Name like 'be*'", true},
        FilterCase{"likePercent", "Name LIKE '%ET%'", true}, FilterCase{"likeEnd", "Name like '*ta'", true},
        FilterCase{"likeMiddle", "Name like 'b*a'", true}, FilterCase{"likeTwice", "Name like '*e*a'", true},
        FilterCase{"likeWhole", "Name like 'beta'", true}, FilterCase{"likeNot", "Name like 'x*'", false},
        FilterCase{"notLike", "Name not like 'x*'", true}, FilterCase{"likeNumber", "Code like '7*'", true},
        FilterCase{"likeAll", "Name like '*'", true}, FilterCase{"likeNull", "Nothing like '*'", false},
        FilterCase{"isNull", "Nothing is null", true}, FilterCase{"isNotNull", "Nothing is not null", false},
        FilterCase{"codeIsNull", "Code IS NULL", false}, FilterCase{"equalNull", "Nothing = null", true},
        FilterCase{"unequalNull", "Code <> NULL", true}, FilterCase{"nullFirst", "null = Nothing", true},
        FilterCase{"nullCompares", "Nothing = 'x'", false}, FilterCase{"nullComparesNot", "not Nothing = 'x'", false},
        FilterCase{"nullUnequal", "Nothing <> 'x'", false}, FilterCase{"nullOrTrue", "Nothing = 'x' or Code = 7", true},
        FilterCase{"nullAndFalse", "not (Nothing = 'x' and Code = 8)", true},
        FilterCase{"nullOrFalse", "not (Nothing = 'x' or Code = 8)", false},
        FilterCase{"nullAndTrue", "not (Nothing = 'x' and Code = 7)", false}, FilterCase{"flag", "Active = True", true},
        FilterCase{"flagFalse", "Active = false", false}, FilterCase{"flagNumber", "Active = 1", true},
        FilterCase{"day", "Day = '2024-02-29'", true}, FilterCase{"dayHashes", "Day < #2024/03/01#", true},
        FilterCase{"stamp", "Stamp > '2024-02-29'", true},
        FilterCase{"andBeforeOr", "Code = 7 or Code = 8 and Code = 9", true},
        FilterCase{"parentheses", "(Code = 7 or Code = 8) and Code = 9", false},
        FilterCase{"notNot", "not not Code = 7", true}, FilterCase{"notBinds", "not Code = 8 and Code = 7", true},
        FilterCase{"reservedName", "[or] = 1", true}, FilterCase{"fields", "Code > Rate", true},
        FilterCase{"fieldsOfUnlikeKinds", "Name = Code", false}, FilterCase{"fieldsDateAndText", "Day = Name", false},
        FilterCase{"fieldsFloat", "Weight < Rate", true}),
    NameOfCase());

struct MalformedCase {
    const char* name;
    const char* filter;
    const char* message;
};

class MalformedFilter : public ::testing::TestWithParam<MalformedCase> {};

TEST_P(MalformedFilter, isRefusedWithThePlace) {
    try {
        accepts(GetParam().filter);
        ADD_FAILURE() << "was accepted";
    } catch (const UsageError& error) {
        EXPECT_STREQ(error.what(), GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Filters, MalformedFilter,
    ::testing::Values(
        MalformedCase{"empty", "", "position 1: expected a field or a value, found the end"},
        MalformedCase{"onlyField", "Code", "position 5: expected a comparison, found the end"},
        MalformedCase{"noValue", "Code =", "position 7: expected a field or a value, found the end"},
        MalformedCase{"unknownField", "Code = 7 and Kind = 1", "position 14: there is no field Kind"},
        MalformedCase{"placeInCharacters", "نام = 'ب' و", "position 11: expected AND, OR or the end, found 'و'"},
        MalformedCase{"openParenthesis", "(Code = 7", "position 10: expected ')', found the end"},
        MalformedCase{"closeParenthesis", "Code = 7)", "position 9: expected AND, OR or the end, found ')'"},
        MalformedCase{"openQuote", "Name = 'x", "position 8: this text is never closed"},
        MalformedCase{"openBracket", "[Name = 'x'", "position 1: this name is never closed"},
        MalformedCase{"openHash", "Day = #2024", "position 7: this date is never closed"},
        MalformedCase{"noNumber", "Code = 1.2.3", "position 8: '1.2.3' is not a number"},
        MalformedCase{"textForNumber", "Code = 'abc'", "position 8: 'abc' cannot be compared with this field"},
        MalformedCase{"noDate", "Day = '1403/13/01'", "position 7: '1403/13/01' cannot be compared with this field"},
        MalformedCase{"noFlag", "Active = 'maybe'", "position 10: 'maybe' cannot be compared with this field"},
        MalformedCase{"twoValues", "1 = 1", "position 1: a condition needs a field on one side"},
        MalformedCase{"isWhat", "Code is 7", "position 9: expected NULL, found '7'"},
        MalformedCase{"valueIsNull", "7 is null", "position 1: a condition needs a field on one side"},
        MalformedCase{"nullLess", "Code < null", "position 8: NULL can only be compared with = and <>"},
        MalformedCase{"notWhat", "Name not 'x'", "position 10: expected LIKE, found 'x'"},
        MalformedCase{"likeMirrored", "'x*' like Name", "position 1: LIKE needs the field on its left side"},
        MalformedCase{"andFirst", "and Code = 7", "position 1: expected a field or a value, found 'and'"},
        MalformedCase{"andLast", "Code = 7 and", "position 13: expected a field or a value, found the end"},
        MalformedCase{"strangeSign", "Code ! 7", "position 6: expected a comparison, found '!'"},
        MalformedCase{"function", "len(Name) = 3", "position 1: there is no field len"}),
    NameOfCase());

TEST(FilterDepth, isBounded) {
    EXPECT_TRUE(accepts(std::string(150, '(') + "Code = 7" + std::string(150, ')')));
    EXPECT_THROW(accepts(std::string(100'000, '(') + "Code = 7" + std::string(100'000, ')')), UsageError);
    std::string chain = "Code = 7";
    for (int i = 0; i < 100'000; ++i)
        chain += " and Code = 7";
    EXPECT_TRUE(accepts(chain));
}

}  // namespace
}  // namespace basalt
