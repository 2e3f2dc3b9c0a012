// The part of the store that serves the price report.
#include "costlevel/costlevel_dm.h"

namespace basalt {

namespace {

// One text, tabs included: servers hold its plan under it. Every good comes twice, with its sale prices (Status 2) and
// with its purchase prices (Status 1). AbbName lists a good's barcodes behind exclamation marks; "!12!34" is shown as
// "(12)(34". There is room for the list and five characters more: each exclamation mark beyond the sixth costs the end
// of the list a character, so that of ten barcodes the last is cut or missing.
constexpr const char* kReportStatement =
    "Select G.Code, G.Name,  REPLACE(SUBSTRING(REPLACE(G.abbname, '!', ')('), 2, LEN(G.AbbName)+5), "
    "'()', '') as AbbName, 2 as Status "
    "\t, isnull(GC.CostLevel_Sell_1,0) as F1, isnull(GC.CostLevel_Sell_2,0) as F2, "
    "isnull(GC.CostLevel_Sell_3,0) as F3, isnull(GC.CostLevel_Sell_4,0) as F4, "
    "isnull(GC.CostLevel_Sell_5,0) as F5 "
    "\t, isnull(GC.CostLevel_Sell_6,0) as F6, isnull(GC.CostLevel_Sell_7,0) as F7, "
    "isnull(GC.CostLevel_Sell_8,0) as F8, isnull(GC.CostLevel_Sell_9,0) as F9, "
    "isnull(GC.CostLevel_Sell_10,0) as F10 , ISNULL(G.ConsumerPrice, "
    "0) AS ConsumerPrice From  GoodInf as G left outer join GoodCostDiscount as GC ON GC.GoodCode = "
    "G.Code "
    "union all Select G.Code, G.Name,  REPLACE(SUBSTRING(REPLACE(G.abbname, '!', ')('), 2, "
    "LEN(G.AbbName)+5), '()', '') as AbbName, 1 as Status "
    "\t, isnull(GC.CostLevel_Buy_1,0) as F1, isnull(GC.CostLevel_Buy_2,0) as F2, "
    "isnull(GC.CostLevel_Buy_3,0) as F3, isnull(GC.CostLevel_Buy_4,0) as F4, "
    "isnull(GC.CostLevel_Buy_5,0) as F5 "
    "\t, isnull(GC.CostLevel_Buy_6,0) as F6, isnull(GC.CostLevel_Buy_7,0) as F7, "
    "isnull(GC.CostLevel_Buy_8,0) as F8, isnull(GC.CostLevel_Buy_9,0) as F9, "
    "isnull(GC.CostLevel_Buy_10,0) as F10 , ISNULL(G.ConsumerPrice, "
    "0) AS ConsumerPrice  from GoodInf as G left outer join GoodCostDiscount as GC ON GC.GoodCode = "
    "G.Code";

}  // namespace

void TCostLevel_DM::CostReport_Get() {
    open(CostReport_QUR, kReportStatement);
}

void TCostLevel_DM::AddCostReportColumn(const Value& level) {
    execute(Temp1_QUR, "Alter Table CostReport Add F" + toText(level) + " Decimal(23, 9) ");
}

}  // namespace basalt
