-- Persons (customers, suppliers, salespeople), their currencies and the places they live in.

-- Rate is what one unit of the currency costs in the currency of the books, which is code 1; Decimals are those of an
-- amount in it.
IF OBJECT_ID(N'dbo.Currencies', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Currencies (
        Code int NOT NULL CONSTRAINT PK_Currencies PRIMARY KEY,
        Name nvarchar(50) NOT NULL,
        Rate decimal(23, 9) NOT NULL CONSTRAINT CK_Currencies_Rate CHECK (Rate > 0),
        Decimals tinyint NOT NULL CONSTRAINT CK_Currencies_Decimals CHECK (Decimals <= 9)
    )
END
go

-- One row a city, with its province.
IF OBJECT_ID(N'dbo.Zone', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Zone (
        ShahrCode int NOT NULL CONSTRAINT PK_Zone PRIMARY KEY,
        Shahr nvarchar(50) NOT NULL,
        OstanCode int NOT NULL,
        Ostan nvarchar(50) NOT NULL
    )
    CREATE INDEX IX_Zone_Ostan ON dbo.Zone (OstanCode, Ostan)
END
go

-- CurrDefault is a currency, 0 or null for none, and so has no foreign key. VisitorCode is the person's salesperson;
-- percent is what a salesperson gets of a sale. tags lists codes as in GoodInf.
IF OBJECT_ID(N'dbo.PerInf', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.PerInf (
        Code int NOT NULL CONSTRAINT PK_PerInf PRIMARY KEY,
        FullName nvarchar(153) NOT NULL,
        CurrDefault int NULL,
        VisitorCode int NULL CONSTRAINT FK_PerInf_Visitor REFERENCES dbo.PerInf (Code),
        [percent] decimal(9, 4) NULL,
        TaxPayerType int NULL,
        ShahrCode int NULL CONSTRAINT FK_PerInf_Zone REFERENCES dbo.Zone (ShahrCode),
        tags nvarchar(500) NULL
    )
    CREATE INDEX IX_PerInf_FullName ON dbo.PerInf (FullName)
    CREATE INDEX IX_PerInf_Visitor ON dbo.PerInf (VisitorCode)
END
go
