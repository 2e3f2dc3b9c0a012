-- OfferedCostLevel (@PerCode, @GoodCode, @Status)
--
-- The price level at which a person is offered a good; @Status 0 is sale, 1 purchase. The default level of the person's own
-- price list (costlist, Type 1) where the good has a price of that level, else the good's own default level. Null when the
-- good has no prices at all.

IF OBJECT_ID(N'dbo.OfferedCostLevel', N'FN') IS NOT NULL
    DROP FUNCTION dbo.OfferedCostLevel
go

CREATE FUNCTION dbo.OfferedCostLevel (@PerCode int, @GoodCode int, @Status int)
RETURNS int
AS
BEGIN
    DECLARE @Level int

    SELECT TOP 1 @Level = P.CostLevelCode
    FROM dbo.costlist AS C
    INNER JOIN dbo.GoodPrices AS P ON P.CostLevelCode = C.CostLevelCode
    WHERE C.[Type] = 1 AND C.TypeCode = @PerCode AND C.[Status] = @Status AND C.[Default] = 1 AND C.CostLevelType = 1
        AND P.GoodCode = @GoodCode AND P.Status = @Status AND P.Cost IS NOT NULL
    ORDER BY C.ID

    IF @Level IS NULL
        SELECT TOP 1 @Level = DefaultCode FROM dbo.GoodPrices WHERE GoodCode = @GoodCode AND Status = @Status

    RETURN @Level
END
go
