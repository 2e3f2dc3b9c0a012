-- Goods with their units.

IF OBJECT_ID(N'dbo.Units', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Units (
        Code int NOT NULL CONSTRAINT PK_Units PRIMARY KEY,
        Name nvarchar(50) NOT NULL
    )
END
go

-- AbbName lists the good's barcodes, each after an exclamation mark: !6260100100018!6260100100025!
-- tags lists codes of Tags, each between commas: ,1,4, and no foreign key reads a list.
-- UnitFormul is how many of the second unit one of the first makes, as a formula of X, the quantity: X*12
IF OBJECT_ID(N'dbo.GoodInf', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.GoodInf (
        Code int NOT NULL CONSTRAINT PK_GoodInf PRIMARY KEY,
        Name nvarchar(150) NOT NULL,
        AbbName nvarchar(500) NULL,
        Unit int NULL CONSTRAINT FK_GoodInf_Unit REFERENCES dbo.Units (Code),
        Unit2 int NULL CONSTRAINT FK_GoodInf_Unit2 REFERENCES dbo.Units (Code),
        UnitFormul nvarchar(200) NULL,
        ConsumerPrice decimal(23, 9) NULL,
        tags nvarchar(500) NULL
    )
    CREATE INDEX IX_GoodInf_Name ON dbo.GoodInf (Name)
END
go
