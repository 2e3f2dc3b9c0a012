-- GetDefaultCostLevel @PerCode, @GoodCode, @Status
--
-- The price at which a good is offered to a person. @Status 0 is sale, 1 purchase.
--
-- One row, or none when the good has no prices or its default level does not exist:
--   ID1            the row of the person's price list that names the level, 0 when it is the good's own
--   Type           3, the price of a good
--   Cost           null when the good has no price of its own default level
--   CostLevelCode  the level
--   TypeCode1      the person when it is the person's level, else the good
--   Title          the level's name
--   Type1          1 when it is the person's level, else 3
--
-- Rule: see the function OfferedCostLevel.

IF OBJECT_ID(N'dbo.GetDefaultCostLevel', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GetDefaultCostLevel
go

CREATE PROCEDURE dbo.GetDefaultCostLevel
    @PerCode int,
    @GoodCode int,
    @Status int = 0
AS
BEGIN
    SET NOCOUNT ON

    DECLARE @Level int, @ID int
    SET @Level = dbo.OfferedCostLevel(@PerCode, @GoodCode, @Status)

    SELECT @ID = MIN(ID)
    FROM dbo.costlist
    WHERE [Type] = 1 AND TypeCode = @PerCode AND [Status] = @Status AND [Default] = 1
        AND CostLevelType = 1 AND CostLevelCode = @Level

    SELECT ISNULL(@ID, 0) AS ID1,
        3 AS [Type],
        P.Cost,
        P.CostLevelCode,
        CASE WHEN @ID IS NULL THEN @GoodCode ELSE @PerCode END AS TypeCode1,
        P.Name AS Title,
        CASE WHEN @ID IS NULL THEN 3 ELSE 1 END AS Type1
    FROM dbo.GoodPrices AS P
    WHERE P.GoodCode = @GoodCode AND P.Status = @Status AND P.CostLevelCode = @Level
END
go
