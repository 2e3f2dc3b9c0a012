-- GoodDetail_Select_GetGoodDetailTitle @GoodDetailValueID
--
-- The titles of a combination: DetailValues, all in one text, and for each slot D1DetailID, D1Value to D5DetailID, D5Value; a
-- slot without a detail has 0 and an empty text. No row when there is no such combination.

IF OBJECT_ID(N'dbo.GoodDetail_Select_GetGoodDetailTitle', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GoodDetail_Select_GetGoodDetailTitle
go

CREATE PROCEDURE dbo.GoodDetail_Select_GetGoodDetailTitle
    @GoodDetailValueID int
AS
BEGIN
    SET NOCOUNT ON

    SELECT DetailValues, D1DetailID, D1Value, D2DetailID, D2Value, D3DetailID, D3Value, D4DetailID, D4Value, D5DetailID, D5Value
    FROM dbo.GoodDetailTitles
    WHERE DetailValueID = @GoodDetailValueID
END
go
