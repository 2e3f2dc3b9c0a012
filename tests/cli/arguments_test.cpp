#include "host/calls/arguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ado/error.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

Registry sampleRegistry() {
    Registry registry;
    const auto nothing = [](FunctionCall&) {};
    registry.add(FunctionEntry{"GetGoodUnits",
                               "goods",
                               "Units of a good.",
                               {in("GoodCode", "integer"), out("Unit1", "text"), out("Unit2", "text")},
                               "",
                               nothing});
    registry.add(
        FunctionEntry{"GetPrice", "goods", "Price of a good.", {in("GoodCode", "integer")}, "amount", nothing});
    registry.add(FunctionEntry{"GetPrice",
                               "goods",
                               "Price on a level.",
                               {in("GoodCode", "integer"), in("Level", "integer")},
                               "amount",
                               nothing});
    registry.add(FunctionEntry{"SaveLevel",
                               "costlevel",
                               "Saves a level.",
                               {in("Mapper", "record"), in("IsEdit", "flag"), inOut("Count", "integer")},
                               "",
                               nothing});
    registry.add(FunctionEntry{"SetPrice",
                               "goods",
                               "Sets a price.",
                               {in("Name", "text"), in("Price", "amount"), in("Codes", "list")},
                               "",
                               nothing});
    registry.add(FunctionEntry{
        "ClearList", "costlevel", "Clears a list.", {in("Code", "integer"), in("Type", "byte")}, "", nothing});
    registry.add(EntryPoint{"Open_List", "goods", "کالا", "Shows goods.", spGoods, prOpen, {}, "", nothing});
    return registry;
}

