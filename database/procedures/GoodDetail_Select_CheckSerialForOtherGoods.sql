-- GoodDetail_Select_CheckSerialForOtherGoods @Serial, @GoodCode
--
-- The goods other than @GoodCode that have a serial: a row of GoodCode each, by code.

IF OBJECT_ID(N'dbo.GoodDetail_Select_CheckSerialForOtherGoods', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_CheckSerialForOtherGoods
go

CREATE PROCEDURE dbo.GoodDetail_Select_CheckSerialForOtherGoods
    @Serial nvarchar(100),
    @GoodCode int
AS
BEGIN
    SET NOCOUNT ON

    SELECT DISTINCT V.GoodCode
    FROM dbo.GoodDetailValueDetails AS D
    INNER JOIN dbo.DetailTypes AS T ON T.ID = D.DetailID
    INNER JOIN dbo.GoodDetailValues AS V ON V.ID = D.DetailValueID
    WHERE T.DetailType = 3 AND D.Value = @Serial AND V.GoodCode <> @GoodCode
    ORDER BY V.GoodCode
END
go
