-- Price and discount levels, and each good's prices and discounts by level.

-- CostType 1 is a price level, 3 a discount level; rows of 4 are listed with the discount levels.
IF OBJECT_ID(N'dbo.CostLevel', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.CostLevel (
        Code int NOT NULL,
        Name nvarchar(50) NOT NULL,
        Comment nvarchar(500) NULL,
        CostType int NOT NULL,
        CONSTRAINT PK_CostLevel PRIMARY KEY (CostType, Code)
    )
END
go

-- Two users may find the same name free at the same moment; the second one's save is then refused. A database where
-- that has already happened keeps its rows.
IF NOT EXISTS (SELECT * FROM sys.indexes WHERE name = N'UX_CostLevel_Name')
   AND NOT EXISTS (SELECT CostType FROM dbo.CostLevel GROUP BY CostType, Name HAVING COUNT(*) > 1)
    CREATE UNIQUE INDEX UX_CostLevel_Name ON dbo.CostLevel (CostType, Name)
go

-- One row a good. The number in a column's name is the level's code; the default numbers are such numbers, 0 or null for
-- none, and so have no foreign key.
IF OBJECT_ID(N'dbo.GoodCostDiscount', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.GoodCostDiscount (
        GoodCode int NOT NULL CONSTRAINT PK_GoodCostDiscount PRIMARY KEY,
        CostLevel_Sell_1 decimal(23, 9) NULL,
        CostLevel_Sell_2 decimal(23, 9) NULL,
        CostLevel_Sell_3 decimal(23, 9) NULL,
        CostLevel_Sell_4 decimal(23, 9) NULL,
        CostLevel_Sell_5 decimal(23, 9) NULL,
        CostLevel_Sell_6 decimal(23, 9) NULL,
        CostLevel_Sell_7 decimal(23, 9) NULL,
        CostLevel_Sell_8 decimal(23, 9) NULL,
        CostLevel_Sell_9 decimal(23, 9) NULL,
        CostLevel_Sell_10 decimal(23, 9) NULL,
        CostLevel_Buy_1 decimal(23, 9) NULL,
        CostLevel_Buy_2 decimal(23, 9) NULL,
        CostLevel_Buy_3 decimal(23, 9) NULL,
        CostLevel_Buy_4 decimal(23, 9) NULL,
        CostLevel_Buy_5 decimal(23, 9) NULL,
        CostLevel_Buy_6 decimal(23, 9) NULL,
        CostLevel_Buy_7 decimal(23, 9) NULL,
        CostLevel_Buy_8 decimal(23, 9) NULL,
        CostLevel_Buy_9 decimal(23, 9) NULL,
        CostLevel_Buy_10 decimal(23, 9) NULL,
        Discount_Sell_1 decimal(23, 9) NULL,
        Discount_Sell_2 decimal(23, 9) NULL,
        Discount_Sell_3 decimal(23, 9) NULL,
        Discount_Sell_4 decimal(23, 9) NULL,
        Discount_Buy_1 decimal(23, 9) NULL,
        Discount_Buy_2 decimal(23, 9) NULL,
        Discount_Buy_3 decimal(23, 9) NULL,
        Discount_Buy_4 decimal(23, 9) NULL,
        Default_CostLevel_Sell_Number int NULL,
        Default_CostLevel_Buy_Number int NULL,
        Default_Discount_Sell_Number int NULL,
        Default_Discount_Buy_Number int NULL
    )
END
go

-- Price lists of goods (Type 3) and of persons (Type 1): TypeCode is the one or the other, which no foreign key can say. A
-- row names its level by code and kind, so that a level in use stays.
IF OBJECT_ID(N'dbo.costlist', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.costlist (
        ID int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_costlist PRIMARY KEY,
        [Type] smallint NOT NULL,
        [Status] bit NULL,
        TypeCode int NOT NULL,
        CostLevelCode int NULL,
        Cost decimal(23, 9) NULL,
        [Default] bit NULL,
        CostLevelType int NOT NULL CONSTRAINT DF_costlist_CostLevelType DEFAULT 1,
        CONSTRAINT FK_costlist_CostLevel FOREIGN KEY (CostLevelType, CostLevelCode) REFERENCES dbo.CostLevel (CostType, Code)
    )
    CREATE INDEX IX_costlist_TypeCode ON dbo.costlist ([Type], TypeCode)
    CREATE INDEX IX_costlist_CostLevel ON dbo.costlist (CostLevelCode, CostLevelType)
END
go

-- Price lists while they are being edited. What a client has left behind here must not keep a level from being deleted, so
-- CostLevelCode has no foreign key; that of costlist speaks when the list is saved.
IF OBJECT_ID(N'dbo.tmpcostlist', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.tmpcostlist (
        ID int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_tmpcostlist PRIMARY KEY,
        [Type] smallint NOT NULL,
        [Status] bit NULL,
        TypeCode int NOT NULL,
        CostLevelCode int NULL,
        Cost decimal(23, 9) NULL,
        [Default] bit NULL
    )
    CREATE INDEX IX_tmpcostlist_TypeCode ON dbo.tmpcostlist ([Type], TypeCode)
END
go

-- The print columns of the price report: F and the level's code. Rows are there for a print only, and Code, the good, has
-- no foreign key, so that they never hold up a good.
IF OBJECT_ID(N'dbo.CostReport', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.CostReport (
        Code int NOT NULL,
        [Status] int NOT NULL,
        F1 decimal(23, 9) NULL,
        F2 decimal(23, 9) NULL,
        F3 decimal(23, 9) NULL,
        F4 decimal(23, 9) NULL,
        F5 decimal(23, 9) NULL,
        F6 decimal(23, 9) NULL,
        F7 decimal(23, 9) NULL,
        F8 decimal(23, 9) NULL,
        F9 decimal(23, 9) NULL,
        F10 decimal(23, 9) NULL,
        CONSTRAINT PK_CostReport PRIMARY KEY (Code, [Status])
    )
END
go

-- What a report prints: one row a printable column, named by its field in Comment.
IF OBJECT_ID(N'dbo.PrintsSettings', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.PrintsSettings (
        ID int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_PrintsSettings PRIMARY KEY,
        PartName nvarchar(50) NOT NULL,
        Comment nvarchar(50) NOT NULL,
        Title nvarchar(100) NULL,
        Visible bit NOT NULL CONSTRAINT DF_PrintsSettings_Visible DEFAULT 1
    )
    CREATE INDEX IX_PrintsSettings_Part ON dbo.PrintsSettings (PartName, Comment)
END
go
