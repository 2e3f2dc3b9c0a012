-- The tree of categories, which sorts goods and persons alike, and what each user has made of it.

-- parent_code is 0 at the top, which is no category, and so has no foreign key; level counts from 1. create_user and
-- modify_user are numbers of the host's users (see README.md).
IF OBJECT_ID(N'dbo.category', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.category (
        id int NOT NULL CONSTRAINT PK_category PRIMARY KEY,
        name nvarchar(50) NOT NULL,
        [desc] nvarchar(500) NULL,
        create_date nvarchar(20) NULL,
        modify_date nvarchar(20) NULL,
        create_user int NULL,
        modify_user int NULL,
        parent_code int NOT NULL,
        [type] bit NULL,
        flagin bit NULL,
        [level] smallint NOT NULL
    )
    CREATE INDEX IX_category_parent ON dbo.category (parent_code)
    CREATE INDEX IX_category_level ON dbo.category ([level])
    CREATE INDEX IX_category_name ON dbo.category (name)
END
go

-- The categories that a user has made active, for persons, for goods or for both. Rows go after their category in the
-- deletion of a branch, so they do not refer to it. User_code is a number of the host's users. ID is the caller's; rows made
-- without one have none.
IF OBJECT_ID(N'dbo.DefaultUserCategory', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.DefaultUserCategory (
        ID int NULL,
        Code_category int NOT NULL,
        User_code int NOT NULL,
        active bit NOT NULL CONSTRAINT DF_DefaultUserCategory_active DEFAULT 0,
        person bit NOT NULL CONSTRAINT DF_DefaultUserCategory_person DEFAULT 0,
        Good bit NOT NULL CONSTRAINT DF_DefaultUserCategory_Good DEFAULT 0,
        CONSTRAINT PK_DefaultUserCategory PRIMARY KEY (User_code, Code_category)
    )
    CREATE INDEX IX_DefaultUserCategory_category ON dbo.DefaultUserCategory (Code_category)
    CREATE INDEX IX_DefaultUserCategory_ID ON dbo.DefaultUserCategory (ID)
END
go

-- Which goods and persons are in a category. tmp is 2 for a link that was taken back; such a link does not count. A
-- category can be deleted with its links left behind, so category_code has no foreign key.
IF OBJECT_ID(N'dbo.Kala_category', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Kala_category (
        ID int NOT NULL CONSTRAINT PK_Kala_category PRIMARY KEY,
        category_code int NOT NULL,
        kala_code int NOT NULL CONSTRAINT FK_Kala_category_Good REFERENCES dbo.GoodInf (Code),
        tmp smallint NOT NULL CONSTRAINT DF_Kala_category_tmp DEFAULT 0,
        [level] smallint NULL
    )
    CREATE INDEX IX_Kala_category_category ON dbo.Kala_category (category_code, tmp)
    CREATE INDEX IX_Kala_category_kala ON dbo.Kala_category (kala_code)
END
go

IF OBJECT_ID(N'dbo.person_category', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.person_category (
        ID int NOT NULL CONSTRAINT PK_person_category PRIMARY KEY,
        category_code int NOT NULL,
        person_code int NOT NULL CONSTRAINT FK_person_category_Person REFERENCES dbo.PerInf (Code),
        tmp smallint NOT NULL CONSTRAINT DF_person_category_tmp DEFAULT 0,
        [level] smallint NULL
    )
    CREATE INDEX IX_person_category_category ON dbo.person_category (category_code, tmp)
    CREATE INDEX IX_person_category_person ON dbo.person_category (person_code)
END
go
