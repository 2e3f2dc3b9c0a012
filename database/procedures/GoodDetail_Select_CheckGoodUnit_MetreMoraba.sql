-- GoodDetail_Select_CheckGoodUnit_MetreMoraba @GoodCode, @Unit
--
-- Whether a good is counted in the unit that means square metre, as its first or its second unit.
-- One row with Code when it is, none when not; @Unit 0 means that there is no such unit.

IF OBJECT_ID(N'dbo.GoodDetail_Select_CheckGoodUnit_MetreMoraba', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_CheckGoodUnit_MetreMoraba
go

CREATE PROCEDURE dbo.GoodDetail_Select_CheckGoodUnit_MetreMoraba
    @GoodCode bigint,
    @Unit int
AS
BEGIN
    SET NOCOUNT ON

    SELECT Code
    FROM dbo.GoodInf
    WHERE Code = @GoodCode AND @Unit <> 0 AND (Unit = @Unit OR Unit2 = @Unit)
END
go
