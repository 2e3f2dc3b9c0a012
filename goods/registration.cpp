#include "goods/registration.h"

#include "ado/error.h"
#include "ado/names.h"
#include "goods/barcode_extractor_unt.h"
#include "goods/barcode_unt.h"
#include "goods/character_cut.h"
#include "goods/goodsinfo_unt.h"
#include "goods/scale_unt.h"
#include "package/registry.h"

namespace basalt {

namespace {

namespace state = Barcode_extractor_unt;

FunctionEntry operation(std::string name, std::string summary, std::vector<FunctionParameter> parameters,
                        std::string result, std::function<void(FunctionCall&)> run) {
    return {.name = std::move(name),
            .subsystem = "goods",
            .summary = std::move(summary),
            .parameters = std::move(parameters),
            .result = std::move(result),
            .run = std::move(run)};
}

// A variable of the units: its name alone reads it, with a value it is set.
void addVariable(Registry& registry, const std::string& name, const std::string& type, const std::string& summary,
                 std::function<Datum()> read, std::function<void(FunctionCall&)> set) {
    registry.add(
        operation(name, summary, {}, type, [read = std::move(read)](FunctionCall& call) { call.result(read()); }));
    registry.add(operation(name, "Sets " + name + ".", {in("Value", type)}, "", std::move(set)));
}

void addText(Registry& registry, const std::string& name, const std::string& summary, std::string& variable) {
    addVariable(
        registry, name, "text", summary, [&variable] { return Datum(variable); },
        [&variable](FunctionCall& call) { variable = call.text("Value"); });
}

// Of a variable that may hold nothing.
void addText(Registry& registry, const std::string& name, const std::string& summary, Value& variable) {
    addVariable(
        registry, name, "text", summary, [&variable] { return Datum::from(variable); },
        [&variable](FunctionCall& call) {
            variable = call.argument("Value").isNull() ? Value(Null{}) : Value(call.text("Value"));
        });
}

// Calls on(name, member) for each field of the particulars, in the record's order.
template <class On>
void eachParticular(On on) {
    on("Code", &TGoodInfoMapper::_Code);
    on("Name", &TGoodInfoMapper::_Name);
    on("Kala_Type", &TGoodInfoMapper::_Kala_Type);
    on("Kala_Index", &TGoodInfoMapper::_Kala_Index);
    on("Kala_Name", &TGoodInfoMapper::_Kala_Name);
    on("Mogodi", &TGoodInfoMapper::_Mogodi);
    on("Unit", &TGoodInfoMapper::_Unit);
    on("Unit2", &TGoodInfoMapper::_Unit2);
    on("UnitName", &TGoodInfoMapper::_UnitName);
    on("UnitName2", &TGoodInfoMapper::_UnitName2);
    on("MinAva", &TGoodInfoMapper::_MinAva);
    on("Pos", &TGoodInfoMapper::_Pos);
    on("Meghdar_Formool", &TGoodInfoMapper::_Meghdar_Formool);
    on("Gheymat_Miangin", &TGoodInfoMapper::_Gheymat_Miangin);
    on("OffPercentSell", &TGoodInfoMapper::_OffPercentSell);
    on("TaxExempt", &TGoodInfoMapper::_TaxExempt);
    on("ChargeExempt", &TGoodInfoMapper::_ChargeExempt);
    on("Tax_In_BuyCosts", &TGoodInfoMapper::_Tax_In_BuyCosts);
    on("Tax_In_SellCosts", &TGoodInfoMapper::_Tax_In_SellCosts);
    on("TaxPercent", &TGoodInfoMapper::_TaxPercent);
    on("ChargePercent", &TGoodInfoMapper::_ChargePercent);
    on("ConsumerPrice", &TGoodInfoMapper::_ConsumerPrice);
}

Datum infoRecord(const TGoodInfoMapper& info) {
    Datum::Fields fields;
    eachParticular([&](const char* name, auto member) { fields.emplace_back(name, info.*member); });
    return Datum::record(std::move(fields));
}

void take(int& field, const Datum& value) {
    field = value.asInt32();
}
void take(bool& field, const Datum& value) {
    field = value.asBool();
}
void take(Extended& field, const Datum& value) {
    field = value.asAmount();
}
void take(std::string& field, const Datum& value) {
    field = value.asText();
}

// Fields that the record does not name are empty.
TGoodInfoMapper infoFrom(const Datum& record) {
    TGoodInfoMapper info;
    for (const auto& [given, value] : record.asRecord()) {
        bool known = false;
        eachParticular([&, &field = given, &content = value](const char* name, auto member) {
            if (!sameName(name, field)) return;
            known = true;
            try {
                take(info.*member, content);
            } catch (const UsageError& error) {
                throw UsageError("argument Value, field " + field + ": " + error.what());
            }
        });
        if (!known) throw UsageError("argument Value: a good's particulars have no field " + given);
    }
    return info;
}

Datum itemList(const TStrings& items) {
    Datum::List list;
    for (const TStringItem& item : items)
        list.push_back(Datum::record({{"Text", item.Text}, {"Object", item.Object}}));
    return Datum::list(std::move(list));
}

TBarCodeUseType useTypeOf(FunctionCall& call) {
    const int value = call.integer("UseType");
    if (value < butNone || value > butDelete) {
        throw UsageError("argument UseType: " + std::to_string(value) + " is not 0 (none), 1 (new) or 2 (delete)");
    }
    return static_cast<TBarCodeUseType>(value);
}

void registerStockChecks(Registry& registry) {
    registry.add(operation("FillGoodInfo", "Reads the particulars of a good; tells whether there is one of that code.",
                           {in("GoodCode", "text"), out("Info", "record")}, "flag", [](FunctionCall& call) {
                               TGoodInfoMapper info;
                               const bool found = FillGoodInfo(call.text("GoodCode"), info);
                               if (found) call.output("Info", infoRecord(info));
                               call.result(found);
                           }));
    // The first that takes four values in a row gets them: a number may well be a text, but a date is no number.
    registry.add(operation(
        "Check_TockMinus", "Whether a document may be saved, by stored procedure; see strMinusGoodCodes.",
        {in("SelectQuery", "text"), in("Date", "text"), in("GlobalID", "integer"), in("StoreTransition", "flag")},
        "flag", [](FunctionCall& call) {
            call.result(Check_TockMinus(call.text("SelectQuery"), call.text("Date"), call.integer("GlobalID"),
                                        call.flag("StoreTransition")));
        }));
    registry.add(
        operation("Check_TockMinus", "Whether a document may be saved, by the ledger's rows between two dates.",
                  {in("SelectQuery", "text"), in("FromDate", "text"), in("ToDate", "text"), in("GlobalID", "integer")},
                  "flag", [](FunctionCall& call) {
                      call.result(Check_TockMinus(call.text("SelectQuery"), call.text("FromDate"), call.text("ToDate"),
                                                  call.integer("GlobalID")));
                  }));
    addText(registry, "strMinusGoodCodes", "The codes of the goods that the last check by procedure found negative.",
            strMinusGoodCodes);
    addVariable(
        registry, "GoodInfoMapper", "record", "The particulars of a good that callers share.",
        [] { return infoRecord(GoodInfoMapper); },
        [](FunctionCall& call) { GoodInfoMapper = infoFrom(call.argument("Value")); });
}

void registerPickLists(Registry& registry) {
    registry.add(operation("Fill_FinanceGoodTypes", "The financial types of goods, each with its number.",
                           {out("Items", "list")}, "", [](FunctionCall& call) {
                               TStrings items;
                               Fill_FinanceGoodTypes(items);
                               call.output("Items", itemList(items));
                           }));
    registry.add(operation("Fill_SellCostLevel", "The default and the selling price levels, each with its code.",
                           {out("Items", "list")}, "", [](FunctionCall& call) {
                               TStrings items;
                               Fill_SellCostLevel(items);
                               call.output("Items", itemList(items));
                           }));
    registry.add(operation("SplitBarcode", "Does nothing; kept for older hosts.",
                           {in("Barcode", "text"), in("Separator", "text")}, "", [](FunctionCall& call) {
                               const std::u16string separator = toUtf16(call.text("Separator"));
                               SplitBarcode(call.text("Barcode"), separator.empty() ? u'\0' : separator.front());
                           }));
}

void registerBarcodes(Registry& registry) {
    registry.add(operation(
        "FillGoodInfFromBarcode", "Takes a scale barcode apart; tells whether a layout fits, and of which kind it is.",
        {in("UseType", "integer"), out("FormulType", "integer"), in("Barcode", "text"), in("PerCode", "text"),
         in("ItemCode", "text"), in("TotalPrice", "amount")},
        "flag", [](FunctionCall& call) {
            TBarCodeFormulType kind = bftNone;
            call.output("FormulType", static_cast<int>(kind));
            const bool fits = FillGoodInfFromBarcode(useTypeOf(call), kind, call.text("Barcode"), call.text("PerCode"),
                                                     call.text("ItemCode"), call.amount("TotalPrice"));
            call.output("FormulType", static_cast<int>(kind));
            call.result(fits);
        }));
    registry.add(operation(
        "GetBarcode_Code", "The code of the good that a barcode's field means; 0 for none.",
        {in("Code", "text"), in("ByAbbName", "flag"), in("ShowMessage", "flag")}, "integer", [](FunctionCall& call) {
            call.result(GetBarcode_Code(call.text("Code"), call.flag("ByAbbName"), call.flag("ShowMessage")));
        }));
    registry.add(operation("Get_Barcode_Data",
                           "What the scans have left: price, amount, scale, good and sum of prices.",
                           {out("Fi", "text"), out("Weight", "text"), out("BalanceNum", "text"),
                            out("GoodCode", "text"), out("PriceSum", "amount")},
                           "", [](FunctionCall& call) {
                               std::string price;
                               std::string weight;
                               std::string balance;
                               Value good;
                               Extended sum = 0;
                               Get_Barcode_Data(price, weight, balance, good, sum);
                               call.output("Fi", price);
                               call.output("Weight", weight);
                               call.output("BalanceNum", balance);
                               call.output("GoodCode", Datum::from(good));
                               call.output("PriceSum", sum);
                           }));
    registry.add(operation("GetGoodInFromBarCode", "Whether the good of the last scan exists: 1 yes, 2 no.", {},
                           "integer",
                           [](FunctionCall& call) { call.result(static_cast<int>(GetGoodInFromBarCode())); }));
    addText(registry, "Fi", "The unit price of the last barcode that carried a good.", state::Fi);
    addText(registry, "Weight", "The amount of the last barcode that carried a good.", state::Weight);
    addText(registry, "BalanceNum", "The scale number of the last barcode that carried a good; -1 for none.",
            state::BalanceNum);
    addText(registry, "GoodCode", "The good of the last barcode that carried one.", state::GoodCode);
    addText(registry, "Percode", "The person of the last scan.", state::Percode);
    addVariable(
        registry, "BarCodePriceSum", "amount", "The running sum of the barcodes that carry a price alone.",
        [] { return Datum(state::BarCodePriceSum); },
        [](FunctionCall& call) { state::BarCodePriceSum = call.amount("Value"); });
    // First, so that a flag in a row of values means this one. For callers that have no function to give.
    registry.add(operation("After_Equal_Total_Price",
                           "Assigns or removes a handler of equal totals; tells how many it has been called for.",
                           {in("Assigned", "flag")}, "integer", [](FunctionCall& call) {
                               static int calls = 0;
                               call.result(calls);
                               calls = 0;
                               state::After_Equal_Total_Price = {};
                               if (call.flag("Assigned")) state::After_Equal_Total_Price = [] { ++calls; };
                           }));
    addVariable(
        registry, "After_Equal_Total_Price", "event", "What is called when a barcode's total is the invoice's.",
        [] { return Datum::event(state::After_Equal_Total_Price); },
        [](FunctionCall& call) { state::After_Equal_Total_Price = call.event("Value"); });
}

void registerBarcodeStore(Registry& registry) {
    registry.add(operation("BarCodeFormul_Get", "Opens the layouts that fit a barcode of so many characters.",
                           {in("DigitCount", "integer"), in("Barcode", "text")}, "", [](FunctionCall& call) {
                               sharedBarCodes().BarCodeFormul_Get(call.integer("DigitCount"), call.text("Barcode"));
                           }));
    registry.add(operation(
        "GetCodeFromGoodInf", "Looks a good up by scale code or code; true when there is none.",
        {in("ByAbbName", "flag"), in("Code", "text"), out("GoodCode", "integer")}, "flag", [](FunctionCall& call) {
            int good = 0;
            const bool missing = sharedBarCodes().GetCodeFromGoodInf(call.flag("ByAbbName"), call.text("Code"), good);
            call.output("GoodCode", good);
            call.result(missing);
        }));
    registry.add(
        operation("GoodInF_Valid_Code", "True when there is no good of that code.", {in("Code", "text")}, "flag",
                  [](FunctionCall& call) { call.result(sharedBarCodes().GoodInF_Valid_Code(call.text("Code"))); }));
}

void registerScales(Registry& registry) {
    registry.add(operation("GoodInf_SendToScale", "Hands goods over to the scales through the scale agent.",
                           {in("Codes", "text"), in("ScaleType", "integer")}, "", [](FunctionCall& call) {
                               GoodInf_SendToScale(call.text("Codes"), call.integer("ScaleType"));
                           }));
    registry.add(operation(
        "GoodInfo_ScaleAgent", "Registers one good with the scale agent's library.",
        {in("GoodCode", "integer"), in("Name1", "text"), in("Name2", "text"), in("Price", "integer"),
         in("ItemType", "integer"), in("AlterPrice", "integer"), in("Barcode", "text"), in("ItemCode", "integer"),
         in("Section", "integer"), in("PLU", "text"), in("ScaleIP", "integer")},
        "integer", [](FunctionCall& call) {
            const std::u16string name1 = toUtf16(call.text("Name1"));
            const std::u16string name2 = toUtf16(call.text("Name2"));
            const std::u16string barcode = toUtf16(call.text("Barcode"));
            const std::u16string plu = toUtf16(call.text("PLU"));
            call.result(GoodInfo_ScaleAgent(call.integer("GoodCode"), name1.c_str(), name2.c_str(),
                                            call.integer("Price"), call.integer("ItemType"), call.integer("AlterPrice"),
                                            barcode.c_str(), call.integer("ItemCode"), call.integer("Section"),
                                            plu.c_str(), call.integer("ScaleIP")));
        }));
}

}  // namespace

void registerGoods(Registry& registry) {
    registerStockChecks(registry);
    registerPickLists(registry);
    registerBarcodes(registry);
    registerBarcodeStore(registry);
    registerScales(registry);
}

}  // namespace basalt
