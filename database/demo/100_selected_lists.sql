-- Lists of goods and of persons; one of each kind is in use.

IF NOT EXISTS (SELECT 1 FROM dbo.SelectedLists)
BEGIN
    INSERT INTO dbo.SelectedLists (Code, [Type], Title, Comment, [Enable], DisplayType)
    VALUES
        (1, 0, N'کالاهای پرفروش', N'برای سفارش هفتگی', 1, 0),
        (2, 0, N'حراج پایان ماه', N'', 0, 0),
        (3, 1, N'مشتریان ویژه', N'دارندگان کارت باشگاه', 1, 0),
        (4, 1, N'پیگیری مطالبات', N'تماس در روزهای یکشنبه', 0, 1)
END
go

INSERT INTO dbo.SelectedList_Detail (SL_Code, Code, Radif)
SELECT M.SL_Code, M.Code, M.Radif
FROM (
    VALUES
        (1, 1, 1), (1, 7, 2), (1, 13, 3), (1, 40, 4), (1, 69, 5), (1, 113, 6), (1, 116, 7),
        (2, 44, 1), (2, 49, 2), (2, 93, 3),
        (3, 9, 1), (3, 18, 2), (3, 27, 3), (3, 36, 4), (3, 12, 5),
        (4, 24, 1), (4, 48, 2)
) AS M(SL_Code, Code, Radif)
WHERE NOT EXISTS (SELECT 1 FROM dbo.SelectedList_Detail)
    AND EXISTS (SELECT 1 FROM dbo.SelectedLists AS L WHERE L.Code = M.SL_Code AND L.[Type] = CASE WHEN M.SL_Code < 3 THEN 0 ELSE 1 END)
    AND (M.SL_Code > 2 OR EXISTS (SELECT 1 FROM dbo.GoodInf AS G WHERE G.Code = M.Code))
    AND (M.SL_Code < 3 OR EXISTS (SELECT 1 FROM dbo.PerInf AS P WHERE P.Code = M.Code))
go
