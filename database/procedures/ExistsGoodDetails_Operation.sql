-- ExistsGoodDetails_Operation @OperationCode, @OperationType
--
-- Whether an operation has moved details: one row with the ID of its first movement, none when there is none.

IF OBJECT_ID(N'dbo.ExistsGoodDetails_Operation', N'P') IS NOT NULL
    DROP PROCEDURE dbo.ExistsGoodDetails_Operation
go

CREATE PROCEDURE dbo.ExistsGoodDetails_Operation
    @OperationCode int,
    @OperationType int
AS
BEGIN
    SET NOCOUNT ON

    SELECT TOP 1 ID
    FROM dbo.GoodDetailKardex
    WHERE OperationType = @OperationType AND OperationCode = @OperationCode
    ORDER BY ID
END
go
