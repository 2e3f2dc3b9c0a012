-- The price levels and discount levels of a shop that has none yet. There are as many as the price matrix has columns, and
-- the screens only rename them.

IF NOT EXISTS (SELECT 1 FROM dbo.CostLevel)
BEGIN
    INSERT INTO dbo.CostLevel (Code, Name, Comment, CostType)
    VALUES
        (0, N'کلیه گروه ها', N'', 1),
        (1, N'سطح قیمت ۱', N'', 1),
        (2, N'سطح قیمت ۲', N'', 1),
        (3, N'سطح قیمت ۳', N'', 1),
        (4, N'سطح قیمت ۴', N'', 1),
        (5, N'سطح قیمت ۵', N'', 1),
        (6, N'سطح قیمت ۶', N'', 1),
        (7, N'سطح قیمت ۷', N'', 1),
        (8, N'سطح قیمت ۸', N'', 1),
        (9, N'سطح قیمت ۹', N'', 1),
        (10, N'سطح قیمت ۱۰', N'', 1),
        (1, N'سطح تخفیف ۱', N'', 3),
        (2, N'سطح تخفیف ۲', N'', 3),
        (3, N'سطح تخفیف ۳', N'', 3),
        (4, N'سطح تخفیف ۴', N'', 3)
END
go
