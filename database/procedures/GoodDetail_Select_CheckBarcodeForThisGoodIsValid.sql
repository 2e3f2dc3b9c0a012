-- GoodDetail_Select_CheckBarcodeForThisGoodIsValid @Barcode
--
-- The goods that have a barcode, be it of a detail or the good's own: a row of GoodCode each, by code; none when it is free.

IF OBJECT_ID(N'dbo.GoodDetail_Select_CheckBarcodeForThisGoodIsValid', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_CheckBarcodeForThisGoodIsValid
go

CREATE PROCEDURE dbo.GoodDetail_Select_CheckBarcodeForThisGoodIsValid
    @Barcode nvarchar(100)
AS
BEGIN
    SET NOCOUNT ON

    SELECT V.GoodCode
    FROM dbo.GoodDetailValueDetails AS D
    INNER JOIN dbo.DetailTypes AS T ON T.ID = D.DetailID
    INNER JOIN dbo.GoodDetailValues AS V ON V.ID = D.DetailValueID
    WHERE T.DetailType = 4 AND D.Value = @Barcode
    UNION
    SELECT G.Code
    FROM dbo.GoodInf AS G
    WHERE CHARINDEX(N'!' + @Barcode + N'!', G.AbbName) > 0 AND @Barcode <> N''
    ORDER BY GoodCode
END
go
