-- Good details: single pieces and measured batches of a good, followed through the stock. A combination of up to five
-- details (serial, barcode, colour, ...) identifies one.

-- DetailType is the kind of value: 1 text, 2 date, 3 serial, 4 barcode.
IF OBJECT_ID(N'dbo.DetailTypes', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.DetailTypes (
        ID int NOT NULL CONSTRAINT PK_DetailTypes PRIMARY KEY,
        Title nvarchar(50) NOT NULL,
        DetailType int NOT NULL
    )
END
go

-- The details that a good has, and the slot, 1 to 5, of each.
IF OBJECT_ID(N'dbo.GoodDetailRelation', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.GoodDetailRelation (
        GoodCode int NOT NULL CONSTRAINT FK_GoodDetailRelation_Good REFERENCES dbo.GoodInf (Code),
        Slot tinyint NOT NULL CONSTRAINT CK_GoodDetailRelation_Slot CHECK (Slot BETWEEN 1 AND 5),
        DetailID int NOT NULL CONSTRAINT FK_GoodDetailRelation_Type REFERENCES dbo.DetailTypes (ID),
        CONSTRAINT PK_GoodDetailRelation PRIMARY KEY (GoodCode, Slot)
    )
END
go

IF OBJECT_ID(N'dbo.GoodDetailValues', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.GoodDetailValues (
        ID int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_GoodDetailValues PRIMARY KEY,
        GoodCode int NOT NULL CONSTRAINT FK_GoodDetailValues_Good REFERENCES dbo.GoodInf (Code)
    )
    CREATE INDEX IX_GoodDetailValues_Good ON dbo.GoodDetailValues (GoodCode)
END
go

IF OBJECT_ID(N'dbo.GoodDetailValueDetails', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.GoodDetailValueDetails (
        DetailValueID int NOT NULL CONSTRAINT FK_GoodDetailValueDetails_Value REFERENCES dbo.GoodDetailValues (ID),
        Slot tinyint NOT NULL CONSTRAINT CK_GoodDetailValueDetails_Slot CHECK (Slot BETWEEN 1 AND 5),
        DetailID int NOT NULL CONSTRAINT FK_GoodDetailValueDetails_Type REFERENCES dbo.DetailTypes (ID),
        Value nvarchar(100) NOT NULL,
        CONSTRAINT PK_GoodDetailValueDetails PRIMARY KEY (DetailValueID, Slot)
    )
    CREATE INDEX IX_GoodDetailValueDetails_Value ON dbo.GoodDetailValueDetails (Value, DetailID)
END
go

-- What moved, in the order of entry. Amounts are without sign; the operation says in which direction they went: one
-- that OperationTypes does not have moves no stock, and so has no foreign key. OperationCode is the number of a document.
IF OBJECT_ID(N'dbo.GoodDetailKardex', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.GoodDetailKardex (
        ID int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_GoodDetailKardex PRIMARY KEY,
        DetailValueID int NOT NULL CONSTRAINT FK_GoodDetailKardex_Value REFERENCES dbo.GoodDetailValues (ID),
        StoreCode int NOT NULL CONSTRAINT FK_GoodDetailKardex_Store REFERENCES dbo.Stores (Code),
        GoodCode int NOT NULL CONSTRAINT FK_GoodDetailKardex_Good REFERENCES dbo.GoodInf (Code),
        Amount1 decimal(23, 9) NOT NULL CONSTRAINT DF_GoodDetailKardex_Amount1 DEFAULT 0,
        Amount2 decimal(23, 9) NOT NULL CONSTRAINT DF_GoodDetailKardex_Amount2 DEFAULT 0,
        TotalAmount decimal(23, 9) NOT NULL CONSTRAINT DF_GoodDetailKardex_TotalAmount DEFAULT 0,
        [Length] decimal(23, 9) NOT NULL CONSTRAINT DF_GoodDetailKardex_Length DEFAULT 0,
        Width decimal(23, 9) NOT NULL CONSTRAINT DF_GoodDetailKardex_Width DEFAULT 0,
        Amount3 decimal(23, 9) NOT NULL CONSTRAINT DF_GoodDetailKardex_Amount3 DEFAULT 0,
        OperationType int NOT NULL,
        OperationCode int NOT NULL,
        OperationRow int NOT NULL
    )
    CREATE INDEX IX_GoodDetailKardex_Value ON dbo.GoodDetailKardex (DetailValueID, OperationType)
    CREATE INDEX IX_GoodDetailKardex_Operation ON dbo.GoodDetailKardex (OperationType, OperationCode, OperationRow)
    CREATE INDEX IX_GoodDetailKardex_Good ON dbo.GoodDetailKardex (GoodCode, StoreCode)
END
go

-- Rows of an issue while it is being edited: what is in stock of each combination, and what the row of the operation takes
-- of it (_Exit). Only the combination has a foreign key; those of store and good speak when the row is saved to the ledger.
-- Tmp is the state of the working row, which the editing screens choose.
IF OBJECT_ID(N'dbo.GoodDetailKardexExit_Temp', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.GoodDetailKardexExit_Temp (
        ID int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_GoodDetailKardexExit_Temp PRIMARY KEY,
        DetailValueID int NOT NULL CONSTRAINT FK_GoodDetailKardexExit_Temp_Value REFERENCES dbo.GoodDetailValues (ID),
        StoreCode int NOT NULL,
        GoodCode int NOT NULL,
        AnbarCode int NULL,
        DetailTitle1 nvarchar(100) NULL,
        DetailTitle2 nvarchar(100) NULL,
        DetailTitle3 nvarchar(100) NULL,
        DetailTitle4 nvarchar(100) NULL,
        DetailTitle5 nvarchar(100) NULL,
        Amount1 decimal(23, 9) NULL,
        Amount2 decimal(23, 9) NULL,
        TotalAmount decimal(23, 9) NULL,
        [Length] decimal(23, 9) NULL,
        Width decimal(23, 9) NULL,
        Amount3 decimal(23, 9) NULL,
        Amount1_Exit decimal(23, 9) NULL,
        Amount2_Exit decimal(23, 9) NULL,
        TotalAmount_Exit decimal(23, 9) NULL,
        Length_Exit decimal(23, 9) NULL,
        Width_Exit decimal(23, 9) NULL,
        Amount3_Exit decimal(23, 9) NULL,
        OperationType int NOT NULL,
        OperationCode int NOT NULL,
        OperationRow int NOT NULL,
        ForeignOperationCode int NULL,
        ComIndex int NULL,
        Selected bit NOT NULL CONSTRAINT DF_GoodDetailKardexExit_Temp_Selected DEFAULT 0,
        Tmp tinyint NOT NULL CONSTRAINT DF_GoodDetailKardexExit_Temp_Tmp DEFAULT 0
    )
    CREATE INDEX IX_GoodDetailKardexExit_Temp_Operation
        ON dbo.GoodDetailKardexExit_Temp (OperationType, OperationCode, OperationRow, Tmp)
    CREATE INDEX IX_GoodDetailKardexExit_Temp_Value ON dbo.GoodDetailKardexExit_Temp (DetailValueID)
END
go
