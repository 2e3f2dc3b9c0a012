-- OfferCost @GoodCode, @PerCode, @CurrCode, @Status
--
-- What a good costs at each price level, with the level that the person is offered marked; @Status 0 is sale, 1 purchase. The
-- procedures OfferSellCost, OfferBuyCost, OfferSellCostCurr and OfferBuyCostCurr are its four forms.
--
-- A row a level, by code, without the levels that the good has no price of:
--   Code      the level
--   TypeCode  the good
--   Type      3, the price of a good
--   Cost      in the currency @CurrCode, rounded to its decimals; as it stands when @CurrCode is null, 0 or unknown.
--             decimal(32, 9): the largest price over the smallest rate has 23 digits before the point
--   Name      the level's name
--   deftitle  the mark of the level that the person is offered (function OfferedCostLevel), else empty

IF OBJECT_ID(N'dbo.OfferCost', N'P') IS NOT NULL
    DROP PROCEDURE dbo.OfferCost
go

CREATE PROCEDURE dbo.OfferCost
    @GoodCode int,
    @PerCode int,
    @CurrCode int,
    @Status int
AS
BEGIN
    SET NOCOUNT ON

    DECLARE @Rate decimal(23, 9), @Decimals int, @Level int
    SELECT @Rate = Rate, @Decimals = Decimals FROM dbo.Currencies WHERE Code = @CurrCode
    SET @Level = dbo.OfferedCostLevel(@PerCode, @GoodCode, @Status)

    SELECT P.CostLevelCode AS Code,
        P.GoodCode AS TypeCode,
        3 AS [Type],
        CASE WHEN @Rate IS NULL THEN P.Cost ELSE CAST(ROUND(P.Cost / @Rate, @Decimals) AS decimal(32, 9)) END AS Cost,
        P.Name,
        CASE WHEN P.CostLevelCode = @Level THEN N'پیش فرض' ELSE N'' END AS deftitle
    FROM dbo.GoodPrices AS P
    WHERE P.GoodCode = @GoodCode AND P.Status = @Status AND P.Cost IS NOT NULL
    ORDER BY P.CostLevelCode
END
go
