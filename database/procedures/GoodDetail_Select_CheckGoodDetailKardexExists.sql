-- GoodDetail_Select_CheckGoodDetailKardexExists @GoodCode
--
-- Whether details of a good have moved: one row with the ID of the first movement, none when there is none.

IF OBJECT_ID(N'dbo.GoodDetail_Select_CheckGoodDetailKardexExists', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_CheckGoodDetailKardexExists
go

CREATE PROCEDURE dbo.GoodDetail_Select_CheckGoodDetailKardexExists
    @GoodCode int
AS
BEGIN
    SET NOCOUNT ON

    SELECT TOP 1 ID
    FROM dbo.GoodDetailKardex
    WHERE GoodCode = @GoodCode
    ORDER BY ID
END
go
