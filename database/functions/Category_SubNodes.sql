-- Category_SubNodes (@ID, @WithSelf, @Flag)
--
-- The ids of the categories below @ID as one text, level by level and by id within a parent; with @WithSelf 1 @ID comes first.
-- @Flag 0: each id is followed by a comma (3,7,8,); nothing gives a single comma.
-- @Flag 1: in parentheses, ready for IN (3,7,8); nothing gives ().
-- An @ID that is no category has nothing below it, and is not listed itself.

IF OBJECT_ID(N'dbo.Category_SubNodes', N'FN') IS NOT NULL
    DROP FUNCTION dbo.Category_SubNodes
go

CREATE FUNCTION dbo.Category_SubNodes (@ID int, @WithSelf bit, @Flag bit)
RETURNS nvarchar(max)
AS
BEGIN
    DECLARE @Nodes TABLE (Seq int IDENTITY(1, 1) NOT NULL PRIMARY KEY, id int NOT NULL)
    DECLARE @Seq int, @Node int, @List nvarchar(max)

    INSERT INTO @Nodes (id)
    SELECT id FROM dbo.category WHERE id = @ID

    SET @List = N''
    SET @Seq = 1
    WHILE EXISTS (SELECT 1 FROM @Nodes WHERE Seq = @Seq)
    BEGIN
        SELECT @Node = id FROM @Nodes WHERE Seq = @Seq
        IF @WithSelf = 1 OR @Seq > 1
            SET @List = @List + CAST(@Node AS nvarchar(12)) + N','

        -- A tree that was bent into a ring must not keep us here.
        INSERT INTO @Nodes (id)
        SELECT C.id
        FROM dbo.category AS C
        WHERE C.parent_code = @Node AND NOT EXISTS (SELECT 1 FROM @Nodes AS N WHERE N.id = C.id)
        ORDER BY C.id

        SET @Seq = @Seq + 1
    END

    IF @Flag = 1
        RETURN N'(' + CASE WHEN @List = N'' THEN N'' ELSE LEFT(@List, LEN(@List) - 1) END + N')'
    IF @List = N''
        RETURN N','
    RETURN @List
END
go
