-- GoodDetail_Select_GetGoodInf_ByGoodBarcode @Barcode
--
-- What an invoice row wants to know of the good whose own barcode it is; columns as of
-- GoodDetail_Select_GetGoodInf_ByGoodDetailBarcode. StoreCode is the first store that has the good in the stock ledger, 0 when
-- none has. A row a good, the highest code first.

IF OBJECT_ID(N'dbo.GoodDetail_Select_GetGoodInf_ByGoodBarcode', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_GetGoodInf_ByGoodBarcode
go

CREATE PROCEDURE dbo.GoodDetail_Select_GetGoodInf_ByGoodBarcode
    @Barcode nvarchar(100)
AS
BEGIN
    SET NOCOUNT ON

    SELECT ISNULL((
            SELECT MIN(A.Anbar)
            FROM (SELECT K.Anbar FROM dbo.Kardex AS K WHERE K.kala = G.Code GROUP BY K.Anbar HAVING SUM(K.Tedad) > 0) AS A
        ), 0) AS StoreCode, G.Code AS GoodCode, ISNULL(G.Pos, N'') AS Pos, ISNULL(G.OffPercentSell, 0) AS OffPercent,
        G.TaxExempt, G.ChargeExempt, G.Tax_In_SellCosts, G.ChargePercent, G.TaxPercent
    FROM dbo.GoodInf AS G
    WHERE CHARINDEX(N'!' + @Barcode + N'!', G.AbbName) > 0 AND @Barcode <> N''
    ORDER BY G.Code DESC
END
go
