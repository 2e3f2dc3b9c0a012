-- GoodDetail_Select_ReturnBarcodeDetailValue @GoodCode
--
-- The details under which a good keeps barcodes: a row of ID and Slot each, by slot; none when it has no such detail.

IF OBJECT_ID(N'dbo.GoodDetail_Select_ReturnBarcodeDetailValue', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_ReturnBarcodeDetailValue
go

CREATE PROCEDURE dbo.GoodDetail_Select_ReturnBarcodeDetailValue
    @GoodCode int
AS
BEGIN
    SET NOCOUNT ON

    SELECT T.ID, R.Slot
    FROM dbo.GoodDetailRelation AS R
    INNER JOIN dbo.DetailTypes AS T ON T.ID = R.DetailID
    WHERE R.GoodCode = @GoodCode AND T.DetailType = 4
    ORDER BY R.Slot
END
go
