-- What every database starts with: the parts of the application, the kinds of permission, and a manager, so that
-- somebody can sign in. The manager has no password yet: whoever signs in first chooses one.

INSERT INTO dbo.SoftwarePart (Code, Title)
SELECT N.Code, N.Title
FROM (
    SELECT 101 AS Code, N'اشخاص' AS Title
    UNION ALL SELECT 102, N'کالاها'
    UNION ALL SELECT 114, N'سطوح قیمت'
    UNION ALL SELECT 126, N'لیست‌های انتخابی'
    UNION ALL SELECT 127, N'برچسب‌ها'
    UNION ALL SELECT 130, N'دسته بندی و منطقه بندی'
    UNION ALL SELECT 134, N'سطوح تخفیف'
    UNION ALL SELECT 519, N'گزارش قیمت کالاها'
    UNION ALL SELECT 901, N'تنظیمات'
    UNION ALL SELECT 902, N'گزارش عملکرد کاربران'
    UNION ALL SELECT 903, N'کاربران و دسترسی‌ها'
    UNION ALL SELECT 904, N'کنسول توابع'
    UNION ALL SELECT 905, N'فروش پیشخوان'
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.SoftwarePart AS P WHERE P.Code = N.Code)
go

INSERT INTO dbo.HostPermissionTypes (Code, Title)
SELECT N.Code, N.Title
FROM (
    SELECT 1 AS Code, N'ثبت' AS Title
    UNION ALL SELECT 2, N'ویرایش'
    UNION ALL SELECT 3, N'حذف'
    UNION ALL SELECT 6, N'مشاهده'
    UNION ALL SELECT 1261, N'فعال و غیرفعال کردن'
) AS N
WHERE NOT EXISTS (SELECT 1 FROM dbo.HostPermissionTypes AS P WHERE P.Code = N.Code)
go

IF NOT EXISTS (SELECT 1 FROM dbo.HostUsers)
BEGIN
    INSERT INTO dbo.HostUsers (Code, UserName, FullName, PasswordHash, IsManager, GroupCode, Enabled)
    VALUES (1, N'manager', N'مدیر سیستم', N'', 1, NULL, 1)
END
go
