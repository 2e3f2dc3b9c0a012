-- A combination a row, with its details side by side; DetailValues is all of them as one title.

IF OBJECT_ID(N'dbo.GoodDetailTitles', N'V') IS NOT NULL
    DROP VIEW dbo.GoodDetailTitles
go

CREATE VIEW dbo.GoodDetailTitles
AS
SELECT V.ID AS DetailValueID, V.GoodCode,
    ISNULL(D1.Value, N'')
        + CASE WHEN D2.Value IS NULL THEN N'' ELSE N' - ' + D2.Value END
        + CASE WHEN D3.Value IS NULL THEN N'' ELSE N' - ' + D3.Value END
        + CASE WHEN D4.Value IS NULL THEN N'' ELSE N' - ' + D4.Value END
        + CASE WHEN D5.Value IS NULL THEN N'' ELSE N' - ' + D5.Value END AS DetailValues,
    ISNULL(D1.DetailID, 0) AS D1DetailID, ISNULL(D1.Value, N'') AS D1Value,
    ISNULL(D2.DetailID, 0) AS D2DetailID, ISNULL(D2.Value, N'') AS D2Value,
    ISNULL(D3.DetailID, 0) AS D3DetailID, ISNULL(D3.Value, N'') AS D3Value,
    ISNULL(D4.DetailID, 0) AS D4DetailID, ISNULL(D4.Value, N'') AS D4Value,
    ISNULL(D5.DetailID, 0) AS D5DetailID, ISNULL(D5.Value, N'') AS D5Value
FROM dbo.GoodDetailValues AS V
LEFT JOIN dbo.GoodDetailValueDetails AS D1 ON D1.DetailValueID = V.ID AND D1.Slot = 1
LEFT JOIN dbo.GoodDetailValueDetails AS D2 ON D2.DetailValueID = V.ID AND D2.Slot = 2
LEFT JOIN dbo.GoodDetailValueDetails AS D3 ON D3.DetailValueID = V.ID AND D3.Slot = 3
LEFT JOIN dbo.GoodDetailValueDetails AS D4 ON D4.DetailValueID = V.ID AND D4.Slot = 4
LEFT JOIN dbo.GoodDetailValueDetails AS D5 ON D5.DetailValueID = V.ID AND D5.Slot = 5
go

-- What is in stock of each combination in each store that it ever was in.
IF OBJECT_ID(N'dbo.GoodDetailStock', N'V') IS NOT NULL
    DROP VIEW dbo.GoodDetailStock
go

CREATE VIEW dbo.GoodDetailStock
AS
SELECT K.DetailValueID, K.GoodCode, K.StoreCode,
    SUM(O.Direction * K.Amount1) AS Amount1,
    SUM(O.Direction * K.Amount2) AS Amount2,
    SUM(O.Direction * K.TotalAmount) AS TotalAmount,
    SUM(O.Direction * K.Amount3) AS Amount3
FROM dbo.GoodDetailKardex AS K
INNER JOIN dbo.OperationTypes AS O ON O.Code = K.OperationType
GROUP BY K.DetailValueID, K.GoodCode, K.StoreCode
go
