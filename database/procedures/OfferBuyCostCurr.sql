-- OfferBuyCostCurr @GoodCode, @PerCode, @CurrCode
--
-- The purchase prices of a good in a currency, a row a price level, with the level that the person is offered marked. Columns Code,
-- TypeCode, Type, Cost, Name, deftitle and their rule: see the procedure OfferCost.

IF OBJECT_ID(N'dbo.OfferBuyCostCurr', N'P') IS NOT NULL
    DROP PROCEDURE dbo.OfferBuyCostCurr
go

CREATE PROCEDURE dbo.OfferBuyCostCurr
    @GoodCode int,
    @PerCode int,
    @CurrCode int
AS
BEGIN
    SET NOCOUNT ON
    EXEC dbo.OfferCost @GoodCode, @PerCode, @CurrCode, 1
END
go
