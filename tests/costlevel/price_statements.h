// The statements of the price matrix and the price report, written out as the server is to get them.
#pragma once

namespace basalt {

// clang-format off
// The purchase prices of good 57.
inline constexpr const char* kPurchasePricesOf57 =
    " declare @GoodCode int  select @GoodCode = 57"
    " Select CostlevelCode as Code,GoodCode as TypeCode,Type,Cost,CL.Name , Case Def when 1 then 'پیش فرض' else '' end as deftitle from ( "
    " select 3 as Type,1 as Status,@GoodCode as GoodCode,1 as CostLevelCode,CostLevel_Buy_1 as Cost,"
    " Case Default_CostLevel_Buy_Number when 1 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,2 as CostLevelCode,CostLevel_Buy_2 as Cost,"
    " Case Default_CostLevel_Buy_Number when 2 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,3 as CostLevelCode,CostLevel_Buy_3 as Cost,"
    " Case Default_CostLevel_Buy_Number when 3 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,4 as CostLevelCode,CostLevel_Buy_4 as Cost,"
    " Case Default_CostLevel_Buy_Number when 4 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,5 as CostLevelCode,CostLevel_Buy_5 as Cost,"
    " Case Default_CostLevel_Buy_Number when 5 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,6 as CostLevelCode,CostLevel_Buy_6 as Cost,"
    "Case Default_CostLevel_Buy_Number when 6 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,7 as CostLevelCode,CostLevel_Buy_7 as Cost,"
    "Case Default_CostLevel_Buy_Number when 7 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,8 as CostLevelCode,CostLevel_Buy_8 as Cost,"
    "Case Default_CostLevel_Buy_Number when 8 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,9 as CostLevelCode,CostLevel_Buy_9 as Cost,"
    "Case Default_CostLevel_Buy_Number when 9 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,10 as CostLevelCode,CostLevel_Buy_10 as Cost,"
    "Case Default_CostLevel_Buy_Number when 10 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " ) as T join CostLevel CL ON CL.CostType=1 and T.CostLevelCode = CL.Code ";

// The sale prices of good 57.
inline constexpr const char* kSalePricesOf57 =
    " declare @GoodCode int  select @GoodCode = 57"
    " Select CostlevelCode as Code,GoodCode as TypeCode,Type,Cost,CL.Name , Case Def when 1 then 'پیش فرض' else '' end as deftitle from ( "
    " select 3 as Type,0 as Status,@GoodCode as GoodCode,1 as CostLevelCode,CostLevel_Sell_1 as Cost,"
    " Case Default_CostLevel_Sell_Number when 1 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,2 as CostLevelCode,CostLevel_Sell_2 as Cost,"
    " Case Default_CostLevel_Sell_Number when 2 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,3 as CostLevelCode,CostLevel_Sell_3 as Cost,"
    " Case Default_CostLevel_Sell_Number when 3 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,4 as CostLevelCode,CostLevel_Sell_4 as Cost,"
    " Case Default_CostLevel_Sell_Number when 4 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,5 as CostLevelCode,CostLevel_Sell_5 as Cost,"
    " Case Default_CostLevel_Sell_Number when 5 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,6 as CostLevelCode,CostLevel_Sell_6 as Cost,"
    " Case Default_CostLevel_Sell_Number when 6 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,7 as CostLevelCode,CostLevel_Sell_7 as Cost,"
    " Case Default_CostLevel_Sell_Number when 7 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,8 as CostLevelCode,CostLevel_Sell_8 as Cost,"
    " Case Default_CostLevel_Sell_Number when 8 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,9 as CostLevelCode,CostLevel_Sell_9 as Cost,"
    " Case Default_CostLevel_Sell_Number when 9 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,10 as CostLevelCode,CostLevel_Sell_10 as Cost,"
    " Case Default_CostLevel_Sell_Number when 10 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode "
    " ) as T join CostLevel CL ON CL.CostType=1 and T.CostLevelCode = CL.Code ";

// Every good twice: its sale prices, then its purchase prices. Four tab characters belong to it.
inline constexpr const char* kPriceReport =
    "Select G.Code, G.Name,  REPLACE(SUBSTRING(REPLACE(G.abbname, '!', ')('), 2, LEN(G.AbbName)+5), '()', '') as AbbName, 2 as Status "
    "\t, isnull(GC.CostLevel_Sell_1,0) as F1, isnull(GC.CostLevel_Sell_2,0) as F2, isnull(GC.CostLevel_Sell_3,0) as F3, isnull(GC.CostLevel_Sell_4,0) as F4, isnull(GC.CostLevel_Sell_5,0) as F5 "
    "\t, isnull(GC.CostLevel_Sell_6,0) as F6, isnull(GC.CostLevel_Sell_7,0) as F7, isnull(GC.CostLevel_Sell_8,0) as F8, isnull(GC.CostLevel_Sell_9,0) as F9, isnull(GC.CostLevel_Sell_10,0) as F10 , ISNULL(G.ConsumerPrice, 0) AS ConsumerPrice From  GoodInf as G left outer join GoodCostDiscount as GC ON GC.GoodCode = G.Code"
    " union all Select G.Code, G.Name,  REPLACE(SUBSTRING(REPLACE(G.abbname, '!', ')('), 2, LEN(G.AbbName)+5), '()', '') as AbbName, 1 as Status "
    "\t, isnull(GC.CostLevel_Buy_1,0) as F1, isnull(GC.CostLevel_Buy_2,0) as F2, isnull(GC.CostLevel_Buy_3,0) as F3, isnull(GC.CostLevel_Buy_4,0) as F4, isnull(GC.CostLevel_Buy_5,0) as F5 "
    "\t, isnull(GC.CostLevel_Buy_6,0) as F6, isnull(GC.CostLevel_Buy_7,0) as F7, isnull(GC.CostLevel_Buy_8,0) as F8, isnull(GC.CostLevel_Buy_9,0) as F9, isnull(GC.CostLevel_Buy_10,0) as F10 , ISNULL(G.ConsumerPrice, 0) AS ConsumerPrice  from GoodInf as G left outer join GoodCostDiscount as GC ON GC.GoodCode = G.Code";
// clang-format on

}  // namespace basalt
