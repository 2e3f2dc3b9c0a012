-- Accounting vouchers, and the operations of persons that are to be in them.

IF OBJECT_ID(N'dbo.Accounts', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Accounts (
        Code int NOT NULL CONSTRAINT PK_Accounts PRIMARY KEY,
        Name nvarchar(100) NOT NULL
    )
END
go

IF OBJECT_ID(N'dbo.Sanad', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Sanad (
        Code int NOT NULL CONSTRAINT PK_Sanad PRIMARY KEY,
        [Date] nvarchar(10) NOT NULL,
        Comment nvarchar(200) NULL
    )
END
go

-- Bed is the debit of a row, Bes its credit. PerCode and kala say whose account, or the account of which good, it is.
IF OBJECT_ID(N'dbo.SanadDetail', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.SanadDetail (
        SanadCode int NOT NULL CONSTRAINT FK_SanadDetail_Sanad REFERENCES dbo.Sanad (Code),
        Radif int NOT NULL,
        AccountCode int NOT NULL CONSTRAINT FK_SanadDetail_Account REFERENCES dbo.Accounts (Code),
        PerCode int NULL CONSTRAINT FK_SanadDetail_Person REFERENCES dbo.PerInf (Code),
        kala int NULL CONSTRAINT FK_SanadDetail_Good REFERENCES dbo.GoodInf (Code),
        Bed decimal(23, 9) NOT NULL CONSTRAINT DF_SanadDetail_Bed DEFAULT 0,
        Bes decimal(23, 9) NOT NULL CONSTRAINT DF_SanadDetail_Bes DEFAULT 0,
        Comment nvarchar(200) NULL,
        CONSTRAINT PK_SanadDetail PRIMARY KEY (SanadCode, Radif)
    )
    CREATE INDEX IX_SanadDetail_Person ON dbo.SanadDetail (PerCode, SanadCode)
    CREATE INDEX IX_SanadDetail_Account ON dbo.SanadDetail (AccountCode)
END
go

-- An invoice, receipt or payment of a person. Amount is positive when it makes the person owe, negative when it makes us owe.
-- SanadCode is its voucher, null while it has none; a voucher that was deleted leaves its number behind, so it has no
-- foreign key.
IF OBJECT_ID(N'dbo.PersonOperations', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.PersonOperations (
        ID int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_PersonOperations PRIMARY KEY,
        PerCode int NOT NULL CONSTRAINT FK_PersonOperations_Person REFERENCES dbo.PerInf (Code),
        OperationType int NOT NULL CONSTRAINT FK_PersonOperations_Type REFERENCES dbo.OperationTypes (Code),
        OperationCode int NOT NULL,
        [Date] nvarchar(10) NOT NULL,
        Amount decimal(23, 9) NOT NULL,
        SanadCode int NULL,
        CONSTRAINT UQ_PersonOperations_Operation UNIQUE (OperationType, OperationCode)
    )
    CREATE INDEX IX_PersonOperations_Person ON dbo.PersonOperations (PerCode)
    CREATE INDEX IX_PersonOperations_Sanad ON dbo.PersonOperations (SanadCode)
END
go
