-- Three scales: two at the fruit counter, one at the nuts.

IF NOT EXISTS (SELECT 1 FROM dbo.Scales)
BEGIN
    INSERT INTO dbo.Scales (Number, IP, ipRange)
    VALUES (1, N'192.168.10.21', 1), (2, N'192.168.10.22', 1), (3, N'192.168.20.21', 2)

    INSERT INTO dbo.Scales_Groups (GroupNo, ScaleCode)
    VALUES (1, 1), (1, 2), (2, 3)
END
go

-- What is sold by weight, at the retail price.
INSERT INTO dbo.Items (Code, name1, name2, price, [type], BarCode, costlevel_Type)
SELECT G.Code, LEFT(G.Name, 50), N'', CAST(C.CostLevel_Sell_1 AS int), 0, N'28' + RIGHT(N'00000' + CAST(G.Code AS nvarchar(5)), 5), 1
FROM dbo.GoodInf AS G
INNER JOIN dbo.GoodCostDiscount AS C ON C.GoodCode = G.Code AND C.CostLevel_Sell_1 IS NOT NULL
INNER JOIN dbo.Units AS U ON U.Code = G.Unit AND U.Name = N'کیلوگرم'
WHERE NOT EXISTS (SELECT 1 FROM dbo.Items)
ORDER BY G.Code
go

-- Group 1 has fruit on the keys from 1 and vegetables behind them, group 2 nuts; key 1 of both groups differs.
INSERT INTO dbo.[Group-PLU] (PlU, Group1, Group2)
SELECT F.PlU, F.Code, N.Code
FROM (
    SELECT ROW_NUMBER() OVER (ORDER BY Code) AS PlU, Code FROM dbo.Items WHERE Code > 96
) AS F
LEFT JOIN (
    SELECT ROW_NUMBER() OVER (ORDER BY Code) AS PlU, Code FROM dbo.Items WHERE Code <= 96
) AS N ON N.PlU = F.PlU
WHERE NOT EXISTS (SELECT 1 FROM dbo.[Group-PLU])
ORDER BY F.PlU
go
