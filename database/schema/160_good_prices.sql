-- The price matrix a row a price: Status 0 is sale, 1 purchase; Cost is null where the good has no such price. DefaultCode is the
-- good's own level in that direction, 1 where it names none.

IF OBJECT_ID(N'dbo.GoodPrices', N'V') IS NOT NULL
    DROP VIEW dbo.GoodPrices
go

CREATE VIEW dbo.GoodPrices
AS
SELECT P.GoodCode, 0 AS Status, L.Code AS CostLevelCode, L.Name,
    CASE L.Code
        WHEN 1 THEN P.CostLevel_Sell_1 WHEN 2 THEN P.CostLevel_Sell_2
        WHEN 3 THEN P.CostLevel_Sell_3 WHEN 4 THEN P.CostLevel_Sell_4
        WHEN 5 THEN P.CostLevel_Sell_5 WHEN 6 THEN P.CostLevel_Sell_6
        WHEN 7 THEN P.CostLevel_Sell_7 WHEN 8 THEN P.CostLevel_Sell_8
        WHEN 9 THEN P.CostLevel_Sell_9 WHEN 10 THEN P.CostLevel_Sell_10 END AS Cost,
    CASE WHEN P.Default_CostLevel_Sell_Number BETWEEN 1 AND 10 THEN P.Default_CostLevel_Sell_Number ELSE 1 END AS DefaultCode
FROM dbo.GoodCostDiscount AS P
INNER JOIN dbo.CostLevel AS L ON L.CostType = 1 AND L.Code BETWEEN 1 AND 10
UNION ALL
SELECT P.GoodCode, 1 AS Status, L.Code AS CostLevelCode, L.Name,
    CASE L.Code
        WHEN 1 THEN P.CostLevel_Buy_1 WHEN 2 THEN P.CostLevel_Buy_2
        WHEN 3 THEN P.CostLevel_Buy_3 WHEN 4 THEN P.CostLevel_Buy_4
        WHEN 5 THEN P.CostLevel_Buy_5 WHEN 6 THEN P.CostLevel_Buy_6
        WHEN 7 THEN P.CostLevel_Buy_7 WHEN 8 THEN P.CostLevel_Buy_8
        WHEN 9 THEN P.CostLevel_Buy_9 WHEN 10 THEN P.CostLevel_Buy_10 END AS Cost,
    CASE WHEN P.Default_CostLevel_Buy_Number BETWEEN 1 AND 10 THEN P.Default_CostLevel_Buy_Number ELSE 1 END AS DefaultCode
FROM dbo.GoodCostDiscount AS P
INNER JOIN dbo.CostLevel AS L ON L.CostType = 1 AND L.Code BETWEEN 1 AND 10
go
