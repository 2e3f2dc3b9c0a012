-- GoodDetail_Select_CheckExistsGoodDetailWithGoodBarcode @Barcode
--
-- The goods whose own barcode it is and that have details: a row of GoodCode each, by code.

IF OBJECT_ID(N'dbo.GoodDetail_Select_CheckExistsGoodDetailWithGoodBarcode', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_CheckExistsGoodDetailWithGoodBarcode
go

CREATE PROCEDURE dbo.GoodDetail_Select_CheckExistsGoodDetailWithGoodBarcode
    @Barcode nvarchar(100)
AS
BEGIN
    SET NOCOUNT ON

    SELECT G.Code AS GoodCode
    FROM dbo.GoodInf AS G
    WHERE CHARINDEX(N'!' + @Barcode + N'!', G.AbbName) > 0 AND @Barcode <> N'' AND EXISTS (SELECT 1 FROM dbo.GoodDetailRelation AS R WHERE R.GoodCode = G.Code)
    ORDER BY G.Code
END
go
