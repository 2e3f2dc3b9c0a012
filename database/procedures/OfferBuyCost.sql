-- OfferBuyCost @GoodCode, @PerCode
--
-- The purchase prices of a good, a row a price level, with the level that the person is offered marked. Columns Code, TypeCode,
-- Type, Cost, Name, deftitle and their rule: see the procedure OfferCost.

IF OBJECT_ID(N'dbo.OfferBuyCost', N'P') IS NOT NULL
    DROP PROCEDURE dbo.OfferBuyCost
go

CREATE PROCEDURE dbo.OfferBuyCost
    @GoodCode int,
    @PerCode int
AS
BEGIN
    SET NOCOUNT ON
    EXEC dbo.OfferCost @GoodCode, @PerCode, NULL, 1
END
go
