-- Vouchers of the invoices in the ledger, one each with the number of the document in the order of entry, and receipts for
-- every third sale. A few are not as they should be: sales 22, 62 and 102 have no voucher (that of 62 waits until the stock
-- is put right), the voucher of sale 43 is gone, and that of sale 83 says another amount.

-- Only behind the ledger of the demo company, which numbers its documents as no other does.
IF NOT EXISTS (SELECT 1 FROM dbo.PersonOperations) AND NOT EXISTS (SELECT 1 FROM dbo.Sanad)
    AND (SELECT COUNT(*) FROM dbo.Kardex WHERE OperationType IN (1, 2) AND Global_ID = OperationCode + 10) = 540
BEGIN
    INSERT INTO dbo.PersonOperations (PerCode, OperationType, OperationCode, [Date], Amount, SanadCode)
    SELECT K.PerCode, K.OperationType, K.OperationCode, K.[Date], ROUND(-SUM(K.Tedad * K.Fi), 0),
        CASE WHEN K.OperationType = 1 AND K.OperationCode IN (22, 62, 102) THEN NULL ELSE K.Global_ID END
    FROM dbo.Kardex AS K
    WHERE K.OperationType IN (1, 2) AND K.PerCode IS NOT NULL AND K.Fi IS NOT NULL
    GROUP BY K.PerCode, K.OperationType, K.OperationCode, K.[Date], K.Global_ID
    ORDER BY K.Global_ID

    INSERT INTO dbo.PersonOperations (PerCode, OperationType, OperationCode, [Date], Amount, SanadCode)
    SELECT S.PerCode, 11, S.OperationCode, S.[Date], -S.Amount, 1000 + S.SanadCode
    FROM dbo.PersonOperations AS S
    WHERE S.OperationType = 1 AND S.OperationCode % 3 = 0 AND S.SanadCode IS NOT NULL
    ORDER BY S.OperationCode

    INSERT INTO dbo.Sanad (Code, [Date], Comment)
    SELECT O.SanadCode, O.[Date], T.Name + N' ' + CAST(O.OperationCode AS nvarchar(10))
    FROM dbo.PersonOperations AS O
    INNER JOIN dbo.OperationTypes AS T ON T.Code = O.OperationType
    WHERE O.SanadCode IS NOT NULL AND NOT (O.OperationType = 1 AND O.OperationCode = 43)
    ORDER BY O.SanadCode

    INSERT INTO dbo.SanadDetail (SanadCode, Radif, AccountCode, PerCode, kala, Bed, Bes, Comment)
    SELECT O.SanadCode, R.Radif,
        CASE WHEN R.Radif = 1 THEN 2 WHEN O.OperationType = 1 THEN 3 WHEN O.OperationType = 2 THEN 1 ELSE 4 END,
        CASE WHEN R.Radif = 1 THEN O.PerCode END, NULL,
        CASE WHEN R.Sign * O.Amount > 0 THEN R.Sign * O.Amount + O.Wrong ELSE 0 END,
        CASE WHEN R.Sign * O.Amount < 0 THEN O.Wrong - R.Sign * O.Amount ELSE 0 END,
        S.Comment
    FROM (
        SELECT SanadCode, OperationType, PerCode, Amount,
            CASE WHEN OperationType = 1 AND OperationCode = 83 THEN 1000 ELSE 0 END AS Wrong
        FROM dbo.PersonOperations
    ) AS O
    INNER JOIN dbo.Sanad AS S ON S.Code = O.SanadCode
    CROSS JOIN (VALUES (1, 1), (2, -1)) AS R(Radif, Sign)
    ORDER BY O.SanadCode, R.Radif
END
go
