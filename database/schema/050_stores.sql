-- Stores, and the kinds of documents that move goods or money.

IF OBJECT_ID(N'dbo.Stores', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.Stores (
        Code int NOT NULL CONSTRAINT PK_Stores PRIMARY KEY,
        Name nvarchar(100) NOT NULL
    )
END
go

-- Direction is 1 for documents that bring goods in, -1 for those that take them out, 0 for those that move none.
IF OBJECT_ID(N'dbo.OperationTypes', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.OperationTypes (
        Code int NOT NULL CONSTRAINT PK_OperationTypes PRIMARY KEY,
        Name nvarchar(50) NOT NULL,
        Direction int NOT NULL
    )
END
go
