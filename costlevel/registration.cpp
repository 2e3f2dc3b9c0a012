#include "costlevel/registration.h"

#include <limits>

#include "ado/error.h"
#include "costlevel/costlevel_dm.h"
#include "package/registry.h"

namespace basalt {

namespace {

TCostLevel_DM& levels(FunctionCall& call) {
    return call.store<TCostLevel_DM>();
}

int recordInteger(const Datum& record, const char* field) {
    const Datum& value = record[field];
    try {
        return value.asInt32();
    } catch (const UsageError& error) {
        throw UsageError(std::string("argument Mapper, field ") + field + ": " + error.what());
    }
}

// Texts may be left out; the numbers may not.
TCostLevelMapper mapperFrom(const Datum& record) {
    return {.Code = recordInteger(record, "Code"),
            .Name = record["Name"].asText(),
            .Comment = record["Comment"].asText(),
            .CostType = recordInteger(record, "CostType")};
}

Datum mapperRecord(const TCostLevelMapper& mapper) {
    return Datum::record(
        {{"Code", mapper.Code}, {"Name", mapper.Name}, {"Comment", mapper.Comment}, {"CostType", mapper.CostType}});
}

Datum costDiscountRecord(const TCostDiscount& row) {
    Datum::Fields fields;
    const auto addDefaults = [&](std::size_t first) {
        for (const CostDiscountDefault& level : costDiscountDefaults().subspan(first, 2)) {
            fields.emplace_back(level.name, row.*level.member);
        }
    };
    constexpr std::size_t kDiscounts = 2 * kDiscountLevels;
    for (const CostDiscountAmount& amount : costDiscountAmounts()) {
        if (fields.size() == kDiscounts) addDefaults(0);
        fields.emplace_back(amount.name, row.*amount.member);
    }
    addDefaults(2);
    return Datum::record(std::move(fields));
}

Datum titleRecord(const TCostDiscountTitle& titles) {
    Datum::Fields fields;
    const auto add = [&](const std::string& begin, const auto& group) {
        for (std::size_t i = 0; i < group.size(); ++i) {
            fields.emplace_back(begin + std::to_string(i + 1), group[i]);
        }
    };
    add("Discount_Sell_", titles.Discount_Sell);
    add("Discount_Buy_", titles.Discount_Buy);
    add("CostLevel_", titles.CostLevel);
    return Datum::record(std::move(fields));
}

std::uint8_t byteArgument(FunctionCall& call, std::string_view name) {
    const int value = call.integer(name);
    if (value < 0 || value > std::numeric_limits<std::uint8_t>::max()) {
        throw UsageError("argument " + std::string(name) + ": " + std::to_string(value) + " is not 0 to 255");
    }
    return static_cast<std::uint8_t>(value);
}

FunctionEntry operation(std::string name, std::string summary, std::vector<FunctionParameter> parameters,
                        std::string result, std::function<void(FunctionCall&)> run) {
    return {.name = std::move(name),
            .subsystem = "costlevel",
            .summary = std::move(summary),
            .parameters = std::move(parameters),
            .result = std::move(result),
            .run = std::move(run)};
}

void registerLevels(Registry& registry) {
    registry.add(operation(
        "CostLevel_GetAll", "Opens the list of the levels that meet a condition; all when it is empty.",
        {in("Filter", "text")}, "", [](FunctionCall& call) { levels(call).CostLevel_GetAll(call.text("Filter")); }));
    registry.add(operation("CostLevel_GetByID", "Reads one level into a record and opens it for editing.",
                           {in("Code", "integer"), in("CostType", "integer"), out("Mapper", "record")}, "",
                           [](FunctionCall& call) {
                               TCostLevelMapper mapper;
                               levels(call).CostLevel_GetByID(call.integer("Code"), call.integer("CostType"), mapper);
                               call.output("Mapper", mapperRecord(mapper));
                           }));
    registry.add(operation("CostLevel_ExistName", "How many other levels of the kind bear the name.",
                           {in("Code", "integer"), in("CostType", "integer"), in("Name", "text")}, "integer",
                           [](FunctionCall& call) {
                               call.result(levels(call).CostLevel_ExistName(
                                   call.integer("Code"), call.integer("CostType"), call.text("Name")));
                           }));
    registry.add(operation("CostLevel_GetNewCode", "The next free code of a kind of level.",
                           {in("Part", "integer"), in("CostType", "integer")}, "integer", [](FunctionCall& call) {
                               call.result(
                                   levels(call).CostLevel_GetNewCode(call.integer("Part"), call.integer("CostType")));
                           }));
    registry.add(operation(
        "CostLevel_InsUpd", "Writes a level: over the row opened by CostLevel_GetByID, or as a new one.",
        {inRecord("Mapper",
                  {in("Code", "integer"), in("Name", "text"), in("Comment", "text"), in("CostType", "integer")}),
         in("IsEdit", "flag")},
        "", [](FunctionCall& call) {
            levels(call).CostLevel_InsUpd(mapperFrom(call.argument("Mapper")), call.flag("IsEdit"));
        }));
    registry.add(operation("CostLevel_Delete", "Deletes a level after asking; tells whether it was deleted.",
                           {in("Code", "integer"), in("CostType", "integer")}, "flag", [](FunctionCall& call) {
                               call.result(
                                   levels(call).CostLevel_Delete(call.integer("Code"), call.integer("CostType")));
                           }));
}

void registerPrices(Registry& registry) {
    registry.add(
        operation("CostLevel_Update", "Sets one sale (Kind 1) or purchase price of a good.",
                  {in("Kind", "integer"), in("GoodCode", "integer"), in("Level", "integer"), in("Price", "amount")}, "",
                  [](FunctionCall& call) {
                      levels(call).CostLevel_Update(call.integer("Kind"), call.integer("GoodCode"),
                                                    call.integer("Level"), call.amount("Price"));
                  }));
    registry.add(operation("ClearCostList", "Removes a price list.",
                           {in("TypeCode", "integer"), in("ListType", "byte")}, "", [](FunctionCall& call) {
                               levels(call).ClearCostList(call.integer("TypeCode"), byteArgument(call, "ListType"));
                           }));
    registry.add(operation("ClearTempCostList", "Removes the price list that is being edited.",
                           {in("TypeCode", "integer"), in("ListType", "byte")}, "", [](FunctionCall& call) {
                               levels(call).ClearTempCostList(call.integer("TypeCode"), byteArgument(call, "ListType"));
                           }));
    registry.add(
        operation("GetGoodCostDiscount", "A good's prices, discounts and default levels; zeros when it has none.",
                  {in("GoodCode", "integer")}, "record", [](FunctionCall& call) {
                      call.result(costDiscountRecord(levels(call).GetGoodCostDiscount(call.integer("GoodCode"))));
                  }));
    registry.add(operation("LoadCostDiscountTitles", "Reads the titles of all levels for every screen of the process.",
                           {out("GoodCostDiscountTitles", "record")}, "", [](FunctionCall& call) {
                               levels(call).LoadCostDiscountTitles();
                               call.output("GoodCostDiscountTitles", titleRecord(GoodCostDiscountTitles));
                           }));
    registry.add(operation(
        "OfferCost_GetAll",
        "Opens a good's prices by level: 0 purchase, 1 sale, 2 sale to and 3 purchase from a person, 4 in a currency.",
        {in("Kind", "integer"), in("GoodCode", "integer"), in("PerCode", "integer"), in("CurrCode", "integer"),
         in("Direction", "integer")},
        "", [](FunctionCall& call) {
            levels(call).OfferCost_GetAll(call.integer("Kind"), call.integer("GoodCode"), call.integer("PerCode"),
                                          call.integer("CurrCode"), call.integer("Direction"));
        }));
}

void registerReport(Registry& registry) {
    registry.add(operation("CostReport_Get", "Opens the price report: every good with its sale and purchase prices.",
                           {}, "", [](FunctionCall& call) { levels(call).CostReport_Get(); }));
    registry.add(operation(
        "AddCostReportColumn", "Adds the column of a level to the price report's table: F and V as text.",
        {in("V", "text")}, "", [](FunctionCall& call) { levels(call).AddCostReportColumn(Value{call.text("V")}); }));
}

}  // namespace

void registerCostLevel(Registry& registry) {
    registerLevels(registry);
    registerPrices(registry);
    registerReport(registry);
}

}  // namespace basalt
