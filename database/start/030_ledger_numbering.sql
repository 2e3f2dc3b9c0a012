-- How the stock ledger numbers its documents, for an owner who has not said it yet: anew with each date.
-- What the other choice is, and what hangs on it, is said in database/README.md.

INSERT INTO dbo.HostSettings (Name, Value)
SELECT N'LedgerNumbering', N'date'
WHERE NOT EXISTS (SELECT 1 FROM dbo.HostSettings WHERE Name = N'LedgerNumbering')
go
