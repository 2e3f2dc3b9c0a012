-- A document of the ledger is found by its number and date: where numbers begin again with each date, its number alone leads
-- to as many documents as there are dates.

IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_Kardex_Document')
    CREATE INDEX IX_Kardex_Document ON dbo.Kardex (Global_ID, [Date]) INCLUDE (kala, Anbar)
go

IF EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_Kardex_Global_ID')
    DROP INDEX IX_Kardex_Global_ID ON dbo.Kardex
go
