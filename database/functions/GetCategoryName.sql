-- GetCategoryName (@ID)
--
-- The name of a category; null when there is no such category.

IF OBJECT_ID(N'dbo.GetCategoryName', N'FN') IS NOT NULL
    DROP FUNCTION dbo.GetCategoryName
go

CREATE FUNCTION dbo.GetCategoryName (@ID int)
RETURNS nvarchar(50)
AS
BEGIN
    DECLARE @Name nvarchar(50)
    SELECT @Name = name FROM dbo.category WHERE id = @ID
    RETURN @Name
END
go
