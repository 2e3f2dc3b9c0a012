// The list of exports, and arguments on their way into a function.
#include "package/registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ado/error.h"

namespace basalt {
namespace {

using ::testing::HasSubstr;

FunctionEntry function(const std::string& name, std::vector<FunctionParameter> parameters = {}) {
    return {
        .name = name, .subsystem = "test", .summary = "", .parameters = std::move(parameters), .result = "", .run = {}};
}

EntryPoint entryPoint(const std::string& name) {
    return {.name = name,
            .subsystem = "test",
            .title = "",
            .summary = "",
            .part = spTags,
            .permission = prOpen,
            .parameters = {},
            .result = "",
            .run = {}};
}

std::string refusal(const std::function<void()>& action) {
    try {
        action();
    } catch (const UsageError& error) {
        return error.what();
    }
    return "(none)";
}

TEST(Registry, overloadsShareAName) {
    Registry registry;
    registry.add(function("CostLevel_GetByID", {in("Code", "integer")}));
    registry.add(function("Other"));
    registry.add(function("CostLevel_GetByID", {in("Code", "integer"), out("Mapper", "record")}));
    const auto found = registry.find("costlevel_getbyid");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]->parameters.size(), 1U);
    EXPECT_EQ(found[1]->parameters.size(), 2U);
    EXPECT_TRUE(registry.find("Nothing").empty());
    EXPECT_EQ(registry.functions().size(), 3U);
}

TEST(Registry, entryPointsHaveNamesOfTheirOwn) {
    Registry registry;
    registry.add(entryPoint("OpenTags"));
    registry.add(function("GetTag"));
    ASSERT_NE(registry.findEntryPoint("opentags"), nullptr);
    EXPECT_EQ(registry.findEntryPoint("opentags")->name, "OpenTags");
    EXPECT_EQ(registry.findEntryPoint("GetTag"), nullptr);
    EXPECT_EQ(refusal([&] { registry.add(entryPoint("OPENTAGS")); }), "the name OPENTAGS is taken");
    EXPECT_EQ(refusal([&] { registry.add(entryPoint("GetTag")); }), "the name GetTag is taken");
    EXPECT_EQ(refusal([&] { registry.add(function("OpenTags")); }), "the name OpenTags is taken");
    EXPECT_EQ(registry.entryPoints().size(), 1U);
}

TEST(Registry, argumentsAreFoundByNameWithoutCase) {
    FunctionState state;
    const FunctionCall call(state, {{"code", "12"}, {"Price", Decimal(125, 1)}, {"Name", 7}, {"IsEdit", "yes"}});
    EXPECT_EQ(call.integer("Code"), 12);
    EXPECT_EQ(call.amount("Price"), 12.5L);
    EXPECT_EQ(call.text("Name"), "7");
    EXPECT_TRUE(call.flag("IsEdit"));
}

TEST(Registry, refusedArgumentsAreNamed) {
    FunctionState state;
    const FunctionCall call(
        state, {{"Code", "سه"}, {"Large", std::int64_t{2147483648}}, {"Small", std::int64_t{-2147483649}}});
    EXPECT_EQ(refusal([&] { (void)call.integer("Part"); }), "argument Part is missing");
    EXPECT_EQ(refusal([&] { (void)call.integer("Code"); }), "argument Code: \"سه\" cannot be read as a whole number");
    EXPECT_EQ(refusal([&] { (void)call.amount("Code"); }), "argument Code: \"سه\" cannot be read as an amount");
    EXPECT_EQ(refusal([&] { (void)call.flag("Code"); }), "argument Code: \"سه\" cannot be read as a flag");
    EXPECT_EQ(refusal([&] { (void)call.integer("Large"); }),
              "argument Large: 2147483648 is beyond the range of an integer");
    EXPECT_EQ(refusal([&] { (void)call.integer("Small"); }),
              "argument Small: -2147483649 is beyond the range of an integer");
}

TEST(Registry, outputsKeepTheirOrderAndTheirLastValue) {
    FunctionState state;
    FunctionCall call(state, {});
    call.output("Unit1", "عدد");
    call.output("Unit2", "کارتن");
    call.output("unit1", "بسته");
    ASSERT_EQ(call.outputs().size(), 2U);
    EXPECT_EQ(call.outputs()[0], (std::pair<std::string, Datum>("Unit1", "بسته")));
    EXPECT_EQ(call.outputs()[1], (std::pair<std::string, Datum>("Unit2", "کارتن")));
}

TEST(Registry, resultIsNullUntilItIsSet) {
    FunctionState state;
    FunctionCall call(state, {});
    EXPECT_TRUE(call.resultValue().isNull());
    call.result(5);
    EXPECT_EQ(call.resultValue(), Datum(5));
}

}  // namespace
}  // namespace basalt
