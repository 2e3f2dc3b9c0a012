-- GoodDetail_Select_GetGoodInf_ByGoodDetailBarcode @Barcode
--
-- What an invoice row wants to know of the good of a detail barcode: StoreCode, GoodCode, Pos, OffPercent, TaxExempt,
-- ChargeExempt, Tax_In_SellCosts, ChargePercent, TaxPercent. StoreCode is a store that has the combination, 0 when none has; the
-- percentages of tax and charge may be null. A row a combination, those in stock before the others and then the last made.

IF OBJECT_ID(N'dbo.GoodDetail_Select_GetGoodInf_ByGoodDetailBarcode', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_GetGoodInf_ByGoodDetailBarcode
go

CREATE PROCEDURE dbo.GoodDetail_Select_GetGoodInf_ByGoodDetailBarcode
    @Barcode nvarchar(100)
AS
BEGIN
    SET NOCOUNT ON

    SELECT ISNULL(S.StoreCode, 0) AS StoreCode, G.Code AS GoodCode, ISNULL(G.Pos, N'') AS Pos, ISNULL(G.OffPercentSell, 0) AS OffPercent,
        G.TaxExempt, G.ChargeExempt, G.Tax_In_SellCosts, G.ChargePercent, G.TaxPercent
    FROM dbo.GoodDetailValueDetails AS D
    INNER JOIN dbo.DetailTypes AS T ON T.ID = D.DetailID
    INNER JOIN dbo.GoodDetailValues AS V ON V.ID = D.DetailValueID
    INNER JOIN dbo.GoodInf AS G ON G.Code = V.GoodCode
    LEFT JOIN dbo.GoodDetailStock AS S ON S.DetailValueID = V.ID AND S.Amount1 > 0
    WHERE T.DetailType = 4 AND D.Value = @Barcode
    ORDER BY CASE WHEN S.StoreCode IS NULL THEN 1 ELSE 0 END, V.ID DESC, S.StoreCode
END
go
