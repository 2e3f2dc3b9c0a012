-- What a price list must get right: twelve levels, one of them with the longest name; goods with barcodes of every
-- shape, with prices at the limits of their column, and without any.
DELETE FROM costlist
DELETE FROM CostLevel WHERE CostType = 1 AND Code > 2
INSERT INTO CostLevel (Code, Name, CostType) VALUES
    (3, N'سطح قیمت ویژه نمایندگان فروش استان‌های جنوبی کشورآ', 1), (4, N'سطح چهارم', 1), (5, N'سطح پنجم', 1), (6, N'سطح ششم', 1), (7, N'سطح هفتم', 1),
    (8, N'سطح هشتم', 1), (9, N'سطح نهم', 1), (10, N'سطح دهم', 1), (11, N'سطح یازدهم', 1), (12, N'سطح دوازدهم', 1)
INSERT INTO GoodInf (Code, Name, AbbName, ConsumerPrice) VALUES
    (9001, N'بدون بارکد', NULL, NULL),
    (9002, N'فقط نشانه', N'!', 0),
    (9003, N'ده بارکد', N'!1001!1002!1003!1004!1005!1006!1007!1008!1009!1010', 12500.5),
    (9004, N'بیشترین و کمترین', N'!9004!', 99999999999999.999999999),
    (9005, N'نام با "گیومه"، ویرگول, و <نشانه>', N'!12!34', -7.25)
INSERT INTO GoodCostDiscount (GoodCode, CostLevel_Sell_1, CostLevel_Sell_2, CostLevel_Sell_3, CostLevel_Sell_10, CostLevel_Buy_1)
VALUES
    (9004, 99999999999999.999999999, -99999999999999.999999999, 0.000000001, -1250.75, 42),
    (9005, -0.000000001, NULL, 1234567.891, 15, 0.5)
