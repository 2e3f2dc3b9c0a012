-- How the stock ledger numbers its documents, for an owner who has not said it yet: anew with each date. A ledger that is there
-- already and has numbered the documents of three dates and more without using a number twice does it over all dates.
-- What hangs on it is said in database/README.md.

INSERT INTO dbo.HostSettings (Name, Value)
SELECT N'LedgerNumbering',
    CASE
        WHEN (SELECT COUNT(DISTINCT [Date]) FROM dbo.Kardex) >= 3 AND NOT EXISTS (
            SELECT Global_ID FROM dbo.Kardex GROUP BY Global_ID HAVING MIN([Date]) < MAX([Date])
        ) THEN N'all'
        ELSE N'date'
    END
WHERE NOT EXISTS (SELECT 1 FROM dbo.HostSettings WHERE Name = N'LedgerNumbering')
go
