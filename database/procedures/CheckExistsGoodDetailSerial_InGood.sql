-- CheckExistsGoodDetailSerial_InGood @GoodCode
--
-- Whether a good has a serial among its details: a row with DetailID and Slot for each such detail.

IF OBJECT_ID(N'dbo.CheckExistsGoodDetailSerial_InGood', N'P') IS NOT NULL
    DROP PROCEDURE dbo.CheckExistsGoodDetailSerial_InGood
go

CREATE PROCEDURE dbo.CheckExistsGoodDetailSerial_InGood
    @GoodCode int
AS
BEGIN
    SET NOCOUNT ON

    SELECT R.DetailID, R.Slot
    FROM dbo.GoodDetailRelation AS R
    INNER JOIN dbo.DetailTypes AS T ON T.ID = R.DetailID
    WHERE R.GoodCode = @GoodCode AND T.DetailType = 3
    ORDER BY R.Slot
END
go
