-- What a document wants to know of a good besides its name, barcodes and units.
-- Kala_Type, Kala_Index and Kala_Name are the good's kind, its technical number and its second name. Meghdar_Formool is the
-- factor between the two units where the ratio is fixed. Pos is the shelf. MinAva is the stock below which the good is to be
-- ordered. Percentages are of the price.

IF COL_LENGTH(N'dbo.GoodInf', N'Kala_Type') IS NULL
    ALTER TABLE dbo.GoodInf ADD Kala_Type nvarchar(50) NULL
IF COL_LENGTH(N'dbo.GoodInf', N'Kala_Index') IS NULL
    ALTER TABLE dbo.GoodInf ADD Kala_Index nvarchar(50) NULL
IF COL_LENGTH(N'dbo.GoodInf', N'Kala_Name') IS NULL
    ALTER TABLE dbo.GoodInf ADD Kala_Name nvarchar(150) NULL
IF COL_LENGTH(N'dbo.GoodInf', N'MinAva') IS NULL
    ALTER TABLE dbo.GoodInf ADD MinAva decimal(23, 9) NULL
IF COL_LENGTH(N'dbo.GoodInf', N'Pos') IS NULL
    ALTER TABLE dbo.GoodInf ADD Pos nvarchar(50) NULL
IF COL_LENGTH(N'dbo.GoodInf', N'Meghdar_Formool') IS NULL
    ALTER TABLE dbo.GoodInf ADD Meghdar_Formool decimal(23, 9) NULL
IF COL_LENGTH(N'dbo.GoodInf', N'OffPercentSell') IS NULL
    ALTER TABLE dbo.GoodInf ADD OffPercentSell decimal(9, 4) NULL
IF COL_LENGTH(N'dbo.GoodInf', N'TaxExempt') IS NULL
    ALTER TABLE dbo.GoodInf ADD TaxExempt bit NOT NULL CONSTRAINT DF_GoodInf_TaxExempt DEFAULT 0
IF COL_LENGTH(N'dbo.GoodInf', N'ChargeExempt') IS NULL
    ALTER TABLE dbo.GoodInf ADD ChargeExempt bit NOT NULL CONSTRAINT DF_GoodInf_ChargeExempt DEFAULT 0
IF COL_LENGTH(N'dbo.GoodInf', N'Tax_In_BuyCosts') IS NULL
    ALTER TABLE dbo.GoodInf ADD Tax_In_BuyCosts bit NOT NULL CONSTRAINT DF_GoodInf_Tax_In_BuyCosts DEFAULT 0
IF COL_LENGTH(N'dbo.GoodInf', N'Tax_In_SellCosts') IS NULL
    ALTER TABLE dbo.GoodInf ADD Tax_In_SellCosts bit NOT NULL CONSTRAINT DF_GoodInf_Tax_In_SellCosts DEFAULT 0
IF COL_LENGTH(N'dbo.GoodInf', N'TaxPercent') IS NULL
    ALTER TABLE dbo.GoodInf ADD TaxPercent decimal(9, 4) NULL
IF COL_LENGTH(N'dbo.GoodInf', N'ChargePercent') IS NULL
    ALTER TABLE dbo.GoodInf ADD ChargePercent decimal(9, 4) NULL
go

-- Older databases may hold prices of goods that are gone; they keep them and go without the key.
IF NOT EXISTS (SELECT 1 FROM sys.foreign_keys WHERE name = N'FK_GoodCostDiscount_Good')
    AND NOT EXISTS (
        SELECT 1
        FROM dbo.GoodCostDiscount AS P
        WHERE NOT EXISTS (SELECT 1 FROM dbo.GoodInf AS G WHERE G.Code = P.GoodCode)
    )
    ALTER TABLE dbo.GoodCostDiscount ADD CONSTRAINT FK_GoodCostDiscount_Good
        FOREIGN KEY (GoodCode) REFERENCES dbo.GoodInf (Code)
go
