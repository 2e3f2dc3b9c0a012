-- Clients of the database, the codes that their editors hold, and what each keeps for its users.

-- One row a client number. ProcessId is null while nobody uses the number. MachineName tells the machine from others of
-- its name, and ProcessStarted the process from others of its number, in other containers of the machine too.
IF OBJECT_ID(N'dbo.HostWorkstations', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.HostWorkstations (
        Owner int NOT NULL CONSTRAINT PK_HostWorkstations PRIMARY KEY,
        MachineName nvarchar(100) NOT NULL,
        WorkstationName nvarchar(100) NOT NULL,
        ProcessId bigint NULL,
        ProcessStarted nvarchar(100) NULL
    )
END
go

-- Owner and UserCode are what a holder says of itself. Every program on the database holds its codes here, also one that
-- keeps its clients and users elsewhere, so neither has a foreign key. Status is the part of the application.
-- Slot 0 is the first holder of a code, 1 the second and so on; whoever takes a new code needs slot 0, so the key keeps
-- two clients from taking the same one.
IF OBJECT_ID(N'dbo.CodeLock_TBL', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.CodeLock_TBL (
        Code nvarchar(50) NOT NULL,
        Status int NOT NULL,
        Slot int NOT NULL CONSTRAINT DF_CodeLock_TBL_Slot DEFAULT 0,
        Owner int NULL,
        UserCode int NULL,
        WorkstationName nvarchar(100) NULL,
        LockDate nvarchar(19) NULL,
        CONSTRAINT PK_CodeLock_TBL PRIMARY KEY (Status, Code, Slot)
    )
    CREATE INDEX IX_CodeLock_TBL_Owner ON dbo.CodeLock_TBL (Owner)
END
go

-- Company-wide settings under their names.
IF OBJECT_ID(N'dbo.HostSettings', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.HostSettings (
        Name nvarchar(50) NOT NULL CONSTRAINT PK_HostSettings PRIMARY KEY,
        Value nvarchar(4000) NOT NULL
    )
END
go

-- How a user arranged a screen.
IF OBJECT_ID(N'dbo.HostFormOptions', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.HostFormOptions (
        UserCode int NOT NULL CONSTRAINT FK_HostFormOptions_User REFERENCES dbo.HostUsers (Code),
        ScreenKey nvarchar(100) NOT NULL,
        Options nvarchar(max) NOT NULL,
        CONSTRAINT PK_HostFormOptions PRIMARY KEY (UserCode, ScreenKey)
    )
END
go

-- Small values that a screen wants to find again.
IF OBJECT_ID(N'dbo.HostProperties', N'U') IS NULL
BEGIN
    CREATE TABLE dbo.HostProperties (
        UserCode int NOT NULL CONSTRAINT FK_HostProperties_User REFERENCES dbo.HostUsers (Code),
        Name nvarchar(200) NOT NULL,
        Value nvarchar(max) NOT NULL,
        CONSTRAINT PK_HostProperties PRIMARY KEY (UserCode, Name)
    )
END
go
