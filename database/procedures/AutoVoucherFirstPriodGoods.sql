-- AutoVoucherFirstPriodGoods @SaveType, @SanadCode, @SanadDate, @FromDate, @ToDate, @FromCode, @ToCode, @Codes
--
-- Makes the voucher of the opening stock: each good's value is debited to the stock account, and their sum credited to the
-- opening balance.
--   @SaveType            1 replaces the rows of a voucher that is there already; otherwise such a voucher is left alone
--   @SanadCode, @SanadDate  the voucher
--   @FromDate, @ToDate   opening rows of the ledger from and to these dates; null or empty for no limit
--   @FromCode, @ToCode   goods from and to these codes; null or 0 for no limit
--   @Codes               of these, only the goods of this list with commas between; null or empty for all
-- Returns 0 when the voucher was made, 1 when it was there and left alone, 2 when there is nothing to put in it. No rows.

IF OBJECT_ID(N'dbo.AutoVoucherFirstPriodGoods', N'P') IS NOT NULL
    DROP PROCEDURE dbo.AutoVoucherFirstPriodGoods
go

CREATE PROCEDURE dbo.AutoVoucherFirstPriodGoods
    @SaveType tinyint = NULL,
    @SanadCode int,
    @SanadDate nvarchar(10),
    @FromDate nvarchar(10) = NULL,
    @ToDate nvarchar(10) = NULL,
    @FromCode int,
    @ToCode int,
    @Codes varchar(8000) = NULL
AS
BEGIN
    SET NOCOUNT ON
    SET XACT_ABORT ON

    DECLARE @Found bit, @Sum decimal(23, 9), @Rows int

    SET @Found = CASE WHEN EXISTS (SELECT 1 FROM dbo.Sanad WHERE Code = @SanadCode) THEN 1 ELSE 0 END
    IF @Found = 1 AND ISNULL(@SaveType, 0) <> 1
        RETURN 1

    CREATE TABLE #OpeningGoods (Radif int IDENTITY(1, 1) NOT NULL PRIMARY KEY, kala int NOT NULL, Value decimal(23, 9) NOT NULL)

    INSERT INTO #OpeningGoods (kala, Value)
    SELECT K.kala, ROUND(SUM(K.Tedad * K.Fi), 0)
    FROM dbo.Kardex AS K
    WHERE K.OperationType = 4 AND K.Fi IS NOT NULL
        AND (ISNULL(@FromDate, N'') = N'' OR K.[Date] >= @FromDate)
        AND (ISNULL(@ToDate, N'') = N'' OR K.[Date] <= @ToDate)
        AND (ISNULL(@FromCode, 0) = 0 OR K.kala >= @FromCode)
        AND (ISNULL(@ToCode, 0) = 0 OR K.kala <= @ToCode)
        AND (ISNULL(@Codes, '') = '' OR dbo.ExistsIn_FNC(K.kala, @Codes) > 0)
    GROUP BY K.kala
    HAVING ROUND(SUM(K.Tedad * K.Fi), 0) <> 0
    ORDER BY K.kala

    SELECT @Sum = SUM(Value), @Rows = COUNT(*) FROM #OpeningGoods
    IF @Rows = 0
        RETURN 2

    BEGIN TRANSACTION

    IF @Found = 1
    BEGIN
        DELETE FROM dbo.SanadDetail WHERE SanadCode = @SanadCode
        UPDATE dbo.Sanad SET [Date] = @SanadDate WHERE Code = @SanadCode
    END
    ELSE
        INSERT INTO dbo.Sanad (Code, [Date], Comment) VALUES (@SanadCode, @SanadDate, N'موجودی اول دوره کالاها')

    INSERT INTO dbo.SanadDetail (SanadCode, Radif, AccountCode, kala, Bed, Bes)
    SELECT @SanadCode, Radif, 1, kala, Value, 0
    FROM #OpeningGoods

    INSERT INTO dbo.SanadDetail (SanadCode, Radif, AccountCode, Bed, Bes)
    VALUES (@SanadCode, @Rows + 1, 5, 0, @Sum)

    COMMIT TRANSACTION
    RETURN 0
END
go
