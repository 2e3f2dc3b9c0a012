-- GoodDetail_Select_CheckGoodDetailRelation @GoodCode
--
-- Whether a good has details: a row of GoodCode, Slot and DetailID for each, by slot.

IF OBJECT_ID(N'dbo.GoodDetail_Select_CheckGoodDetailRelation', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_CheckGoodDetailRelation
go

CREATE PROCEDURE dbo.GoodDetail_Select_CheckGoodDetailRelation
    @GoodCode int
AS
BEGIN
    SET NOCOUNT ON

    SELECT GoodCode, Slot, DetailID
    FROM dbo.GoodDetailRelation
    WHERE GoodCode = @GoodCode
    ORDER BY Slot
END
go
