-- GetGoodDetailKardex_Mojodi @Anbar, @GoodCode,
--     and for each slot N from 1 to 5 @DetailIDN, @DetailNValue1, @DetailNValue2, @ConditionOperatorN
--
-- What is in stock, in one store, of the combinations of a good that have the details asked for. One row with SumDetailKardex,
-- in the first unit; none when no such combination was ever in the store.
--
-- Rule: as GetGoodDetailValuesID says.

IF OBJECT_ID(N'dbo.GetGoodDetailKardex_Mojodi', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GetGoodDetailKardex_Mojodi
go

CREATE PROCEDURE dbo.GetGoodDetailKardex_Mojodi
    @Anbar int,
    @GoodCode int,
    @DetailID1 int = NULL,
    @Detail1Value1 nvarchar(100) = N'',
    @Detail1Value2 nvarchar(100) = N'',
    @ConditionOperator1 nvarchar(10) = N'',
    @DetailID2 int = NULL,
    @Detail2Value1 nvarchar(100) = N'',
    @Detail2Value2 nvarchar(100) = N'',
    @ConditionOperator2 nvarchar(10) = N'',
    @DetailID3 int = NULL,
    @Detail3Value1 nvarchar(100) = N'',
    @Detail3Value2 nvarchar(100) = N'',
    @ConditionOperator3 nvarchar(10) = N'',
    @DetailID4 int = NULL,
    @Detail4Value1 nvarchar(100) = N'',
    @Detail4Value2 nvarchar(100) = N'',
    @ConditionOperator4 nvarchar(10) = N'',
    @DetailID5 int = NULL,
    @Detail5Value1 nvarchar(100) = N'',
    @Detail5Value2 nvarchar(100) = N'',
    @ConditionOperator5 nvarchar(10) = N''
AS
BEGIN
    SET NOCOUNT ON

    CREATE TABLE #FoundDetails (
        DetailValueID int NOT NULL, DetailValues nvarchar(max) NULL, D1DetailID int, D1Value nvarchar(100), D2DetailID int,
        D2Value nvarchar(100), D3DetailID int, D3Value nvarchar(100), D4DetailID int, D4Value nvarchar(100), D5DetailID int,
        D5Value nvarchar(100))

    INSERT INTO #FoundDetails
    EXEC dbo.GetGoodDetailValuesID @GoodCode,
        @DetailID1, @Detail1Value1, @Detail1Value2, @ConditionOperator1,
        @DetailID2, @Detail2Value1, @Detail2Value2, @ConditionOperator2,
        @DetailID3, @Detail3Value1, @Detail3Value2, @ConditionOperator3,
        @DetailID4, @Detail4Value1, @Detail4Value2, @ConditionOperator4,
        @DetailID5, @Detail5Value1, @Detail5Value2, @ConditionOperator5

    SELECT SUM(S.Amount1) AS SumDetailKardex
    FROM #FoundDetails AS F
    INNER JOIN dbo.GoodDetailStock AS S ON S.DetailValueID = F.DetailValueID AND S.StoreCode = @Anbar
    HAVING COUNT(*) > 0
END
go
