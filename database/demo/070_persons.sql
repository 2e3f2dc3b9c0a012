-- Currencies, and sixty persons with made-up names: 1 to 6 are salespeople, 7 to 50 customers, 51 to 60 suppliers.

INSERT INTO dbo.Currencies (Code, Name, Rate, Decimals)
SELECT N.Code, N.Name, N.Rate, N.Decimals
FROM (
    SELECT 2 AS Code, N'دلار' AS Name, 580000 AS Rate, 2 AS Decimals
    UNION ALL SELECT 3, N'یورو', 640000, 2
    UNION ALL SELECT 4, N'درهم', 158000, 2
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.Currencies AS P WHERE P.Code = N.Code)
go

-- Names are put together from two lists whose lengths repeat together only after sixty.
IF NOT EXISTS (SELECT 1 FROM dbo.PerInf)
BEGIN
    INSERT INTO dbo.PerInf (Code, FullName, CurrDefault, VisitorCode, [percent], TaxPayerType, ShahrCode, tags)
    SELECT P.Code,
        CASE WHEN P.Code > 50 THEN N'بازرگانی ' + L.Word ELSE F.Word + N' ' + L.Word END,
        CASE WHEN P.Code % 15 = 0 THEN 2 WHEN P.Code % 13 = 0 THEN 3 WHEN P.Code % 11 = 0 THEN 4
            WHEN P.Code % 2 = 0 THEN 1 WHEN P.Code % 3 = 0 THEN 0 END,
        CASE WHEN P.Code BETWEEN 7 AND 50 AND P.Code % 8 <> 0 THEN P.Code % 6 + 1 END,
        CASE WHEN P.Code <= 6 THEN 1 + P.Code * 0.5 END,
        CASE WHEN P.Code > 50 THEN 5 WHEN P.Code % 7 = 0 THEN 6 WHEN P.Code % 5 = 0 THEN 7 ELSE 8 END,
        Z.ShahrCode,
        CASE WHEN P.Code IN (9, 18, 27, 36) THEN N',4,' WHEN P.Code IN (12, 24) THEN N',4,5,' WHEN P.Code = 48 THEN N',5,' END
    FROM (
        SELECT T.No * 10 + U.No + 1 AS Code
        FROM (VALUES (0), (1), (2), (3), (4), (5)) AS T(No)
        CROSS JOIN (VALUES (0), (1), (2), (3), (4), (5), (6), (7), (8), (9)) AS U(No)
    ) AS P
    INNER JOIN (
        VALUES
            (0, N'علی'), (1, N'مریم'), (2, N'حسن'), (3, N'زهرا'), (4, N'رضا'), (5, N'فاطمه'),
            (6, N'مهدی'), (7, N'نرگس'), (8, N'امیر'), (9, N'سارا'), (10, N'احمد'), (11, N'لیلا'),
            (12, N'محمود'), (13, N'پروین'), (14, N'ناصر'), (15, N'الهام'), (16, N'یوسف'), (17, N'شیرین'),
            (18, N'کریم'), (19, N'مینا')
    ) AS F(No, Word) ON F.No = P.Code * 7 % 20
    INNER JOIN (
        VALUES
            (0, N'احمدی'), (1, N'رضایی'), (2, N'محمدی'), (3, N'کریمی'), (4, N'حسینی'), (5, N'موسوی'),
            (6, N'جعفری'), (7, N'صادقی'), (8, N'رحیمی'), (9, N'قاسمی'), (10, N'ابراهیمی'), (11, N'یوسفی'),
            (12, N'نوری'), (13, N'باقری'), (14, N'کاظمی'), (15, N'اکبری'), (16, N'طاهری'), (17, N'مرادی'),
            (18, N'سلیمانی'), (19, N'حیدری'), (20, N'ملکی'), (21, N'نجفی'), (22, N'شریفی'), (23, N'عزیزی'),
            (24, N'امینی'), (25, N'زمانی'), (26, N'فلاح'), (27, N'بهرامی'), (28, N'داوودی'), (29, N'صالحی')
    ) AS L(No, Word) ON L.No = P.Code * 11 % 30
    LEFT JOIN dbo.Zone AS Z ON Z.ShahrCode = (P.Code * 13 % 31 + 1) * 100 + 1 + P.Code % 4
    ORDER BY P.Code
END
go

-- Customers who buy at another price level than the goods' own: type 1 are the price lists of persons.
INSERT INTO dbo.costlist ([Type], [Status], TypeCode, CostLevelCode, Cost, [Default])
SELECT 1, 0, P.Code, CASE WHEN P.Code % 20 = 10 THEN 2 ELSE 3 END, NULL, 1
FROM dbo.PerInf AS P
INNER JOIN dbo.CostLevel AS L ON L.CostType = 1 AND L.Code = CASE WHEN P.Code % 20 = 10 THEN 2 ELSE 3 END
WHERE P.Code IN (10, 20, 30, 40, 50) AND NOT EXISTS (SELECT 1 FROM dbo.costlist WHERE [Type] = 1)
ORDER BY P.Code
go
