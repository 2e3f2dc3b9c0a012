-- Eight months of stock: what was there on the first day, and then a hundred and twenty documents of six rows: of every four
-- one buys for the central store, one moves to the shop, and two sell there. Sale 62 hands out fifty of good 160, of which the
-- shop has thirty-six: its stock there is below zero from then on.

-- Its documents are numbered over all dates, whatever was said of the empty ledger.
IF NOT EXISTS (SELECT 1 FROM dbo.Kardex) AND EXISTS (SELECT 1 FROM dbo.Stores WHERE Code = 2)
BEGIN
    DELETE FROM dbo.HostSettings WHERE Name = N'LedgerNumbering'
    INSERT INTO dbo.HostSettings (Name, Value) VALUES (N'LedgerNumbering', N'all')
END
go

IF NOT EXISTS (SELECT 1 FROM dbo.Kardex) AND EXISTS (SELECT 1 FROM dbo.Stores WHERE Code = 2)
BEGIN
    DECLARE @Moves TABLE (
        kala int, Anbar int, [Date] nvarchar(10), Global_ID int, Tedad decimal(23, 9), OperationType int, OperationCode int,
        OperationRow int, PerCode int)

    INSERT INTO @Moves (kala, Anbar, [Date], Global_ID, Tedad, OperationType, OperationCode, OperationRow, PerCode)
    SELECT G.Code, S.Code, N'1405/01/01', S.Code, CASE S.Code WHEN 1 THEN 100 + G.Code % 7 * 10 ELSE 40 END, 4, S.Code, G.Code, NULL
    FROM dbo.GoodInf AS G
    CROSS JOIN dbo.Stores AS S
    WHERE S.Code IN (1, 2)

    -- Document D has the number D + 10 in the order of entry. Its date runs through the months 1 to 8, fifteen in each.
    INSERT INTO @Moves (kala, Anbar, [Date], Global_ID, Tedad, OperationType, OperationCode, OperationRow, PerCode)
    SELECT G.Code, K.Anbar,
        N'1405/' + RIGHT(N'0' + CAST(1 + (D.No - 1) / 15 AS nvarchar(2)), 2)
            + N'/' + RIGHT(N'0' + CAST(1 + (D.No - 1) % 15 * 2 AS nvarchar(2)), 2),
        D.No + 10,
        K.Sign * CASE
            WHEN K.OperationType = 2 THEN 30 + G.Code % 5 * 6
            WHEN K.OperationType = 1 AND D.No = 62 AND R.No = 5 THEN 50
            WHEN K.OperationType = 1 THEN 1 + (D.No + R.No) % 4
            ELSE 10 END,
        K.OperationType, D.No, R.No + 1,
        CASE K.OperationType WHEN 1 THEN 7 + D.No % 44 WHEN 2 THEN 51 + D.No % 10 END
    FROM (
        SELECT H.No * 10 + U.No + 1 AS No
        FROM (VALUES (0), (1), (2), (3), (4), (5), (6), (7), (8), (9), (10), (11)) AS H(No)
        CROSS JOIN (VALUES (0), (1), (2), (3), (4), (5), (6), (7), (8), (9)) AS U(No)
    ) AS D
    CROSS JOIN (VALUES (0), (1), (2), (3), (4), (5)) AS R(No)
    INNER JOIN (
        VALUES (0, 2, 1, 1), (1, 9, 1, -1), (1, 10, 2, 1), (2, 1, 2, -1), (3, 1, 2, -1)
    ) AS K(Turn, OperationType, Anbar, Sign) ON K.Turn = D.No % 4
    INNER JOIN dbo.GoodInf AS G ON G.Code = (D.No * 37 + R.No * 53) % 300 + 1

    INSERT INTO dbo.Kardex (
        kala, Anbar, [Date], Global_ID, Tedad, RemainInAnbar, Fi, OperationType, OperationCode, OperationRow, PerCode)
    SELECT M.kala, M.Anbar, M.[Date], M.Global_ID, M.Tedad,
        SUM(M.Tedad) OVER (
            PARTITION BY M.kala, M.Anbar ORDER BY M.[Date], M.Global_ID, M.OperationRow ROWS UNBOUNDED PRECEDING),
        CASE M.OperationType WHEN 1 THEN C.CostLevel_Sell_1 ELSE C.CostLevel_Buy_1 END,
        M.OperationType, M.OperationCode, M.OperationRow, P.Code
    FROM @Moves AS M
    LEFT JOIN dbo.GoodCostDiscount AS C ON C.GoodCode = M.kala
    LEFT JOIN dbo.PerInf AS P ON P.Code = M.PerCode
    ORDER BY M.[Date], M.Global_ID, M.Anbar, M.OperationRow
END
go
