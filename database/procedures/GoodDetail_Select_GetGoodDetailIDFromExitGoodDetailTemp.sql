-- GoodDetail_Select_GetGoodDetailIDFromExitGoodDetailTemp @Serial
--
-- The working rows of issues whose piece has a serial: a row of ID each, the last made first.

IF OBJECT_ID(N'dbo.GoodDetail_Select_GetGoodDetailIDFromExitGoodDetailTemp', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_GetGoodDetailIDFromExitGoodDetailTemp
go

CREATE PROCEDURE dbo.GoodDetail_Select_GetGoodDetailIDFromExitGoodDetailTemp
    @Serial nvarchar(100)
AS
BEGIN
    SET NOCOUNT ON

    SELECT E.ID
    FROM dbo.GoodDetailKardexExit_Temp AS E
    INNER JOIN dbo.GoodDetailValueDetails AS D ON D.DetailValueID = E.DetailValueID
    INNER JOIN dbo.DetailTypes AS T ON T.ID = D.DetailID
    WHERE T.DetailType = 3 AND D.Value = @Serial
    ORDER BY E.ID DESC
END
go
