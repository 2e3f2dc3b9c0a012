-- GoodDetail_Select_ReturnSerialDetailValue @Serial, @GoodCode
--
-- The detail under which a good has a serial: a row of ID each; none when the good has no such serial.

IF OBJECT_ID(N'dbo.GoodDetail_Select_ReturnSerialDetailValue', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_ReturnSerialDetailValue
go

CREATE PROCEDURE dbo.GoodDetail_Select_ReturnSerialDetailValue
    @Serial nvarchar(100),
    @GoodCode int
AS
BEGIN
    SET NOCOUNT ON

    SELECT DISTINCT T.ID
    FROM dbo.GoodDetailValueDetails AS D
    INNER JOIN dbo.DetailTypes AS T ON T.ID = D.DetailID
    INNER JOIN dbo.GoodDetailValues AS V ON V.ID = D.DetailValueID
    WHERE V.GoodCode = @GoodCode AND T.DetailType = 3 AND D.Value = @Serial
    ORDER BY T.ID
END
go
