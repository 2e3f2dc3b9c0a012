#include "tests/database/module_statements.h"

namespace basalt::host {

std::vector<ModuleStatement> priceStatements() {
    return {
        {"levelsWithoutTheTopRow", "select * from costLevel where code>0", 15},
        {"levels", "select Code,Name,Comment from CostLevel", 16},
        {"priceLevels", "select Code,Name,Comment from CostLevel\r\n WHERE code > 0 AND CostType IN(1)", 10},
        {"discountLevels", "select Code,Name,Comment from CostLevel\r\n WHERE code > 0 AND CostType IN(3, 4)", 5},
        {"oneLevel", "SELECT * FROM CostLevel Where Code = 3 AND CostType = 1", 1},
        {"levelName", "select Name from CostLevel where Name = 'همکار' and Code <> 4  AND CostType = 1", 1},
        {"newLevelCode",
         "select isnull(Max(Code),0)+1 from (select isnull(Max(Code),0) as Code from CostLevel WHERE CostType = "
         "1UNION ALL Select MAX(CAST(Code AS BIGINT)) as Code FROM CodeLock_TBL WHERE Status = 114) T1",
         1},
        {"onePrice", "update GoodCostDiscount Set CostLevel_Sell_3 = 12500 where GoodCode=57", kNoRows},
        {"clearPriceList", "delete from costlist where type=3 and  typecode=1", kNoRows},
        {"clearEditedPriceList", "delete from tmpcostlist where type=3 and  typecode=1", kNoRows},
        {"printColumnOfALevel", "Delete from PrintsSettings where PartName='CostReport' and Comment='F3'", kNoRows},
        {"deleteALevel", "Delete CostLevel where Code= 4 AND CostType = 1", kNoRows},
        {"pricesOfAGood", "select * from GoodCostDiscount Where GoodCode = 5 ", 1},
        {"allLevels", "Select * From CostLevel", 16},
        {"purchasePrices",
         " declare @GoodCode int  select @GoodCode = 5 Select CostlevelCode as Code,GoodCode as "
         "TypeCode,Type,Cost,CL.Name , Case Def when 1 then 'پیش فرض' else '' end as deftitle from (  select 3 as "
         "Type,1 as Status,@GoodCode as GoodCode,1 as CostLevelCode,CostLevel_Buy_1 as Cost, Case "
         "Default_CostLevel_Buy_Number when 1 then 1 else 0 end as Def  from GoodCostDiscount where "
         "GoodCode=@GoodCode  union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,2 as "
         "CostLevelCode,CostLevel_Buy_2 as Cost, Case Default_CostLevel_Buy_Number when 2 then 1 else 0 end as Def  "
         "from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as Type,1 as Status,@GoodCode as "
         "GoodCode,3 as CostLevelCode,CostLevel_Buy_3 as Cost, Case Default_CostLevel_Buy_Number when 3 then 1 else "
         "0 "
         "end as Def  from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as Type,1 as "
         "Status,@GoodCode as GoodCode,4 as CostLevelCode,CostLevel_Buy_4 as Cost, Case "
         "Default_CostLevel_Buy_Number "
         "when 4 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as "
         "Type,1 as Status,@GoodCode as GoodCode,5 as CostLevelCode,CostLevel_Buy_5 as Cost, Case "
         "Default_CostLevel_Buy_Number when 5 then 1 else 0 end as Def  from GoodCostDiscount where "
         "GoodCode=@GoodCode  union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,6 as "
         "CostLevelCode,CostLevel_Buy_6 as Cost,Case Default_CostLevel_Buy_Number when 6 then 1 else 0 end as Def  "
         "from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as Type,1 as Status,@GoodCode as "
         "GoodCode,7 as CostLevelCode,CostLevel_Buy_7 as Cost,Case Default_CostLevel_Buy_Number when 7 then 1 else "
         "0 "
         "end as Def  from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as Type,1 as "
         "Status,@GoodCode as GoodCode,8 as CostLevelCode,CostLevel_Buy_8 as Cost,Case Default_CostLevel_Buy_Number "
         "when 8 then 1 else 0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as "
         "Type,1 as Status,@GoodCode as GoodCode,9 as CostLevelCode,CostLevel_Buy_9 as Cost,Case "
         "Default_CostLevel_Buy_Number when 9 then 1 else 0 end as Def  from GoodCostDiscount where "
         "GoodCode=@GoodCode  union all  select 3 as Type,1 as Status,@GoodCode as GoodCode,10 as "
         "CostLevelCode,CostLevel_Buy_10 as Cost,Case Default_CostLevel_Buy_Number when 10 then 1 else 0 end as Def "
         " "
         "from GoodCostDiscount where GoodCode=@GoodCode  ) as T join CostLevel CL ON CL.CostType=1 and "
         "T.CostLevelCode = CL.Code ",
         10},
        {"salePrices",
         " declare @GoodCode int  select @GoodCode = 5 Select CostlevelCode as Code,GoodCode as "
         "TypeCode,Type,Cost,CL.Name , Case Def when 1 then 'پیش فرض' else '' end as deftitle from (  select 3 as "
         "Type,0 as Status,@GoodCode as GoodCode,1 as CostLevelCode,CostLevel_Sell_1 as Cost, Case "
         "Default_CostLevel_Sell_Number when 1 then 1 else 0 end as Def  from GoodCostDiscount where "
         "GoodCode=@GoodCode  union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,2 as "
         "CostLevelCode,CostLevel_Sell_2 as Cost, Case Default_CostLevel_Sell_Number when 2 then 1 else 0 end as "
         "Def  "
         "from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as Type,0 as Status,@GoodCode as "
         "GoodCode,3 as CostLevelCode,CostLevel_Sell_3 as Cost, Case Default_CostLevel_Sell_Number when 3 then 1 "
         "else "
         "0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as Type,0 as "
         "Status,@GoodCode as GoodCode,4 as CostLevelCode,CostLevel_Sell_4 as Cost, Case "
         "Default_CostLevel_Sell_Number when 4 then 1 else 0 end as Def  from GoodCostDiscount where "
         "GoodCode=@GoodCode  union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,5 as "
         "CostLevelCode,CostLevel_Sell_5 as Cost, Case Default_CostLevel_Sell_Number when 5 then 1 else 0 end as "
         "Def  "
         "from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as Type,0 as Status,@GoodCode as "
         "GoodCode,6 as CostLevelCode,CostLevel_Sell_6 as Cost, Case Default_CostLevel_Sell_Number when 6 then 1 "
         "else "
         "0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as Type,0 as "
         "Status,@GoodCode as GoodCode,7 as CostLevelCode,CostLevel_Sell_7 as Cost, Case "
         "Default_CostLevel_Sell_Number when 7 then 1 else 0 end as Def  from GoodCostDiscount where "
         "GoodCode=@GoodCode  union all  select 3 as Type,0 as Status,@GoodCode as GoodCode,8 as "
         "CostLevelCode,CostLevel_Sell_8 as Cost, Case Default_CostLevel_Sell_Number when 8 then 1 else 0 end as "
         "Def  "
         "from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as Type,0 as Status,@GoodCode as "
         "GoodCode,9 as CostLevelCode,CostLevel_Sell_9 as Cost, Case Default_CostLevel_Sell_Number when 9 then 1 "
         "else "
         "0 end as Def  from GoodCostDiscount where GoodCode=@GoodCode  union all  select 3 as Type,0 as "
         "Status,@GoodCode as GoodCode,10 as CostLevelCode,CostLevel_Sell_10 as Cost, Case "
         "Default_CostLevel_Sell_Number when 10 then 1 else 0 end as Def  from GoodCostDiscount where "
         "GoodCode=@GoodCode  ) as T join CostLevel CL ON CL.CostType=1 and T.CostLevelCode = CL.Code ",
         10},
        {"offerSellCost", "{call OfferSellCost(5,10)}", 9},
        {"offerBuyCost", "{call OfferBuyCost(5,10)}", 8},
        {"offerSellCostInACurrency", "{call OfferSellCostCurr(5,10,2)}", 9},
        {"offerBuyCostInACurrency", "{call OfferBuyCostCurr(5,10,2)}", 8},
        {"priceReport",
         "Select G.Code, G.Name,  REPLACE(SUBSTRING(REPLACE(G.abbname, '!', ')('), 2, LEN(G.AbbName)+5), '()', '') "
         "as "
         "AbbName, 2 as Status \t, isnull(GC.CostLevel_Sell_1,0) as F1, isnull(GC.CostLevel_Sell_2,0) as F2, "
         "isnull(GC.CostLevel_Sell_3,0) as F3, isnull(GC.CostLevel_Sell_4,0) as F4, isnull(GC.CostLevel_Sell_5,0) "
         "as "
         "F5 \t, isnull(GC.CostLevel_Sell_6,0) as F6, isnull(GC.CostLevel_Sell_7,0) as F7, "
         "isnull(GC.CostLevel_Sell_8,0) as F8, isnull(GC.CostLevel_Sell_9,0) as F9, isnull(GC.CostLevel_Sell_10,0) "
         "as "
         "F10 , ISNULL(G.ConsumerPrice, 0) AS ConsumerPrice From  GoodInf as G left outer join GoodCostDiscount as "
         "GC "
         "ON GC.GoodCode = G.Code union all Select G.Code, G.Name,  REPLACE(SUBSTRING(REPLACE(G.abbname, '!', "
         "')('), "
         "2, LEN(G.AbbName)+5), '()', '') as AbbName, 1 as Status \t, isnull(GC.CostLevel_Buy_1,0) as F1, "
         "isnull(GC.CostLevel_Buy_2,0) as F2, isnull(GC.CostLevel_Buy_3,0) as F3, isnull(GC.CostLevel_Buy_4,0) as "
         "F4, "
         "isnull(GC.CostLevel_Buy_5,0) as F5 \t, isnull(GC.CostLevel_Buy_6,0) as F6, isnull(GC.CostLevel_Buy_7,0) "
         "as "
         "F7, isnull(GC.CostLevel_Buy_8,0) as F8, isnull(GC.CostLevel_Buy_9,0) as F9, isnull(GC.CostLevel_Buy_10,0) "
         "as F10 , ISNULL(G.ConsumerPrice, 0) AS ConsumerPrice  from GoodInf as G left outer join GoodCostDiscount "
         "as "
         "GC ON GC.GoodCode = G.Code",
         600},
        {"newPriceReportColumn", "Alter Table CostReport Add F11 Decimal(23, 9) ", kNoRows},
        {"priceReportLevels", " SELECT Name, Code FROM costlevel WHERE Code > 0  AND CostType = 1 order by code", 10},
        {"offeredPrices", "EXEC OfferCost 5, 10, NULL, 0", 9}};
}

std::vector<ModuleStatement> categoryStatements() {
    return {
        {"categoryByName", "select * from Category where Name=N'برنج'", 1},
        {"categoryById", "select * from Category where id=101", 1},
        {"categoryByParent", "select * from Category where parent_code=10", 4},
        {"categoryByIdAndName", "select * from Category where id=101 and name=N'برنج'", 1},
        {"categoryOfTheEditor", "SELECT * FROM category Where id = 101", 1},
        {"categoryIsNew", "Select id From category Where (id = 101)", 1},
        {"categoryIsThere", "select id from Category where id = 101", 1},
        {"newCategoryCode",
         "select IsNull(Max(Code),0)+1 from ( Select IsNull(Max(id),0)+1 as Code From category union all select "
         "Max(CAST(Code AS BIGINT)) as Code from CodeLock_TBl where Status = 130 ) as t1",
         1},
        {"categoryName", " SELECT dbo.GetCategoryName(101) AS CategoryName", 1},
        {"childrenOfACategory", "select * from Category where parent_code =10", 4},
        {"branch", "select dbo.Category_SubNodes(10,1,0) as value", 1},
        {"branchWithoutAName", "select dbo.Category_SubNodes(10,1,0)", 1},
        {"parentOfACategory", "select Parent_code from category WHERE id =101", 1},
        {"insertACategory",
         "insert into "
         "category(id,name,[desc],create_date,modify_date,create_user,modify_user,parent_code,type,level) "
         "values(900,N'آزمون','شرح','1405/08/30','1405/08/30',1,1,10,-1,3)",
         kNoRows},
        {"updateACategory",
         "update category set id=101,name=N'برنج و "
         "دانه',[desc]='',modify_date='1405/08/30',modify_user=1,Parent_code=10,type=-1,level=3 where id = 101",
         kNoRows},
        {"goodLinks", "select * from Kala_category", 300},
        {"personLinks", "select * from person_category", 54},
        {"activations", "select * from DefaultUserCategory", 3},
        {"oneActivation", "select * from DefaultUserCategory where ID =2", 1},
        {"deactivateABranch",
         "Delete From DefaultUserCategory where DBO.ExistsIn_FNC(CODE_CATEGORY,'10,101,')<>-1 AND USER_CODE=1",
         kNoRows},
        {"categoryIsActive", "select * from DefaultUserCategory where user_code=1 and Code_category=10 and active=1 ",
         1},
        {"categoryIsDefault",
         "select * from DefaultUserCategory where DBO.ExistsIn_FNC(CODE_CATEGORY,'10,101,')<>-1 and active=1 ", 1},
        {"activationsOfAList", "select * from DefaultUserCategory where Code_category in (10,101)", 1},
        {"usedByGoods", "select * from kala_Category where tmp <>2 and  Category_code in (101,102)", 13},
        {"usedByPersons", "select * from person_Category where tmp <>2 and  Category_code in (7,61)", 15},
        {"deepestOfABranch",
         "select max(level)as value from category where dbo.ExistsIn_FNC(cast(id as varchar),'10,101,102,')<>0", 1},
        {"newParent", "select * from category where id = 10", 1},
        {"deleteABranch", "Delete From Category where id in (10,101,102,103,104)", kNoRows},
        {"deleteActivationsOfABranch", "Delete From DefaultUserCategory where code_category in (10,101,102,103,104)",
         kNoRows},
        {"removeAnActivation", "delete from defaultUserCategory where user_code=1 and Code_category=10", kNoRows},
        {"activationOfAnyUser", "select person,code_category from DefaultUserCategory where code_category=10", 1},
        {"noLongerForPersons", "update defaultUserCategory set Person=0 where user_code=1", kNoRows},
        {"forGoods", "update defaultUserCategory set Good=1 where user_code=1 and Code_category=10", kNoRows},
        {"insertForPersons", "insert into defaultUserCategory(Code_category,User_code,Person) values(11,1,1)", kNoRows},
        {"insertForGoods", "insert into defaultUserCategory(Code_category,User_code,Good) values(11,2,1)", kNoRows},
        {"activeOfAUser", "select * from DefaultUserCategory where User_code=1 and active=1 ", 1},
        {"noneActive", "update DefaultUserCategory set active=0 where User_code=1", kNoRows},
        {"activationOfAUser", "select * from DefaultUserCategory where User_code=1 and code_category=10", 1},
        {"activate", "insert into DefaultUserCategory(code_category,user_code,active) values(12,1,1)", kNoRows},
        {"deactivate", "delete DefaultUserCategory where user_code=1and code_category=10", kNoRows},
        {"setActive", "update DefaultUserCategory set active=1 where User_code=1 and code_category=10", kNoRows},
        {"treeLevel1",
         "select cat.id, name, Parent_code,level,active,person,Good from category cat left join DefaultUserCategory "
         "on cat.id = DefaultUserCategory.Code_category where level =1",
         8},
        {"treeLevel2",
         "select cat.id, name, Parent_code,level,active,person,Good from category cat left join DefaultUserCategory "
         "on cat.id = DefaultUserCategory.Code_category where level =2",
         22},
        {"treeLevel3",
         "select cat.id, name, Parent_code,level,active,person,Good from category cat left join DefaultUserCategory "
         "on cat.id = DefaultUserCategory.Code_category where level =3",
         32}};
}

std::vector<ModuleStatement> tagStatements() {
    return {{"tagsAndColours", "select *,colors.cl_code from tags inner join colors on TagS.color_code=colors.code", 5},
            {"tagList", "select * from tags inner join colors on TagS.color_code=colors.code order by tags.Code", 5},
            {"allTags", "select * from Tags", 5},
            {"oneTag", "SELECT * FROM Tags Where code = 3", 1},
            {"newTagCode", "select isnull(max(code)+1,1) as code from tags", 1},
            {"tagCount", "select Count(code) from tags", 1},
            {"freeColours",
             "select colors.code,colors.[H-img] from colors where  colors.code not in (Select TagS.color_code  "
             "from TagS)",
             7},
            {"freeColoursOfANewTag",
             "select colors.code,colors.[H-img] from colors where colors.code not in (Select TagS.color_code  "
             "from TagS)",
             7},
            {"freeColoursOfATag",
             "select colors.code,colors.[H-img] from colors where  colors.code not in (Select TagS.color_code  "
             "from TagS "
             "where TagS.code <> 3 )",
             8},
            {"tagName", "select code,name from tags where code not in (3) and name = 'پرفروش'", 1},
            {"tagIsNew", "Select Code From tags Where (Code = 3)", 1},
            {"goodsOfATag", "select * from GoodInf where tags like '%,1,%'", 4},
            {"personsOfATag", "select * from PerInf where tags like '%,4,%'", 6},
            {"insertATag", "insert into tags values(6,'تازه','6',null,'1405/08/30','1405/08/30',1,1,null,'')", kNoRows},
            {"tagToEdit", "Select * from tags where Code = 3", 1},
            {"deleteATag", "delete from tags where code = 3", kNoRows}};
}

std::vector<ModuleStatement> selectedListStatements() {
    return {
        {"selectedLists",
         "Select *,Case Type when 0 then 'کالاها' when 1 then 'اشخاص' end as TypeName,Case Enable when 0 then 'غير "
         "فعال' when 1 then 'فعال' end as Enabled  from selectedlists",
         4},
        {"oneSelectedList", "SELECT * FROM SelectedLists Where Code = 2 ", 1},
        {"selectedListTitle", "select Title from SelectedLists where Title = 'مشتریان ویژه'", 1},
        {"newSelectedListCode",
         "Select IsNull(Max(Code),0)+1 as MaxCode from (Select Max(Code) as Code from SelectedLists  UNION "
         "ALL Select "
         "MAX(CAST(Code AS BIGINT)) as Code FROM CodeLock_TBL WHERE Status = 126) T1",
         1},
        {"deleteASelectedList", "Delete from SelectedLists where Code=2", kNoRows},
        {"enableASelectedList", "Update SelectedLists set Enable=1 where Code=2", kNoRows},
        {"disableSelectedLists", "Update SelectedLists set Enable=0 where Type=0", kNoRows},
        {"membersOfAGoodsList",
         "select SL.Radif,G.Code,G.Name,(Select Name from Units where code=G.Unit) as Unit1,(Select Name from Units "
         "where code=G.Unit2) as Unit2  from SelectedList_Detail as SL join Goodinf as G on SL.Code=G.Code  where "
         "SL.SL_code=1 order by Radif ",
         7},
        {"membersOfAPersonsList",
         "select SL.Radif,P.Code,P.FullName as Name,'' as Unit1,'' as Unit2  from SelectedList_Detail as SL join "
         "Perinf as P on SL.Code=P.Code  where SL.SL_Code=3 Order by Radif ",
         5},
        {"nextPlaceInASelectedList",
         "Select IsNull(Max(Radif),0)+1 as MaxRadif from SelectedList_Detail where SL_Code=1", 1},
        {"allMembers", "Select * from SelectedList_Detail where SL_Code=1", 7},
        {"deleteMembers", "Delete from SelectedList_Detail where SL_Code=1 and Code in(1,7)", kNoRows},
        {"deleteAllMembers", "Delete from SelectedList_Detail where SL_Code=1", kNoRows}};
}

std::vector<ModuleStatement> goodStatements() {
    return {
        {"stockOfTheSpan",
         "select * from (SELECT 97 AS Code, 1 AS Anbar, -5 AS Mogodi ) as S join Kardex as k on k.kala = S.Code and "
         "(ISNULL(k.RemainInAnbar, 0) + S.mogodi) < 0  and (      (k.[Date] >= '1405/01/01' and k.[Date] < "
         "'1405/08/29')       or       (k.[Date] = '1405/08/29' and k.Global_ID < 131)      ) and S.Anbar = "
         "K.Anbar ",
         0},
        {"stockUpToADay",
         "select sq.Code, sq.Mogodi + ISNULL(K.Mogodi, 0) from  (SELECT 97 AS Code, 1 AS Anbar, -5 AS Mogodi) sq  "
         "LEFT JOIN (Select kala as code, Anbar, SUM(Tedad) as Mogodi from Kardex WHERE Date <= '1405/08/29' group "
         "by "
         "kala, Anbar) K ON sq.Code = K.Code AND sq.Anbar = K.Anbar WHERE (sq.mogodi + ISNULL(K.Mogodi, 0)) < 0",
         0},
        {"saleLevels", "SELECT Code, Name FROM CostLevel WHERE CostType = 1 AND Code > 0 ORDER BY Code", 10},
        {"barcodeLayouts",
         "SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = 13 AND SUBSTRING('2800097012503' , ConstantStart, "
         "ConstantCount) = ConstantCode  ",
         1},
        {"goodByItsNumberOnTheScales",
         "SELECT TOP 1 Code FROM goodInf WHERE AbbName LIKE '%!00097!%' ORDER BY Code DESC", 1},
        {"goodByItsCode", "Select Code From goodInf Where Code=00097", 1},
        {"priceForAPerson", "{call GetDefaultCostLevel(10,00097,0)}", 1},
        {"itemsOfTheScales",
         " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , "
         "sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 1 "
         "JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group1 WHERE Group1 IN (97,98,61) "
         "\n\r"
         "UNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, "
         "BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON "
         "sg.GroupNo = 2 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group2 WHERE Group2 "
         "IN "
         "(97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS "
         "ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups "
         "sg "
         "ON sg.GroupNo = 3 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group3 WHERE "
         "Group3 "
         "IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type "
         "AS "
         "ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups "
         "sg "
         "ON sg.GroupNo = 4 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group4 WHERE "
         "Group4 "
         "IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type "
         "AS "
         "ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups "
         "sg "
         "ON sg.GroupNo = 5 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group5 WHERE "
         "Group5 "
         "IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type "
         "AS "
         "ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups "
         "sg "
         "ON sg.GroupNo = 6 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group6 WHERE "
         "Group6 "
         "IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type "
         "AS "
         "ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups "
         "sg "
         "ON sg.GroupNo = 7 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group7 WHERE "
         "Group7 "
         "IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type "
         "AS "
         "ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups "
         "sg "
         "ON sg.GroupNo = 8 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group8 WHERE "
         "Group8 "
         "IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type "
         "AS "
         "ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups "
         "sg "
         "ON sg.GroupNo = 9 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group9 WHERE "
         "Group9 "
         "IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type "
         "AS "
         "ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups "
         "sg "
         "ON sg.GroupNo = 10 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group10 WHERE "
         "Group10 IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, "
         "Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN "
         "Scales_Groups sg ON sg.GroupNo = 11 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = "
         "Group11 WHERE Group11 IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, "
         "price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM "
         "[Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 12 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN "
         "Items "
         "ON Items.Code = Group12 WHERE Group12 IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS "
         "GoodCode, "
         "name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo  "
         " "
         "FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 13 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN "
         "Items ON Items.Code = Group13 WHERE Group13 IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS "
         "GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, "
         "sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 14 JOIN Scales sc ON sg.ScaleCode = "
         "sc.Number JOIN Items ON Items.Code = Group14 WHERE Group14 IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, "
         "Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, "
         "items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 15 JOIN Scales "
         "sc "
         "ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group15 WHERE Group15 IN (97,98,61) \n\rUNION "
         "ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , "
         "sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 16 "
         "JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group16 WHERE Group16 IN "
         "(97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS "
         "ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups "
         "sg "
         "ON sg.GroupNo = 17 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group17 WHERE "
         "Group17 IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, "
         "Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN "
         "Scales_Groups sg ON sg.GroupNo = 18 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = "
         "Group18 WHERE Group18 IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS GoodCode, name1, name2, "
         "price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM "
         "[Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 19 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN "
         "Items "
         "ON Items.Code = Group19 WHERE Group19 IN (97,98,61) \n\rUNION ALL \n\r SELECT PlU, Items.Code AS "
         "GoodCode, "
         "name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo  "
         " "
         "FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 20 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN "
         "Items ON Items.Code = Group20 WHERE Group20 IN (97,98,61) \n",
         5},
        {"priceForAPersonByName", "GetDefaultCostLevel 10,97,0", 1},
        {"store", "SELECT * FROM Stores s WHERE s.Code = 1", 1},
        {"good", "SELECT * FROM GoodInf gi WHERE gi.Code = 5", 1},
        {"unitsOfAGood",
         " SELECT g.Code, g.Name,    (SELECT u.Name FROM Units u WHERE u.Code = g.Unit) AS Unit1,    (SELECT u.Name "
         "FROM Units u WHERE u.Code = g.Unit2) AS Unit2  FROM GoodInf g WHERE g.Code = 5",
         1},
        {"particularsOfAGood", "EXEC GoodParticularInfo_SP @GoodCode = 5", 1},
        {"stockThatWouldNotDo",
         "DECLARE @Result int, @Names nvarchar(max), @Codes nvarchar(max) EXEC @Result = CheckNegativeInventory_SP 0, N'SELECT 97 AS Code, 1 AS Anbar, -100000 AS Mogodi', N'1405/08/29', 0, 0, @Names OUTPUT, @Codes OUTPUT SELECT @Result AS Result, @Names AS Names, @Codes AS Codes",
         1}};
}

std::vector<ModuleStatement> personStatements() {
    return {{"currencyOfAPerson", "SELECT ISNULL(NULLIF(CurrDefault, 0), 1) FROM PerInf WHERE Code = 9", 1},
            {"percentOfASalesperson", "select Code, [percent] From perinf where code = 3", 1},
            {"salespersonOfAPerson", "select Code,VisitorCode From perinf where code = 9", 1},
            {"percentOfAPersonsSalesperson", "select Code,[percent] From perinf where code = 4", 1},
            {"provinces", "SELECT OstanCode, Ostan FROM Zone GROUP BY OstanCode, Ostan ORDER BY OstanCode", 31},
            {"cities", "SELECT ShahrCode, Shahr FROM Zone WHERE OstanCode = 8 ORDER BY ShahrCode", 7}};
}

std::vector<ModuleStatement> goodDetailStatements() {
    return {
        {"serialsThatLeft",
         "SELECT * FROM GoodDetailKardex dk INNER JOIN GoodDetailValues dv ON dk.DetailValueID = dv.ID INNER JOIN "
         "GoodDetailValueDetails dvd ON dv.ID = dvd.DetailValueID INNER JOIN DetailTypes dt ON dvd.DetailID = dt.ID "
         "WHERE dt.DetailType = 3 AND dk.OperationType IN (1, 5, 6, 9) AND dk.DetailValueID IN ( SELECT "
         "dk1.DetailValueID FROM GoodDetailKardex dk1 INNER JOIN GoodDetailValues dv1 ON dk1.DetailValueID = dv1.ID "
         "INNER JOIN GoodDetailValueDetails dvd1 ON dv1.ID = dvd1.DetailValueID INNER JOIN DetailTypes dt1 ON "
         "dvd1.DetailID = dt1.ID WHERE dt1.DetailType = 3 AND dk1.OperationType IN (4) AND dk1.OperationCode = 2 "
         "AND "
         "dk1.ID < dk.ID)",
         18},
        {"issuedDetails",
         "\tSELECT  ID, DetailValueID, StoreCode, GoodCode, AnbarCode, DetailTitle1, DetailTitle2, DetailTitle3, "
         "DetailTitle4, DetailTitle5,  Cast(Amount1 as float) as Amount1, Cast(Amount2 as float) as Amount2, "
         "Cast(TotalAmount as float) as TotalAmount, Length, Width, Cast(Amount3 as float) as Amount3, "
         "Cast(Amount1_Exit as float) as Amount1_Exit, Cast(Amount2_Exit as float) as Amount2_Exit, "
         "Cast(TotalAmount_Exit as float) as TotalAmount_Exit, Length_Exit, Width_Exit, Cast(Amount3_Exit as float) "
         "as Amount3_Exit, OperationType, OperationCode, OperationRow, ForeignOperationCode, ComIndex, Selected, "
         "Tmp  "
         "FROM GoodDetailKardexExit_Temp  WHERE Tmp IN (2) AND StoreCode = 2 AND GoodCode = 295      AND "
         "OperationCode = 1      AND OperationType = 1      AND OperationRow = 1 AND Amount1_Exit > 0",
         0},
        {"issuedDetailsOfARow",
         "\tSELECT * FROM GoodDetailKardexExit_Temp  WHERE Tmp IN (0) AND StoreCode = 2      AND GoodCode      = "
         "295      AND OperationCode = 1      AND OperationType = 1      AND OperationRow  = 1      AND "
         "Amount1_Exit "
         "> 0",
         0},
        {"detailsOfAGood", " EXEC dbo.GoodDetail_Select_CheckGoodDetailRelation    @GoodCode = 295", 2},
        {"detailsOfAGoodWithoutAny", " EXEC dbo.GoodDetail_Select_CheckGoodDetailRelation    @GoodCode = 5", 0},
        {"goodInSquareMetres",
         " EXEC dbo.GoodDetail_Select_CheckGoodUnit_MetreMoraba      @GoodCode = 5   , @Unit     = 5", 1},
        {"titleOfACombination", " EXEC dbo.GoodDetail_Select_GetGoodDetailTitle     @GoodDetailValueID = 29501", 1},
        {"combinationBySerialAndShade",
         " EXEC dbo.GetGoodDetailValuesID     @GoodCode           = 295  , @DetailID1          = 1  , @Detail1Value1      = 'SN306507'  , @Detail1Value2      = ''  , @ConditionOperator1 = ''  , @DetailID2          = 3  , @Detail2Value1      = 'طوسی'  , @Detail2Value2      = ''  , @ConditionOperator2 = ''  , @DetailID3          = 0  , @Detail3Value1      = ''  , @Detail3Value2      = ''  , @ConditionOperator3 = ''  , @DetailID4          = 0  , @Detail4Value1      = ''  , @Detail4Value2      = ''  , @ConditionOperator4 = ''  , @DetailID5          = 0  , @Detail5Value1      = ''  , @Detail5Value2      = ''  , @ConditionOperator5 = ''",
         1},
        {"combinationByBarcodeAlone",
         " EXEC dbo.GetGoodDetailValuesID     @GoodCode      = 251  , @DetailID1     = 2  , @Detail1Value1 = 'D25101'  , @Detail1Value2 = 'D25101'",
         1},
        {"newCombination",
         " EXEC dbo.InsertGoodDetailValuesID     @GoodCode     = 295  , @DetailID1    = 1  , @DetailValue1 = 'SN9'  , @DetailID2    = 3  , @DetailValue2 = 'آبی'  , @DetailID3    = 0  , @DetailValue3 = ''  , @DetailID4    = 0  , @DetailValue4 = ''  , @DetailID5    = 0  , @DetailValue5 = ''",
         kNoRows},
        {"stockOfACombination",
         " EXEC dbo.GetGoodDetailKardex_Mojodi     @Anbar              = 2  , @GoodCode           = 295  , @DetailID1          = 1  , @Detail1Value1      = 'SN306507'  , @Detail1Value2      = ''  , @ConditionOperator1 = ''  , @DetailID2          = 3  , @Detail2Value1      = 'طوسی'  , @Detail2Value2      = ''  , @ConditionOperator2 = ''  , @DetailID3          = 0  , @Detail3Value1      = ''  , @Detail3Value2      = ''  , @ConditionOperator3 = ''  , @DetailID4          = 0  , @Detail4Value1      = ''  , @Detail4Value2      = ''  , @ConditionOperator4 = ''  , @DetailID5          = 0  , @Detail5Value1      = ''  , @Detail5Value2      = ''  , @ConditionOperator5 = ''",
         1},
        {"goodHasCombinations", " EXEC dbo.GoodDetail_Select_CheckGoodDetailExists    @GoodCode = 295", 1},
        {"detailsHaveMoved", " EXEC dbo.GoodDetail_Select_CheckGoodDetailKardexExists    @GoodCode = 295", 1},
        {"goodHasASerial", " EXEC dbo.CheckExistsGoodDetailSerial_InGood    @GoodCode = 295", 1},
        {"operationMovedDetails", " EXEC dbo.ExistsGoodDetails_Operation    @OperationCode = 2 , @OperationType = 4",
         1},
        {"goodsOfABarcode", " EXEC dbo.GoodDetail_Select_CheckBarcodeForThisGoodIsValid      @Barcode = 'D25101'", 1},
        {"goodsOfTheirOwnBarcode",
         " EXEC dbo.GoodDetail_Select_CheckBarcodeForOtherGoodsIsSaved      @Barcode = '6262620029500'", 1},
        {"otherGoodsOfASerial",
         " EXEC dbo.GoodDetail_Select_CheckSerialForOtherGoods      @Serial   = 'SN306507'   , @GoodCode = 296", 1},
        {"combinationsOfABarcode", " EXEC dbo.GoodDetail_Select_CheckBarcodeInGoodDetail      @Barcode = 'D25101'", 1},
        {"goodOfASerial", " EXEC dbo.GoodDetail_Select_GetGoodCodeWithSerial      @Serial = 'SN306507'", 1},
        {"goodOfABarcode", " EXEC dbo.GoodDetail_Select_GetGoodCodeWithBarcode      @Barcode = 'D25101'", 1},
        {"detailOfABarcode",
         " EXEC dbo.GoodDetail_Select_CheckExistsGoodDetailWithDetailBarcode      @Barcode = 'D25101'", 1},
        {"detailsOfAGoodsBarcode",
         " EXEC dbo.GoodDetail_Select_CheckExistsGoodDetailWithGoodBarcode      @Barcode = '6262620029500'", 1},
        {"particularsByABarcodeOfDetails",
         " EXEC dbo.GoodDetail_Select_GetGoodInf_ByGoodDetailBarcode @Barcode = 'D25101'", 1},
        {"particularsByAGoodsBarcode",
         " EXEC dbo.GoodDetail_Select_GetGoodInf_ByGoodBarcode      @Barcode = '6262620029500'", 1},
        {"issueOfASerial",
         " EXEC dbo.GoodDetail_Select_GetGoodDetailIDFromExitGoodDetailTemp      @Serial = 'SN306507'", 0},
        {"detailsThatAreBarcodes", " EXEC dbo.GoodDetail_Select_ReturnBarcodeDetailValue       @GoodCode = 251", 1},
        {"detailOfASerial",
         " EXEC dbo.GoodDetail_Select_ReturnSerialDetailValue       @Serial   = 'SN306507'    , @GoodCode = 295", 1}};
}

std::vector<ModuleStatement> voucherStatements() {
    return {
        {"voucherConflicts", "EXEC VoucherConflictAccountList_sp 1, 1", 5},
        {"voucherConflictsWhereStockMayGoNegative", "EXEC VoucherConflictAccountList_sp 0, 1", 4},
        {"openingVoucher",
         "DECLARE @Result int EXEC @Result = AutoVoucherFirstPriodGoods 0, 2000, '1405/01/01', NULL, NULL, 0, 0, NULL SELECT @Result AS Result",
         1},
        {"openingVoucherOfAFewGoods", "AutoVoucherFirstPriodGoods 1, 2000, '1405/01/01', NULL, NULL, 1, 9, '2,5,7'",
         kNoRows}};
}

}  // namespace basalt::host
