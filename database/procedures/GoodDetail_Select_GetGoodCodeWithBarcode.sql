-- GoodDetail_Select_GetGoodCodeWithBarcode @Barcode
--
-- The good that a barcode names, one row of GoodCode: the one with a detail of that barcode, else the one whose own it is; of
-- several the highest code. None when nothing has it.

IF OBJECT_ID(N'dbo.GoodDetail_Select_GetGoodCodeWithBarcode', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_GetGoodCodeWithBarcode
go

CREATE PROCEDURE dbo.GoodDetail_Select_GetGoodCodeWithBarcode
    @Barcode nvarchar(100)
AS
BEGIN
    SET NOCOUNT ON

    SELECT TOP 1 B.GoodCode
    FROM (
        SELECT 1 AS Turn, V.GoodCode
        FROM dbo.GoodDetailValueDetails AS D
        INNER JOIN dbo.DetailTypes AS T ON T.ID = D.DetailID
        INNER JOIN dbo.GoodDetailValues AS V ON V.ID = D.DetailValueID
        WHERE T.DetailType = 4 AND D.Value = @Barcode
        UNION ALL
        SELECT 2, G.Code
        FROM dbo.GoodInf AS G
        WHERE CHARINDEX(N'!' + @Barcode + N'!', G.AbbName) > 0 AND @Barcode <> N''
    ) AS B
    ORDER BY B.Turn, B.GoodCode DESC
END
go
