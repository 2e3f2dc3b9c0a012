-- Serials of devices, batches of dairy by date, and tiles by shade, with what came in and what was sold of them.

INSERT INTO dbo.DetailTypes (ID, Title, DetailType)
SELECT N.ID, N.Title, N.DetailType
FROM (
    SELECT 1 AS ID, N'سریال' AS Title, 3 AS DetailType
    UNION ALL SELECT 2, N'بارکد', 4
    UNION ALL SELECT 3, N'رنگ', 1
    UNION ALL SELECT 4, N'تاریخ انقضا', 2
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.DetailTypes)
go

INSERT INTO dbo.GoodDetailRelation (GoodCode, Slot, DetailID)
SELECT G.Code, R.Slot, T.ID
FROM (
    VALUES (295, 300, 1, 1), (295, 300, 2, 3), (125, 130, 1, 4), (251, 254, 1, 2), (251, 254, 2, 3)
) AS R(FromCode, ToCode, Slot, DetailID)
INNER JOIN dbo.GoodInf AS G ON G.Code BETWEEN R.FromCode AND R.ToCode
INNER JOIN dbo.DetailTypes AS T ON T.ID = R.DetailID
WHERE NOT EXISTS (SELECT 1 FROM dbo.GoodDetailRelation)
go

-- Five pieces of each good that has details. Piece P of good G has the combination number G * 10 + P.
IF NOT EXISTS (SELECT 1 FROM dbo.GoodDetailValues)
BEGIN
    SET IDENTITY_INSERT dbo.GoodDetailValues ON
    INSERT INTO dbo.GoodDetailValues (ID, GoodCode)
    SELECT R.GoodCode * 10 + P.No, R.GoodCode
    FROM dbo.GoodDetailRelation AS R
    CROSS JOIN (VALUES (1), (2), (3), (4), (5)) AS P(No)
    WHERE R.Slot = 1
    ORDER BY R.GoodCode, P.No
    SET IDENTITY_INSERT dbo.GoodDetailValues OFF

    INSERT INTO dbo.GoodDetailValueDetails (DetailValueID, Slot, DetailID, Value)
    SELECT V.ID, R.Slot, R.DetailID,
        CASE T.DetailType
            WHEN 3 THEN N'SN' + CAST(V.ID * 7 + 100000 AS nvarchar(10))
            WHEN 4 THEN N'D' + CAST(V.ID AS nvarchar(10))
            WHEN 2 THEN N'1405/' + RIGHT(N'0' + CAST(8 + V.ID % 10 % 5 AS nvarchar(2)), 2) + N'/15'
            ELSE CASE V.ID % 3 WHEN 0 THEN N'سفید' WHEN 1 THEN N'مشکی' ELSE N'طوسی' END END
    FROM dbo.GoodDetailValues AS V
    INNER JOIN dbo.GoodDetailRelation AS R ON R.GoodCode = V.GoodCode
    INNER JOIN dbo.DetailTypes AS T ON T.ID = R.DetailID
    ORDER BY V.ID, R.Slot
END
go

-- All five came in with the first stock of the shop, tiles in sheets of 3 by 1.2 metres; the first of each was sold.
INSERT INTO dbo.GoodDetailKardex (
    DetailValueID, StoreCode, GoodCode, Amount1, TotalAmount, [Length], Width, Amount3, OperationType, OperationCode,
    OperationRow)
SELECT V.ID, S.Code, V.GoodCode, 1, 1,
    CASE WHEN G.Unit = 9 THEN 3 ELSE 0 END, CASE WHEN G.Unit = 9 THEN 1.2 ELSE 0 END,
    CASE WHEN G.Unit = 9 THEN 3.6 ELSE 0 END, O.Code, 2, V.GoodCode
FROM dbo.GoodDetailValues AS V
INNER JOIN dbo.GoodInf AS G ON G.Code = V.GoodCode
INNER JOIN dbo.Stores AS S ON S.Code = 2
INNER JOIN dbo.OperationTypes AS O ON O.Code = 4 OR (O.Code = 1 AND V.ID % 10 = 1)
WHERE NOT EXISTS (SELECT 1 FROM dbo.GoodDetailKardex)
ORDER BY O.Direction DESC, V.ID
go

-- Goods in square metres are followed by length and width.
INSERT INTO dbo.HostSettings (Name, Value)
SELECT N.Name, N.Value
FROM (
    SELECT N'DetailMeasured' AS Name, N'1' AS Value
    UNION ALL SELECT N'MetreMorabaUnit', N'9'
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.HostSettings AS P WHERE P.Name = N.Name)
    AND EXISTS (SELECT 1 FROM dbo.Units WHERE Code = 9 AND Name = N'متر مربع')
go
