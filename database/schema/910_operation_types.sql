-- The kinds of documents, the accounts that vouchers made by the program use, and the currency of the books.

INSERT INTO dbo.OperationTypes (Code, Name, Direction)
SELECT N.Code, N.Name, N.Direction
FROM (
    SELECT 1 AS Code, N'فاکتور فروش' AS Name, -1 AS Direction
    UNION ALL SELECT 2, N'فاکتور خرید', 1
    UNION ALL SELECT 3, N'برگشت از فروش', 1
    UNION ALL SELECT 4, N'موجودی اول دوره', 1
    UNION ALL SELECT 5, N'برگشت از خرید', -1
    UNION ALL SELECT 6, N'حواله انبار', -1
    UNION ALL SELECT 7, N'رسید انبار', 1
    UNION ALL SELECT 9, N'انتقال از انبار', -1
    UNION ALL SELECT 10, N'انتقال به انبار', 1
    UNION ALL SELECT 11, N'دریافت', 0
    UNION ALL SELECT 12, N'پرداخت', 0
    UNION ALL SELECT 24, N'تقسیم، صدور', -1
    UNION ALL SELECT 25, N'تقسیم، ورود', 1
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.OperationTypes AS P WHERE P.Code = N.Code)
go

INSERT INTO dbo.Accounts (Code, Name)
SELECT N.Code, N.Name
FROM (
    SELECT 1 AS Code, N'موجودی کالا' AS Name
    UNION ALL SELECT 2, N'حساب‌های اشخاص'
    UNION ALL SELECT 3, N'فروش'
    UNION ALL SELECT 4, N'صندوق'
    UNION ALL SELECT 5, N'تراز افتتاحیه'
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.Accounts AS P WHERE P.Code = N.Code)
go

INSERT INTO dbo.Currencies (Code, Name, Rate, Decimals)
SELECT 1, N'ریال', 1, 0
WHERE NOT EXISTS (SELECT 1 FROM dbo.Currencies WHERE Code = 1)
go
