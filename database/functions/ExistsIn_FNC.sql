-- ExistsIn_FNC (@Value, @List)
--
-- Where @Value stands in a list of values with commas between or behind them: its place in the text, counting from 1.
-- -1 when the list has other values only, or is empty or null. 0 when the list has commas but no value at all, which is how
-- Category_SubNodes answers for a category that is not there. Blanks do not count.

IF OBJECT_ID(N'dbo.ExistsIn_FNC', N'FN') IS NOT NULL
    DROP FUNCTION dbo.ExistsIn_FNC
go

CREATE FUNCTION dbo.ExistsIn_FNC (@Value nvarchar(100), @List nvarchar(max))
RETURNS int
AS
BEGIN
    DECLARE @Text nvarchar(max), @At int

    SET @Text = REPLACE(@List, N' ', N'')
    IF @Text IS NULL OR @Text = N''
        RETURN -1
    IF REPLACE(@Text, N',', N'') = N''
        RETURN 0

    SET @At = CHARINDEX(N',' + REPLACE(@Value, N' ', N'') + N',', N',' + @Text + N',')
    IF @At > 0
        RETURN @At
    RETURN -1
END
go
