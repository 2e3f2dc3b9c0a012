-- The stores of the demo company.

-- The one that every shop has, as long as nothing has been moved.
DELETE FROM dbo.Stores
WHERE Code = 1 AND Name = N'انبار اصلی' AND NOT EXISTS (SELECT 1 FROM dbo.Kardex)
    AND NOT EXISTS (SELECT 1 FROM dbo.Stores WHERE Code <> 1)
go

INSERT INTO dbo.Stores (Code, Name)
SELECT N.Code, N.Name
FROM (
    SELECT 1 AS Code, N'انبار مرکزی' AS Name
    UNION ALL SELECT 2, N'فروشگاه'
    UNION ALL SELECT 3, N'انبار سرد'
    UNION ALL SELECT 4, N'انبار برگشتی'
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.Stores)
go
