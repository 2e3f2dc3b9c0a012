-- The people of the demo company: the manager of every database, renamed, and a cashier. Passwords are the user names.

INSERT INTO dbo.HostUserGroups (Code, Title)
SELECT N.Code, N.Title
FROM (
    SELECT 1 AS Code, N'صندوق‌داران' AS Title
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.HostUserGroups AS P WHERE P.Code = N.Code)
go

-- Cashiers look up price levels, goods, persons and tags, and sell at the counter; they change nothing else.
INSERT INTO dbo.HostGroupPermissions (GroupCode, SoftwarePart, Permission)
SELECT N.GroupCode, N.SoftwarePart, N.Permission
FROM (
    SELECT 1 AS GroupCode, 114 AS SoftwarePart, 6 AS Permission
    UNION ALL SELECT 1, 102, 6
    UNION ALL SELECT 1, 101, 6
    UNION ALL SELECT 1, 127, 6
    UNION ALL SELECT 1, 905, 1
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.HostGroupPermissions AS P WHERE P.GroupCode = N.GroupCode AND P.SoftwarePart = N.SoftwarePart AND P.Permission = N.Permission)
go

UPDATE dbo.HostUsers
SET PasswordHash = N'pbkdf2-sha256$120000$YmFzYWx0LW1hbmFnZXItMQ==$8TATFT8/MNjm4q90e9mIShPyVvg8ErfYP4Gp++ABCZw='
WHERE Code = 1 AND PasswordHash = N''
go

UPDATE dbo.HostUsers SET FullName = N'مریم رستمی' WHERE Code = 1 AND FullName = N'مدیر سیستم'
go

INSERT INTO dbo.HostUsers (Code, UserName, FullName, PasswordHash, IsManager, GroupCode, Enabled)
SELECT 2, N'cashier', N'علی کریمی', N'pbkdf2-sha256$120000$YmFzYWx0LWNhc2hpZXItMg==$wTqyvwXiSEY9/Ks9yX38RVtea3ANoIZpozHi1WiWYwY=', 0, 1, 1
WHERE NOT EXISTS (SELECT 1 FROM dbo.HostUsers WHERE Code = 2)
go

INSERT INTO dbo.HostSettings (Name, Value)
SELECT N.Name, N.Value
FROM (
    SELECT N'CompanyName' AS Name, N'بازرگانی مهرآفرین' AS Value
    UNION ALL SELECT N'CurrencyDecimals', N'0'
    UNION ALL SELECT N'NegativeType', N'1'
    UNION ALL SELECT N'DemoData', N'1'
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.HostSettings AS P WHERE P.Name = N.Name)
go
