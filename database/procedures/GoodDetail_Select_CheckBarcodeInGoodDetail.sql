-- GoodDetail_Select_CheckBarcodeInGoodDetail @Barcode
--
-- The combinations that have a barcode: a row of DetailValueID and GoodCode each, the first made first.

IF OBJECT_ID(N'dbo.GoodDetail_Select_CheckBarcodeInGoodDetail', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_CheckBarcodeInGoodDetail
go

CREATE PROCEDURE dbo.GoodDetail_Select_CheckBarcodeInGoodDetail
    @Barcode nvarchar(100)
AS
BEGIN
    SET NOCOUNT ON

    SELECT V.ID AS DetailValueID, V.GoodCode
    FROM dbo.GoodDetailValueDetails AS D
    INNER JOIN dbo.DetailTypes AS T ON T.ID = D.DetailID
    INNER JOIN dbo.GoodDetailValues AS V ON V.ID = D.DetailValueID
    WHERE T.DetailType = 4 AND D.Value = @Barcode
    ORDER BY V.ID
END
go
