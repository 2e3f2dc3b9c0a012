-- Named lists of goods (Type 0) or of persons (Type 1).

IF OBJECT_ID(N'dbo.SelectedLists', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.SelectedLists (
        ID int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_SelectedLists PRIMARY KEY,
        Code int NOT NULL CONSTRAINT UQ_SelectedLists_Code UNIQUE,
        [Type] smallint NOT NULL,
        Title nvarchar(100) NOT NULL,
        Comment nvarchar(100) NULL,
        [Enable] bit NOT NULL CONSTRAINT DF_SelectedLists_Enable DEFAULT 0,
        DisplayType int NOT NULL CONSTRAINT DF_SelectedLists_DisplayType DEFAULT 0
    )
    CREATE INDEX IX_SelectedLists_Type ON dbo.SelectedLists ([Type], [Enable])
    CREATE INDEX IX_SelectedLists_Title ON dbo.SelectedLists (Title)
END
go

-- Code is a good or a person, as the list's Type says, which no foreign key can, and Radif its place in the list. Members
-- may outlive their list, so SL_Code has no foreign key.
IF OBJECT_ID(N'dbo.SelectedList_Detail', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.SelectedList_Detail (
        SL_Code int NOT NULL,
        Code int NOT NULL,
        Radif int NOT NULL,
        CONSTRAINT PK_SelectedList_Detail PRIMARY KEY (SL_Code, Code)
    )
    CREATE INDEX IX_SelectedList_Detail_Radif ON dbo.SelectedList_Detail (SL_Code, Radif)
END
go
