-- Tags of goods and persons, each in a colour of its own.

-- The palette. There are as many tags as it has colours. The images are PNG; cl_code is the colour as the text of a number,
-- $00 and then blue, green and red in two hexadecimal digits each.
IF OBJECT_ID(N'dbo.colors', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.colors (
        code int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_colors PRIMARY KEY,
        [H-img] varbinary(max) NULL,
        [l-img] varbinary(max) NULL,
        cl_code varchar(9) NOT NULL CONSTRAINT UQ_colors_cl_code UNIQUE
    )
END
go

-- Rows are inserted without a list of columns, so these and no others, in this order. color_code is a code of colors as
-- text and is compared with it as a number, which a foreign key cannot do. Create_User and Modify_User are numbers of the
-- host's users (see README.md).
IF OBJECT_ID(N'dbo.Tags', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Tags (
        Code int NOT NULL CONSTRAINT PK_Tags PRIMARY KEY,
        Name nvarchar(50) NOT NULL,
        color_code varchar(10) NOT NULL,
        ISDeleted bit NULL,
        Create_Date varchar(20) NULL,
        Modify_Date varchar(20) NULL,
        Create_User int NULL,
        Modify_User int NULL,
        [Enable] bit NULL,
        comment nvarchar(500) NULL
    )
    CREATE INDEX IX_Tags_color_code ON dbo.Tags (color_code)
    CREATE INDEX IX_Tags_Name ON dbo.Tags (Name)
END
go
