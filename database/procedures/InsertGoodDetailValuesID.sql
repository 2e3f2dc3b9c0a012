-- InsertGoodDetailValuesID @GoodCode, and for each slot N from 1 to 5 @DetailIDN, @DetailValueN
--
-- Makes a combination of a good. A slot whose detail id is 0 or null stays empty. Whether there is such a combination already is
-- for the caller to ask (GetGoodDetailValuesID). No rows.

IF OBJECT_ID(N'dbo.InsertGoodDetailValuesID', N'P') IS NOT NULL
    DROP PROCEDURE dbo.InsertGoodDetailValuesID
go

CREATE PROCEDURE dbo.InsertGoodDetailValuesID
    @GoodCode int,
    @DetailID1 int = 0,
    @DetailValue1 nvarchar(100) = N'',
    @DetailID2 int = 0,
    @DetailValue2 nvarchar(100) = N'',
    @DetailID3 int = 0,
    @DetailValue3 nvarchar(100) = N'',
    @DetailID4 int = 0,
    @DetailValue4 nvarchar(100) = N'',
    @DetailID5 int = 0,
    @DetailValue5 nvarchar(100) = N''
AS
BEGIN
    SET NOCOUNT ON
    SET XACT_ABORT ON

    DECLARE @ID int

    BEGIN TRANSACTION

    INSERT INTO dbo.GoodDetailValues (GoodCode) VALUES (@GoodCode)
    SET @ID = SCOPE_IDENTITY()

    INSERT INTO dbo.GoodDetailValueDetails (DetailValueID, Slot, DetailID, Value)
    SELECT @ID, S.Slot, S.DetailID, S.Value
    FROM (
        SELECT 1 AS Slot, @DetailID1 AS DetailID, @DetailValue1 AS Value
        UNION ALL SELECT 2, @DetailID2, @DetailValue2
        UNION ALL SELECT 3, @DetailID3, @DetailValue3
        UNION ALL SELECT 4, @DetailID4, @DetailValue4
        UNION ALL SELECT 5, @DetailID5, @DetailValue5
    ) AS S
    WHERE S.DetailID > 0

    COMMIT TRANSACTION
END
go
