-- Ten price levels with the row that stands for all of them, four discount levels and one of the other kind.

-- A shop that has begun with no more than every shop has takes the demo's names.
IF NOT EXISTS (SELECT 1 FROM dbo.GoodInf)
    AND NOT EXISTS (SELECT 1 FROM dbo.costlist)
    AND NOT EXISTS (
        SELECT 1 FROM dbo.CostLevel
        WHERE Code > 0 AND (Comment <> N'' OR NOT (Name LIKE N'سطح قیمت %' OR Name LIKE N'سطح تخفیف %')))
    DELETE FROM dbo.CostLevel
go

IF NOT EXISTS (SELECT 1 FROM dbo.CostLevel)
BEGIN
    INSERT INTO dbo.CostLevel (Code, Name, Comment, CostType)
    VALUES
        (0, N'کلیه گروه ها', N'همه سطوح با هم', 1),
        (1, N'تک‌فروشی', N'قیمت مصرف‌کننده در فروشگاه', 1),
        (2, N'عمده‌فروشی', N'خرید بیش از یک کارتن', 1),
        (3, N'همکار', N'مغازه‌داران و همکاران صنف', 1),
        (4, N'نمایندگی', N'نمایندگان فروش شهرستان‌ها', 1),
        (5, N'فروشگاه‌های زنجیره‌ای', N'طبق قرارداد سالانه', 1),
        (6, N'سازمانی', N'ادارات و شرکت‌ها، تسویه سی‌روزه', 1),
        (7, N'فروش اینترنتی', N'سفارش از سایت و برنامه همراه', 1),
        (8, N'صادراتی', N'بدون مالیات بر ارزش افزوده', 1),
        (9, N'پرسنلی', N'کارکنان شرکت، سقف ماهانه دارد', 1),
        (10, N'جشنواره', N'فقط در روزهای حراج', 1),
        (1, N'تخفیف نقدی', N'پرداخت هنگام خرید', 3),
        (2, N'تخفیف حجمی', N'بیش از ده کارتن', 3),
        (3, N'تخفیف مشتری ویژه', N'دارندگان کارت باشگاه مشتریان', 3),
        (4, N'تخفیف مناسبتی', N'نوروز، یلدا و اعیاد', 3),
        (5, N'تخفیف پلکانی', N'از سیستم قبلی، فقط برای مشاهده', 4)
END
go

-- The printable columns of the price report.
IF NOT EXISTS (SELECT 1 FROM dbo.PrintsSettings WHERE PartName = N'CostReport')
BEGIN
    INSERT INTO dbo.PrintsSettings (PartName, Comment, Title, Visible)
    VALUES
        (N'CostReport', N'F1', N'تک‌فروشی', 1),
        (N'CostReport', N'F2', N'عمده‌فروشی', 1),
        (N'CostReport', N'F3', N'همکار', 1),
        (N'CostReport', N'F4', N'نمایندگی', 1),
        (N'CostReport', N'F5', N'فروشگاه‌های زنجیره‌ای', 1),
        (N'CostReport', N'F6', N'سازمانی', 0),
        (N'CostReport', N'F7', N'فروش اینترنتی', 0),
        (N'CostReport', N'F8', N'صادراتی', 0),
        (N'CostReport', N'F9', N'پرسنلی', 0),
        (N'CostReport', N'F10', N'جشنواره', 0),
        (N'CostReport', N'F11', N'قیمت مصرف کننده', 1)
END
go
