-- Serials of devices, batches of dairy by date, and tiles by shade, with what came into the shop and what was sold of them, as
-- the ledger has it.

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

-- The central store keeps closed boxes; details are written down in the shop, where they are opened. There the first stock and
-- each transfer of the ledger bring what they bring: a device with a serial is a combination by itself, dairy and tiles are one
-- combination a document. Number P of good G has the combination number G * 100 + P. What was there first is sold first.
IF NOT EXISTS (SELECT 1 FROM dbo.GoodDetailValues) AND NOT EXISTS (SELECT 1 FROM dbo.GoodDetailKardex)
BEGIN
    -- Before: what went in, or out, of the good in the rows before this one.
    DECLARE @Moves TABLE (
        GoodCode int, Serial bit, Incoming bit, Amount int, Before int, RowNo int, OperationType int, OperationCode int,
        OperationRow int)
    INSERT INTO @Moves (
        GoodCode, Serial, Incoming, Amount, Before, RowNo, OperationType, OperationCode, OperationRow)
    SELECT M.kala, M.Serial, M.Incoming, M.Amount,
        SUM(M.Amount) OVER (
            PARTITION BY M.kala, M.Incoming ORDER BY M.[Date], M.Global_ID, M.OperationRow ROWS UNBOUNDED PRECEDING)
            - M.Amount,
        ROW_NUMBER() OVER (PARTITION BY M.kala, M.Incoming ORDER BY M.[Date], M.Global_ID, M.OperationRow),
        M.OperationType, M.OperationCode, M.OperationRow
    FROM (
        SELECT K.kala, CASE WHEN T.DetailType = 3 THEN 1 ELSE 0 END AS Serial, CASE WHEN K.Tedad > 0 THEN 1 ELSE 0 END AS Incoming,
            CAST(ABS(K.Tedad) AS int) AS Amount, K.[Date], K.Global_ID, K.OperationType, K.OperationCode, K.OperationRow
        FROM dbo.Kardex AS K
        INNER JOIN dbo.GoodDetailRelation AS R ON R.GoodCode = K.kala AND R.Slot = 1
        INNER JOIN dbo.DetailTypes AS T ON T.ID = R.DetailID
        WHERE K.Anbar = 2
    ) AS M

    DECLARE @Parts TABLE (
        DetailValueID int, GoodCode int, Incoming bit, Amount int, OperationType int, OperationCode int, OperationRow int)
    INSERT INTO @Parts (DetailValueID, GoodCode, Incoming, Amount, OperationType, OperationCode, OperationRow)
    SELECT M.GoodCode * 100 + N.No, M.GoodCode, M.Incoming, 1, M.OperationType, M.OperationCode, M.OperationRow
    FROM @Moves AS M
    INNER JOIN (
        SELECT H.No * 10 + U.No AS No
        FROM (VALUES (0), (1), (2), (3), (4), (5), (6), (7), (8), (9)) AS H(No)
        CROSS JOIN (VALUES (0), (1), (2), (3), (4), (5), (6), (7), (8), (9)) AS U(No)
    ) AS N ON N.No > M.Before AND N.No <= M.Before + M.Amount
    WHERE M.Serial = 1

    INSERT INTO @Parts (DetailValueID, GoodCode, Incoming, Amount, OperationType, OperationCode, OperationRow)
    SELECT M.GoodCode * 100 + CASE WHEN M.Incoming = 1 THEN M.RowNo ELSE 1 END, M.GoodCode, M.Incoming, M.Amount,
        M.OperationType, M.OperationCode, M.OperationRow
    FROM @Moves AS M
    WHERE M.Serial = 0

    SET IDENTITY_INSERT dbo.GoodDetailValues ON
    INSERT INTO dbo.GoodDetailValues (ID, GoodCode)
    SELECT P.DetailValueID, P.GoodCode
    FROM @Parts AS P
    WHERE P.Incoming = 1
    ORDER BY P.DetailValueID
    SET IDENTITY_INSERT dbo.GoodDetailValues OFF

    INSERT INTO dbo.GoodDetailValueDetails (DetailValueID, Slot, DetailID, Value)
    SELECT V.ID, R.Slot, R.DetailID,
        CASE T.DetailType
            WHEN 3 THEN N'SN' + CAST(V.ID * 7 + 100000 AS nvarchar(10))
            WHEN 4 THEN N'D' + CAST(V.ID AS nvarchar(10))
            WHEN 2 THEN N'1405/' + RIGHT(N'0' + CAST(8 + V.ID % 5 AS nvarchar(2)), 2) + N'/15'
            ELSE CASE V.GoodCode
                WHEN 251 THEN N'سفید'
                WHEN 252 THEN N'طرح سنگ'
                WHEN 253 THEN N'کرم'
                WHEN 254 THEN N'طوسی'
                ELSE CASE V.ID % 3 WHEN 0 THEN N'سفید' WHEN 1 THEN N'مشکی' ELSE N'طوسی' END END END
    FROM dbo.GoodDetailValues AS V
    INNER JOIN dbo.GoodDetailRelation AS R ON R.GoodCode = V.GoodCode
    INNER JOIN dbo.DetailTypes AS T ON T.ID = R.DetailID
    ORDER BY V.ID, R.Slot

    -- Of tiles the measures of one, in metres, and the area.
    INSERT INTO dbo.GoodDetailKardex (
        DetailValueID, StoreCode, GoodCode, Amount1, TotalAmount, [Length], Width, Amount3, OperationType, OperationCode,
        OperationRow)
    SELECT P.DetailValueID, 2, P.GoodCode, P.Amount, P.Amount, ISNULL(T.[Length], 0), ISNULL(T.Width, 0),
        CASE WHEN T.GoodCode IS NULL THEN 0 ELSE P.Amount END, P.OperationType, P.OperationCode, P.OperationRow
    FROM @Parts AS P
    LEFT JOIN (
        VALUES (251, 0.6, 0.3), (252, 0.9, 0.3), (253, 0.6, 0.6), (254, 0.8, 0.8)
    ) AS T(GoodCode, [Length], Width) ON T.GoodCode = P.GoodCode
    ORDER BY P.Incoming DESC, P.OperationType, P.OperationCode, P.DetailValueID
END
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
