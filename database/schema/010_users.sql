-- Users, what they may do, and what they did. Parts and permissions are numbers of the program's own; their tables hold the
-- titles that screens show, and what is allowed or logged under a number without a title is kept all the same. So nothing
-- refers to them.

IF OBJECT_ID(N'dbo.HostSchemaVersion', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.HostSchemaVersion (
        Version int NOT NULL CONSTRAINT PK_HostSchemaVersion PRIMARY KEY,
        DeployedAt datetime NOT NULL CONSTRAINT DF_HostSchemaVersion_DeployedAt DEFAULT GETDATE()
    )
END
go

-- The parts of the application; Title is what a screen shows.
IF OBJECT_ID(N'dbo.SoftwarePart', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.SoftwarePart (
        Code int NOT NULL CONSTRAINT PK_SoftwarePart PRIMARY KEY,
        Title nvarchar(100) NOT NULL
    )
END
go

IF OBJECT_ID(N'dbo.HostPermissionTypes', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.HostPermissionTypes (
        Code int NOT NULL CONSTRAINT PK_HostPermissionTypes PRIMARY KEY,
        Title nvarchar(50) NOT NULL
    )
END
go

IF OBJECT_ID(N'dbo.HostUserGroups', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.HostUserGroups (
        Code int NOT NULL CONSTRAINT PK_HostUserGroups PRIMARY KEY,
        Title nvarchar(50) NOT NULL
    )
END
go

IF OBJECT_ID(N'dbo.HostUsers', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.HostUsers (
        Code int NOT NULL CONSTRAINT PK_HostUsers PRIMARY KEY,
        UserName nvarchar(50) NOT NULL CONSTRAINT UQ_HostUsers_UserName UNIQUE,
        FullName nvarchar(100) NOT NULL,
        PasswordHash nvarchar(200) NOT NULL,
        IsManager bit NOT NULL CONSTRAINT DF_HostUsers_IsManager DEFAULT 0,
        GroupCode int NULL CONSTRAINT FK_HostUsers_Group REFERENCES dbo.HostUserGroups (Code),
        Enabled bit NOT NULL CONSTRAINT DF_HostUsers_Enabled DEFAULT 1
    )
END
go

-- What the users of a group may do.
IF OBJECT_ID(N'dbo.HostGroupPermissions', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.HostGroupPermissions (
        GroupCode int NOT NULL CONSTRAINT FK_HostGroupPermissions_Group REFERENCES dbo.HostUserGroups (Code),
        SoftwarePart int NOT NULL,
        Permission int NOT NULL,
        CONSTRAINT PK_HostGroupPermissions PRIMARY KEY (GroupCode, SoftwarePart, Permission)
    )
END
go

-- Exceptions for one user, in both directions.
IF OBJECT_ID(N'dbo.HostUserPermissions', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.HostUserPermissions (
        UserCode int NOT NULL CONSTRAINT FK_HostUserPermissions_User REFERENCES dbo.HostUsers (Code),
        SoftwarePart int NOT NULL,
        Permission int NOT NULL,
        Allowed bit NOT NULL,
        CONSTRAINT PK_HostUserPermissions PRIMARY KEY (UserCode, SoftwarePart, Permission)
    )
END
go

-- Names are kept as they were at the time, so that an entry still reads the same years later.
IF OBJECT_ID(N'dbo.HostUserLog', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.HostUserLog (
        ID int IDENTITY(1, 1) NOT NULL CONSTRAINT PK_HostUserLog PRIMARY KEY,
        UserCode int NOT NULL,
        UserName nvarchar(100) NOT NULL,
        WorkstationName nvarchar(100) NOT NULL,
        LogDate nvarchar(10) NOT NULL,
        LogTime nvarchar(8) NOT NULL,
        LoggedAt datetime NOT NULL,
        SoftwarePart int NOT NULL,
        Permission int NOT NULL,
        [Text] nvarchar(500) NOT NULL,
        [Description] nvarchar(500) NOT NULL
    )
    CREATE INDEX IX_HostUserLog_LogDate ON dbo.HostUserLog (LogDate)
END
go
