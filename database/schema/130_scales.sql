-- Weighing scales that print labels, and the items they know.

-- ipRange numbers the network that the scale's address belongs to.
IF OBJECT_ID(N'dbo.Scales', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Scales (
        Number int NOT NULL CONSTRAINT PK_Scales PRIMARY KEY,
        IP nvarchar(15) NOT NULL CONSTRAINT UQ_Scales_IP UNIQUE,
        ipRange int NOT NULL CONSTRAINT DF_Scales_ipRange DEFAULT 0
    )
END
go

-- Which scales belong to which of the twenty groups.
IF OBJECT_ID(N'dbo.Scales_Groups', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Scales_Groups (
        GroupNo int NOT NULL CONSTRAINT CK_Scales_Groups_GroupNo CHECK (GroupNo BETWEEN 1 AND 20),
        ScaleCode int NOT NULL CONSTRAINT FK_Scales_Groups_Scale REFERENCES dbo.Scales (Number),
        CONSTRAINT PK_Scales_Groups PRIMARY KEY (GroupNo, ScaleCode)
    )
END
go

-- A good as the scales show it. type is 0 for goods sold by weight, 1 for those sold by the piece; costlevel_Type says
-- which price level price was taken from. The price stays when that level is deleted, so there is no foreign key.
IF OBJECT_ID(N'dbo.Items', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Items (
        Code int NOT NULL CONSTRAINT PK_Items PRIMARY KEY CONSTRAINT FK_Items_Good REFERENCES dbo.GoodInf (Code),
        name1 nvarchar(50) NOT NULL,
        name2 nvarchar(50) NULL,
        price int NOT NULL,
        [type] int NOT NULL CONSTRAINT DF_Items_type DEFAULT 0,
        BarCode nvarchar(20) NULL,
        costlevel_Type int NULL
    )
END
go

-- A key of the scale, PlU, and the item that it means in each group. Keys keep their numbers when an item is taken off the
-- scales, so the groups have no foreign keys: what is sent joins Items, and a key without its item sends nothing.
IF OBJECT_ID(N'dbo.[Group-PLU]', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.[Group-PLU] (
        PlU int NOT NULL CONSTRAINT [PK_Group-PLU] PRIMARY KEY,
        Group1 int NULL,
        Group2 int NULL,
        Group3 int NULL,
        Group4 int NULL,
        Group5 int NULL,
        Group6 int NULL,
        Group7 int NULL,
        Group8 int NULL,
        Group9 int NULL,
        Group10 int NULL,
        Group11 int NULL,
        Group12 int NULL,
        Group13 int NULL,
        Group14 int NULL,
        Group15 int NULL,
        Group16 int NULL,
        Group17 int NULL,
        Group18 int NULL,
        Group19 int NULL,
        Group20 int NULL
    )
END
go
