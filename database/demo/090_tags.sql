-- Tags in the colours of the palette. Goods carry the first three, persons the other two.

INSERT INTO dbo.Tags (Code, Name, color_code, ISDeleted, Create_Date, Modify_Date, Create_User, Modify_User, [Enable], comment)
SELECT N.Code, N.Name, CAST(C.code AS varchar(10)), NULL, '1405/01/01', '1405/01/01', 1, 1, NULL, N.comment
FROM (
    SELECT 1 AS Code, N'فروش ویژه' AS Name, '$0047A043' AS cl_code, N'در قفسه جلوی فروشگاه' AS comment
    UNION ALL SELECT 2, N'پرفروش', '$003539E5', N'سفارش پیش از تمام شدن'
    UNION ALL SELECT 3, N'رو به انقضا', '$00008CFB', N''
    UNION ALL SELECT 4, N'خوش‌حساب', '$00E5881E', N'سقف اعتبار بالاتر'
    UNION ALL SELECT 5, N'نیازمند پیگیری', '$00AA248E', N'تماس ماهانه'
) AS N
INNER JOIN dbo.colors AS C ON C.cl_code = N.cl_code
WHERE NOT EXISTS (SELECT 1 FROM dbo.Tags)
ORDER BY N.Code
go