std::string messageOf(const Registry& registry, const std::string& function, const CallArguments& given) {
    try {
        (void)bindArguments(registry, function, given);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "no error";
}

TEST(BindArguments, fieldsOfARecordAreCheckedByName) {
    Registry registry;
    registry.add(
        FunctionEntry{"SaveLevel",
                      "costlevel",
                      "Saves a level.",
                      {inRecord("Mapper", {in("Code", "integer"), in("Name", "text"), in("CostType", "integer")})},
                      "",
                      [](FunctionCall&) {}});
    const auto complaint = [&](const char* json) {
        return messageOf(registry, "SaveLevel", {.named = {{"Mapper", json}}, .positional = {}});
    };
    EXPECT_EQ(complaint(R"({"Code":3,"Nam":"x","CostType":1})"),
              "argument Mapper: there is no field Nam; the fields are Code, Name, CostType");
    EXPECT_EQ(complaint(R"({"Code":3,"Name":"x"})"),
              "argument Mapper: the field CostType is missing; the fields are Code, Name, CostType");
    EXPECT_EQ(complaint(R"({"Code":"three","CostType":1})"),
              "argument Mapper: field Code: \"three\" cannot be read as a whole number");
    EXPECT_EQ(complaint(R"({"code":"3","COSTTYPE":1})"), "no error");
    EXPECT_EQ(signature(registry.functions().front()), "SaveLevel(Mapper: record {Code, Name, CostType})");
}

TEST(BindArguments, byNameWithoutCase) {
    const Registry registry = sampleRegistry();
    const BoundCall bound = bindArguments(registry, "getgoodunits", {.named = {{"goodcode", 5}}, .positional = {}});
    EXPECT_EQ(bound.entry->name, "GetGoodUnits");
    EXPECT_EQ(bound.arguments, (BoundArguments{{"GoodCode", 5}}));
}

TEST(BindArguments, byPositionInTheOrderOfTheInputs) {
    const Registry registry = sampleRegistry();
    const BoundCall bound =
        bindArguments(registry, "SaveLevel", {.named = {}, .positional = {Datum::record({{"Code", 3}}), true, 7}});
    EXPECT_EQ(bound.arguments,
              (BoundArguments{{"Mapper", Datum::record({{"Code", 3}})}, {"IsEdit", true}, {"Count", 7}}));
}

TEST(BindArguments, positionsFillTheInputsThatAreNotNamed) {
    const Registry registry = sampleRegistry();
    const BoundCall bound = bindArguments(registry, "GetPrice", {.named = {{"GoodCode", 5}}, .positional = {2}});
    EXPECT_EQ(bound.arguments, (BoundArguments{{"GoodCode", 5}, {"Level", 2}}));
}

TEST(BindArguments, overloadByCountAndByNames) {
    const Registry registry = sampleRegistry();
    EXPECT_EQ(bindArguments(registry, "GetPrice", {.named = {}, .positional = {5}}).entry->parameters.size(), 1U);
    EXPECT_EQ(bindArguments(registry, "GetPrice", {.named = {}, .positional = {5, 2}}).entry->parameters.size(), 2U);
    EXPECT_EQ(bindArguments(registry, "GetPrice", {.named = {{"Level", 2}, {"GoodCode", 5}}, .positional = {}})
                  .entry->summary,
              "Price on a level.");
}

TEST(BindArguments, anOutputChoosesTheOverloadThatHasIt) {
    Registry registry;
    const auto nothing = [](FunctionCall&) {};
    registry.add(FunctionEntry{"Get", "a", "opens", {in("Code", "integer")}, "", nothing});
    registry.add(FunctionEntry{"Get", "a", "reads", {in("Code", "integer"), out("Mapper", "record")}, "", nothing});
    EXPECT_EQ(bindArguments(registry, "Get", {.named = {}, .positional = {1}}).entry->summary, "opens");
    EXPECT_EQ(bindArguments(registry, "Get", {.named = {}, .positional = {1, nullptr}}).entry->summary, "reads");
    EXPECT_EQ(bindArguments(registry, "Get", {.named = {{"mapper", ""}}, .positional = {1}}).entry->summary, "reads");
}

TEST(BindArguments, textsBecomeWhatTheParameterIs) {
    const Registry registry = sampleRegistry();
    const BoundCall bound =
        bindArguments(registry, "SaveLevel", {.named = {}, .positional = {R"({"Code":3,"Name":"عمده"})", "1", "7"}});
    EXPECT_EQ(bound.arguments.at("Mapper"), Datum::record({{"Code", 3}, {"Name", "عمده"}}));
    EXPECT_TRUE(bound.arguments.at("IsEdit").asBool());
    EXPECT_EQ(bound.arguments.at("Count").asInteger(), 7);
}

struct Refusal {
    std::string name;
    std::string function;
    CallArguments given;
    std::string message;
};

class BindRefusals : public ::testing::TestWithParam<Refusal> {};

TEST_P(BindRefusals, sayWhatIsWrong) {
    const Registry registry = sampleRegistry();
    EXPECT_THAT(messageOf(registry, GetParam().function, GetParam().given), HasSubstr(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    Table, BindRefusals,
    ::testing::Values(
        Refusal{"unknownFunctionWithNearNames",
                "GetGoodUnit",
                {},
                "there is no function GetGoodUnit; near names: GetGoodUnits"},
        Refusal{"unknownFunctionWithoutNearNames", "Zzzzzz", {}, "there is no function Zzzzzz"},
        Refusal{"screen", "Open_List", {}, "Open_List shows a screen"},
        Refusal{"missing", "GetGoodUnits", {}, "GetGoodUnits needs the argument GoodCode"},
        Refusal{"tooMany", "GetGoodUnits", {.named = {}, .positional = {1, 2}}, "takes 1 arguments; 2 are given"},
        Refusal{"unknownName", "GetGoodUnits", {.named = {{"Code", 1}}, .positional = {}}, "has no parameter Code"},
        Refusal{"givenTwice",
                "GetGoodUnits",
                {.named = {{"GoodCode", 1}, {"GOODCODE", 2}}, .positional = {}},
                "given twice"},
        Refusal{"notANumber", "GetGoodUnits", {.named = {}, .positional = {"abc"}}, "argument GoodCode: "},
        Refusal{"beyond32Bits",
                "GetGoodUnits",
                {.named = {}, .positional = {std::int64_t{2147483648}}},
                "range of an integer"},
        Refusal{"noByte", "ClearList", {.named = {}, .positional = {3, 300}}, "argument Type: 300 is not 0 to 255"},
        Refusal{
            "negativeByte", "ClearList", {.named = {}, .positional = {3, "-1"}}, "argument Type: -1 is not 0 to 255"},
        Refusal{"notARecord", "SaveLevel", {.named = {}, .positional = {"[1]", true, 0}}, "argument Mapper: "},
        Refusal{"malformedRecord", "SaveLevel", {.named = {}, .positional = {"{", true, 0}}, "argument Mapper: "},
        Refusal{"notAList", "SetPrice", {.named = {}, .positional = {"x", 1, "{}"}}, "argument Codes: "},
        Refusal{"notAnAmount", "SetPrice", {.named = {}, .positional = {"x", "12,a", "[]"}}, "argument Price: "},
        Refusal{"noOverload",
                "GetPrice",
                {.named = {}, .positional = {1, 2, 3}},
                "there are:\n  GetPrice(GoodCode: integer): amount\n  GetPrice(GoodCode: integer, Level: integer): "
                "amount"}),
    [](const auto& test) { return test.param.name; });

TEST(ArgumentsFromWords, aNameCountsOnlyWhenItIsAnInput) {
    const Registry registry = sampleRegistry();
    const CallArguments given = argumentsFromWords(registry, "SetPrice", {"Name=a=b", "Other=1", "=", "price=5"});
    ASSERT_EQ(given.named.size(), 2U);
    EXPECT_EQ(given.named[0].first, "Name");
    EXPECT_EQ(given.named[0].second, Datum("a=b"));
    EXPECT_EQ(given.named[1].first, "price");
    EXPECT_THAT(given.positional, ElementsAre(Datum("Other=1"), Datum("=")));
}

TEST(ArgumentsFromWords, valuesOfAnUnknownFunctionAreValues) {
    const Registry registry = sampleRegistry();
    EXPECT_THAT(argumentsFromWords(registry, "Nothing", {"GoodCode=1"}).named, IsEmpty());
}

TEST(Signature, namesDirectionsAndResult) {
    const Registry registry = sampleRegistry();
    EXPECT_EQ(signature(*registry.find("GetGoodUnits").at(0)),
              "GetGoodUnits(GoodCode: integer, out Unit1: text, out Unit2: text)");
    EXPECT_EQ(signature(*registry.find("SaveLevel").at(0)),
              "SaveLevel(Mapper: record, IsEdit: flag, var Count: integer)");
}

}  // namespace
}  // namespace basalt::host
