-- A store to sell from and the commonest units, for a shop that has none yet.

INSERT INTO dbo.Stores (Code, Name)
SELECT 1, N'انبار اصلی'
WHERE NOT EXISTS (SELECT 1 FROM dbo.Stores)
go

INSERT INTO dbo.Units (Code, Name)
SELECT N.Code, N.Name
FROM (
    SELECT 1 AS Code, N'عدد' AS Name
    UNION ALL SELECT 2, N'کارتن'
    UNION ALL SELECT 3, N'کیلوگرم'
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.Units)
go
