// The part of the store that reads one good's prices and discounts.
#include <cstdlib>
#include <utility>

#include "ado/error.h"
#include "costlevel/costlevel_dm.h"
#include "package/numbers.h"

namespace basalt {

namespace {

// The kinds of OfferCost_GetAll.
enum OfferKind : int { okPurchase = 0, okSale = 1, okSaleTo = 2, okPurchaseFrom = 3, okInCurrency = 4 };

// One level of one good in the wide table, as a row of its own. `blank` stands before Case: the texts of the
// sub-selects differ there, and every one of them is what servers have in their plan caches.
std::string levelRow(const std::string& direction, int status, int level, const char* blank) {
    const std::string number = std::to_string(level);
    return " select 3 as Type," + std::to_string(status) + " as Status,@GoodCode as GoodCode," + number +
           " as CostLevelCode,CostLevel_" + direction + "_" + number + " as Cost," + blank + "Case Default_CostLevel_" +
           direction + "_Number when " + number +
           " then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode ";
}

std::string goodPricesStatement(int goodCode, bool sale) {
    std::string statement =
        " declare @GoodCode int  select @GoodCode = " + std::to_string(goodCode) +
        " Select CostlevelCode as Code,GoodCode as TypeCode,Type,Cost,CL.Name , Case Def when 1 then 'پیش فرض' else '' "
        "end as deftitle from ( ";
    constexpr int kLastPurchaseRowWithBlank = 5;
    for (int level = 1; level <= kPriceLevels; ++level) {
        if (level > 1) statement += " union all ";
        const bool blank = sale || level <= kLastPurchaseRowWithBlank;
        statement += levelRow(sale ? "Sell" : "Buy", sale ? 0 : 1, level, blank ? " " : "");
    }
    return statement + " ) as T join CostLevel CL ON CL.CostType=1 and T.CostLevelCode = CL.Code ";
}

std::string procedureCall(const char* procedure, std::initializer_list<int> arguments) {
    std::string statement = std::string("{call ") + procedure + '(';
    for (const int argument : arguments) {
        if (statement.back() != '(') statement += ',';
        statement += std::to_string(argument);
    }
    return statement + ")}";
}

std::string offerStatement(int kind, int goodCode, int perCode, int currCode, int direction) {
    switch (kind) {
        case okPurchase:
        case okSale:
            return goodPricesStatement(goodCode, kind == okSale);
        case okSaleTo:
            return procedureCall("OfferSellCost", {goodCode, perCode});
        case okPurchaseFrom:
            return procedureCall("OfferBuyCost", {goodCode, perCode});
        case okInCurrency:
            return procedureCall(direction == 1 ? "OfferSellCostCurr" : "OfferBuyCostCurr",
                                 {goodCode, perCode, currCode});
        default:
            throw UsageError("OfferCost_GetAll: there is no kind " + std::to_string(kind));
    }
}

}  // namespace

TCostDiscount TCostLevel_DM::GetGoodCostDiscount(int goodCode) {
    open(Temp_Q7777UR, Format("select * from GoodCostDiscount Where GoodCode = %d ", {std::to_string(goodCode)}));
    TCostDiscount row;
    if (Temp_Q7777UR.RecordCount() > 0) {
        for (const CostDiscountAmount& amount : costDiscountAmounts()) {
            row.*amount.member = toExtended(VarIsNull_VRO(Temp_Q7777UR.FieldByName(amount.name).AsValue()));
        }
        for (const CostDiscountDefault& level : costDiscountDefaults()) {
            row.*level.member = Temp_Q7777UR.FieldByName(level.name).AsInteger();
        }
    }
    Temp_Q7777UR.Close();
    return row;
}

void TCostLevel_DM::LoadCostDiscountTitles() {
    open(Temp_Q7777UR, "Select * From CostLevel");
    TCostDiscountTitle titles;
    // The defaults are spelt with Arabic yeh.
    titles.CostLevel.fill("سطح قيمت ساير");
    titles.Discount_Sell = {"تخفيف نوع 1", "تخفيف نوع 2", "تخفيف نوع 3", "تخفيف نوع 4"};
    titles.Discount_Buy = titles.Discount_Sell;
    const auto load = [this](auto& group, TCostType costType) {
        for (std::size_t i = 0; i < group.size(); ++i) {
            const auto code = static_cast<std::int64_t>(i + 1);
            if (Temp_Q7777UR.Locate("Code;CostType", {Value{code}, Value{std::int64_t{costType}}})) {
                group[i] = Temp_Q7777UR.FieldByName("Name").AsString();
            }
        }
    };
    load(titles.CostLevel, ctPriceLevel);
    load(titles.Discount_Buy, ctDiscountLevel);
    load(titles.Discount_Sell, ctDiscountLevel);
    GoodCostDiscountTitles = std::move(titles);
}

void TCostLevel_DM::OfferCost_GetAll(int kind, int goodCode, int perCode, int currCode, int direction) {
    open(OfferCost_QUR, offerStatement(kind, goodCode, perCode, currCode, direction));
}

void TCostLevel_DM::SetCost_QURCalcFields(TDataSet& dataSet) {
    // Records count from 1 here. Lists of other makes give a record that is being entered a negative number; Row is
    // defined for those too.
    dataSet.FieldByName("Row") = std::abs(dataSet.RecNo());
}

}  // namespace basalt
