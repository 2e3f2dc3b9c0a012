-- OfferSellCostCurr @GoodCode, @PerCode, @CurrCode
--
-- The sale prices of a good in a currency, a row a price level, with the level that the person is offered marked. Columns Code,
-- TypeCode, Type, Cost, Name, deftitle and their rule: see the procedure OfferCost.

IF OBJECT_ID(N'dbo.OfferSellCostCurr', N'P') IS NOT NULL
    DROP PROCEDURE dbo.OfferSellCostCurr
go

CREATE PROCEDURE dbo.OfferSellCostCurr
    @GoodCode int,
    @PerCode int,
    @CurrCode int
AS
BEGIN
    SET NOCOUNT ON
    EXEC dbo.OfferCost @GoodCode, @PerCode, @CurrCode, 0
END
go
