-- What a document wants to know of a good besides its name, barcodes and units.
-- Kala_Type, Kala_Index and Kala_Name are the good's kind, its technical number and its second name. Meghdar_Formool is the
-- factor between the two units where the ratio is fixed. Pos is the shelf. MinAva is the stock below
-- which the good is to be ordered. Percentages are of the price.

IF COL_LENGTH(N'dbo.GoodInf', N'Kala_Type') IS NULL
BEGIN
    ALTER TABLE dbo.GoodInf ADD
        Kala_Type nvarchar(50) NULL,
        Kala_Index nvarchar(50) NULL,
        Kala_Name nvarchar(150) NULL,
        MinAva decimal(23, 9) NULL,
        Pos nvarchar(50) NULL,
        Meghdar_Formool decimal(23, 9) NULL,
        OffPercentSell decimal(9, 4) NULL,
        TaxExempt bit NOT NULL CONSTRAINT DF_GoodInf_TaxExempt DEFAULT 0,
        ChargeExempt bit NOT NULL CONSTRAINT DF_GoodInf_ChargeExempt DEFAULT 0,
        Tax_In_BuyCosts bit NOT NULL CONSTRAINT DF_GoodInf_Tax_In_BuyCosts DEFAULT 0,
        Tax_In_SellCosts bit NOT NULL CONSTRAINT DF_GoodInf_Tax_In_SellCosts DEFAULT 0,
        TaxPercent decimal(9, 4) NULL,
        ChargePercent decimal(9, 4) NULL

    -- Older databases may hold prices of goods that are gone; they keep them and go without the key.
    IF NOT EXISTS (
        SELECT 1
        FROM dbo.GoodCostDiscount AS P
        WHERE NOT EXISTS (SELECT 1 FROM dbo.GoodInf AS G WHERE G.Code = P.GoodCode)
    )
        ALTER TABLE dbo.GoodCostDiscount ADD CONSTRAINT FK_GoodCostDiscount_Good
            FOREIGN KEY (GoodCode) REFERENCES dbo.GoodInf (Code)
END
go
