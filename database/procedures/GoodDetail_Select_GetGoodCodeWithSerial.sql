-- GoodDetail_Select_GetGoodCodeWithSerial @Serial
--
-- The goods that have a serial: a row of GoodCode and StoreCode each, the one in stock before the others and then the last made.
-- StoreCode is the store that the piece is in, or came into last when it is in none; 0 when it never came in.

IF OBJECT_ID(N'dbo.GoodDetail_Select_GetGoodCodeWithSerial', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_GetGoodCodeWithSerial
go

CREATE PROCEDURE dbo.GoodDetail_Select_GetGoodCodeWithSerial
    @Serial nvarchar(100)
AS
BEGIN
    SET NOCOUNT ON

    SELECT V.GoodCode, ISNULL(S.StoreCode, ISNULL((
            SELECT TOP 1 K.StoreCode
            FROM dbo.GoodDetailKardex AS K
            INNER JOIN dbo.OperationTypes AS O ON O.Code = K.OperationType
            WHERE K.DetailValueID = V.ID AND O.Direction = 1
            ORDER BY K.ID DESC
        ), 0)) AS StoreCode
    FROM dbo.GoodDetailValueDetails AS D
    INNER JOIN dbo.DetailTypes AS T ON T.ID = D.DetailID
    INNER JOIN dbo.GoodDetailValues AS V ON V.ID = D.DetailValueID
    LEFT JOIN dbo.GoodDetailStock AS S ON S.DetailValueID = V.ID AND S.Amount1 > 0
    WHERE T.DetailType = 3 AND D.Value = @Serial
    ORDER BY CASE WHEN S.StoreCode IS NULL THEN 1 ELSE 0 END, V.ID DESC, S.StoreCode
END
go
