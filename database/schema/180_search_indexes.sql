-- Indexes that are read through instead of sought in.
-- A good is looked up by what stands anywhere in its AbbName. The index holds no more than the codes with these texts, in
-- the order in which the answer is wanted; the embedded engine keeps for a text that an index includes where all parts of
-- it are.

IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_GoodInf_AbbName')
    CREATE INDEX IX_GoodInf_AbbName ON dbo.GoodInf (Code) INCLUDE (AbbName)
go

-- Sums of quantities over the ledger are to need the index only.
IF NOT EXISTS (
    SELECT 1
    FROM sys.indexes AS I
    INNER JOIN sys.index_columns AS C ON C.object_id = I.object_id AND C.index_id = I.index_id
    WHERE I.name = N'IX_Kardex_kala' AND C.is_included_column = 1
)
BEGIN
    DROP INDEX IX_Kardex_kala ON dbo.Kardex
    CREATE INDEX IX_Kardex_kala ON dbo.Kardex (kala, Anbar, [Date], Global_ID) INCLUDE (Tedad, RemainInAnbar)
END
go
