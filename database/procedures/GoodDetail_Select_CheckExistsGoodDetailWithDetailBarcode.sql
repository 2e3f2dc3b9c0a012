-- GoodDetail_Select_CheckExistsGoodDetailWithDetailBarcode @Barcode
--
-- The goods that have a detail of a barcode: a row of GoodCode each, by code.

IF OBJECT_ID(N'dbo.GoodDetail_Select_CheckExistsGoodDetailWithDetailBarcode', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_CheckExistsGoodDetailWithDetailBarcode
go

CREATE PROCEDURE dbo.GoodDetail_Select_CheckExistsGoodDetailWithDetailBarcode
    @Barcode nvarchar(100)
AS
BEGIN
    SET NOCOUNT ON

    SELECT DISTINCT V.GoodCode
    FROM dbo.GoodDetailValueDetails AS D
    INNER JOIN dbo.DetailTypes AS T ON T.ID = D.DetailID
    INNER JOIN dbo.GoodDetailValues AS V ON V.ID = D.DetailValueID
    WHERE T.DetailType = 4 AND D.Value = @Barcode
    ORDER BY V.GoodCode
END
go
