-- The layouts of barcodes that scales and labelling machines print. Positions count from 1; a Count of 0 says that the
-- barcode has no such field. BarCodeType is 1 for a good with amount and price, 2 for the total of an invoice, 3 for a price
-- that is added to a sum. ItemCodeType is 1 when the good's field is its code, else the good is looked up by it.
-- AmountDivide above 0 says that the amount is in thousandths.

IF OBJECT_ID(N'dbo.BarCodeFormul', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.BarCodeFormul (
        ID int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_BarCodeFormul PRIMARY KEY,
        Title nvarchar(50) NULL,
        DigitCount int NOT NULL,
        ConstantStart int NOT NULL,
        -- A scan compares the prefixes of all layouts of its length; below 0 that is an error, whatever is scanned. A table
        -- that is there already keeps its rows and has no such check.
        ConstantCount int NOT NULL CONSTRAINT CK_BarCodeFormul_ConstantCount CHECK (ConstantCount >= 0),
        ConstantCode nvarchar(20) NOT NULL,
        BarCodeType int NOT NULL,
        ItemConstantCode int NOT NULL CONSTRAINT DF_BarCodeFormul_ItemConstantCode DEFAULT 0,
        ItemCodeType int NOT NULL CONSTRAINT DF_BarCodeFormul_ItemCodeType DEFAULT 0,
        ItemCodeStart int NOT NULL CONSTRAINT DF_BarCodeFormul_ItemCodeStart DEFAULT 0,
        ItemCodeCount int NOT NULL CONSTRAINT DF_BarCodeFormul_ItemCodeCount DEFAULT 0,
        AmountStart int NOT NULL CONSTRAINT DF_BarCodeFormul_AmountStart DEFAULT 0,
        AmountCount int NOT NULL CONSTRAINT DF_BarCodeFormul_AmountCount DEFAULT 0,
        AmountDivide int NOT NULL CONSTRAINT DF_BarCodeFormul_AmountDivide DEFAULT 0,
        BalanceNoStart int NOT NULL CONSTRAINT DF_BarCodeFormul_BalanceNoStart DEFAULT 0,
        BalanceNoCount int NOT NULL CONSTRAINT DF_BarCodeFormul_BalanceNoCount DEFAULT 0,
        BalanceNoAsStore bit NOT NULL CONSTRAINT DF_BarCodeFormul_BalanceNoAsStore DEFAULT 0,
        PriceStart int NOT NULL CONSTRAINT DF_BarCodeFormul_PriceStart DEFAULT 0,
        PriceCount int NOT NULL CONSTRAINT DF_BarCodeFormul_PriceCount DEFAULT 0
    )
    CREATE INDEX IX_BarCodeFormul_DigitCount ON dbo.BarCodeFormul (DigitCount)
END
go
