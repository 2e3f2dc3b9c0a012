-- GoodDetail_Select_CheckGoodDetailExists @GoodCode
--
-- Whether a good has combinations: one row with the ID of its first, none when it has none.

IF OBJECT_ID(N'dbo.GoodDetail_Select_CheckGoodDetailExists', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_CheckGoodDetailExists
go

CREATE PROCEDURE dbo.GoodDetail_Select_CheckGoodDetailExists
    @GoodCode int
AS
BEGIN
    SET NOCOUNT ON

    SELECT TOP 1 ID
    FROM dbo.GoodDetailValues
    WHERE GoodCode = @GoodCode
    ORDER BY ID
END
go
