-- GoodDetail_Select_CheckBarcodeForOtherGoodsIsSaved @Barcode
--
-- The goods whose own barcode it is: a row of GoodCode each, by code.

IF OBJECT_ID(N'dbo.GoodDetail_Select_CheckBarcodeForOtherGoodsIsSaved', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_CheckBarcodeForOtherGoodsIsSaved
go

CREATE PROCEDURE dbo.GoodDetail_Select_CheckBarcodeForOtherGoodsIsSaved
    @Barcode nvarchar(100)
AS
BEGIN
    SET NOCOUNT ON

    SELECT G.Code AS GoodCode
    FROM dbo.GoodInf AS G
    WHERE CHARINDEX(N'!' + @Barcode + N'!', G.AbbName) > 0 AND @Barcode <> N''
    ORDER BY G.Code
END
go
