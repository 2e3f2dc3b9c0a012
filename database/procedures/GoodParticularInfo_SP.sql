-- GoodParticularInfo_SP @GoodCode
--
-- What a document wants to know of a good. One row, none when there is no such good. Columns are those of GoodInf under their
-- names, and:
--   Mogodi             stock on hand in all stores together
--   UnitName           name of the first unit, UnitName2 of the second; null where there is none
--   Gheymat_Miangin    average cost: what the opening stock, purchases and receipts cost by their quantities, to six decimals;
--                      null when nothing of known cost came in

IF OBJECT_ID(N'dbo.GoodParticularInfo_SP', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodParticularInfo_SP
go

CREATE PROCEDURE dbo.GoodParticularInfo_SP
    @GoodCode int
AS
BEGIN
    SET NOCOUNT ON

    DECLARE @Mogodi decimal(23, 9), @Gheymat_Miangin decimal(23, 9)

    SELECT @Mogodi = SUM(Tedad) FROM dbo.Kardex WHERE kala = @GoodCode

    SELECT @Gheymat_Miangin = SUM(Tedad * Fi) / SUM(Tedad)
    FROM dbo.Kardex
    WHERE kala = @GoodCode AND OperationType IN (2, 4, 7) AND Tedad > 0 AND Fi IS NOT NULL

    SELECT G.Code, G.Name, G.Kala_Type, G.Kala_Index, G.Kala_Name,
        ISNULL(@Mogodi, 0) AS Mogodi,
        G.Unit, G.Unit2, U1.Name AS UnitName, U2.Name AS UnitName2,
        G.MinAva, G.Pos, G.Meghdar_Formool,
        @Gheymat_Miangin AS Gheymat_Miangin,
        G.OffPercentSell, G.TaxExempt, G.ChargeExempt, G.Tax_In_BuyCosts, G.Tax_In_SellCosts, G.TaxPercent,
        G.ChargePercent, G.ConsumerPrice
    FROM dbo.GoodInf AS G
    LEFT JOIN dbo.Units AS U1 ON U1.Code = G.Unit
    LEFT JOIN dbo.Units AS U2 ON U2.Code = G.Unit2
    WHERE G.Code = @GoodCode
END
go
