-- The stock ledger: one row a movement of a good in a store.
-- Global_ID numbers the documents in the order of their entry within a date; the rows of one document share it. A ledger may
-- as well number its documents over all dates, and says so in dbo.HostSettings (LedgerNumbering, see database/README.md). Tedad
-- is signed: what comes in is positive. RemainInAnbar is the stock of that good in that store after the movement. Fi is the
-- unit price of the movement, cost for what comes in. OperationCode is the number of a document, and documents are not kept
-- in this database.

IF OBJECT_ID(N'dbo.Kardex', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Kardex (
        ID int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_Kardex PRIMARY KEY,
        kala int NOT NULL CONSTRAINT FK_Kardex_Good REFERENCES dbo.GoodInf (Code),
        Anbar int NOT NULL CONSTRAINT FK_Kardex_Store REFERENCES dbo.Stores (Code),
        [Date] nvarchar(10) NOT NULL,
        Global_ID int NOT NULL,
        Tedad decimal(23, 9) NOT NULL,
        RemainInAnbar decimal(23, 9) NULL,
        Fi decimal(23, 9) NULL,
        OperationType int NULL CONSTRAINT FK_Kardex_OperationType REFERENCES dbo.OperationTypes (Code),
        OperationCode int NULL,
        OperationRow int NULL,
        PerCode int NULL CONSTRAINT FK_Kardex_Person REFERENCES dbo.PerInf (Code)
    )
    CREATE INDEX IX_Kardex_kala ON dbo.Kardex (kala, Anbar, [Date], Global_ID) INCLUDE (Tedad, RemainInAnbar)
    CREATE INDEX IX_Kardex_Document ON dbo.Kardex (Global_ID, [Date]) INCLUDE (kala, Anbar)
    CREATE INDEX IX_Kardex_Operation ON dbo.Kardex (OperationType, OperationCode, OperationRow)
    CREATE INDEX IX_Kardex_PerCode ON dbo.Kardex (PerCode)
END
go
