-- VoucherConflictAccountList_sp @CheckIssues, @ByPerson
--
-- Persons with operations (invoices, receipts, payments) that are not in the vouchers as they should be, so that their
-- balance cannot be relied on.
--   @CheckIssues  0 leaves out operations that took a good below zero in the ledger: where that is allowed, their voucher
--                 waits until the stock is put right. 1, where it is forbidden, takes them all
--   @ByPerson     1 gives a row a person, 0 a row an operation
-- Rows by person's code:
--   Code, fullname                      the person
--   OperationType, OperationCode, Date  the operation, only with @ByPerson 0
--
-- Rule: an operation is in order when it has a voucher, the voucher is there, its debits and credits are equal, and what it
-- books on the person is what the person's operations of that voucher amount to.

IF OBJECT_ID(N'dbo.VoucherConflictAccountList_sp', N'P') IS NOT NULL
    DROP PROCEDURE dbo.VoucherConflictAccountList_sp
go

CREATE PROCEDURE dbo.VoucherConflictAccountList_sp
    @CheckIssues bit,
    @ByPerson bit = 1
AS
BEGIN
    SET NOCOUNT ON

    CREATE TABLE #Conflicts (ID int NOT NULL PRIMARY KEY)

    INSERT INTO #Conflicts (ID)
    SELECT O.ID
    FROM dbo.PersonOperations AS O
    LEFT JOIN dbo.Sanad AS S ON S.Code = O.SanadCode
    LEFT JOIN (
        SELECT SanadCode, SUM(Bed - Bes) AS Difference FROM dbo.SanadDetail GROUP BY SanadCode
    ) AS W ON W.SanadCode = O.SanadCode
    LEFT JOIN (
        SELECT SanadCode, PerCode, SUM(Bed - Bes) AS Booked FROM dbo.SanadDetail GROUP BY SanadCode, PerCode
    ) AS B ON B.SanadCode = O.SanadCode AND B.PerCode = O.PerCode
    LEFT JOIN (
        SELECT SanadCode, PerCode, SUM(Amount) AS Amount FROM dbo.PersonOperations GROUP BY SanadCode, PerCode
    ) AS A ON A.SanadCode = O.SanadCode AND A.PerCode = O.PerCode
    WHERE (S.Code IS NULL OR ISNULL(W.Difference, 0) <> 0 OR ISNULL(B.Booked, 0) <> ISNULL(A.Amount, 0))
        AND (
            @CheckIssues = 1
            OR NOT EXISTS (
                SELECT 1
                FROM dbo.Kardex AS K
                WHERE K.OperationType = O.OperationType AND K.OperationCode = O.OperationCode
                    AND K.Tedad < 0 AND K.RemainInAnbar < 0
            )
        )

    IF @ByPerson = 1
        SELECT P.Code, P.FullName AS fullname
        FROM dbo.PerInf AS P
        WHERE EXISTS (
            SELECT 1
            FROM #Conflicts AS C
            INNER JOIN dbo.PersonOperations AS O ON O.ID = C.ID
            WHERE O.PerCode = P.Code
        )
        ORDER BY P.Code
    ELSE
        SELECT P.Code, P.FullName AS fullname, O.OperationType, O.OperationCode, O.[Date]
        FROM #Conflicts AS C
        INNER JOIN dbo.PersonOperations AS O ON O.ID = C.ID
        INNER JOIN dbo.PerInf AS P ON P.Code = O.PerCode
        ORDER BY P.Code, O.[Date], O.ID
END
go
