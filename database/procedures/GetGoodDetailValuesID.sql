-- GetGoodDetailValuesID @GoodCode,
--     and for each slot N from 1 to 5 @DetailIDN, @DetailNValue1, @DetailNValue2, @ConditionOperatorN
--
-- The combinations of a good that have the details asked for: DetailValueID and the columns of
-- GoodDetail_Select_GetGoodDetailTitle, the first made first.
--
-- Rule: a slot with a detail id asks for a value of that detail, in whatever slot the combination has it; empty and = compare
-- with @DetailNValue1, and so do <>, >, >=, < and <=; BETWEEN takes both values. Values compare as texts, which dates written
-- year first and numbers of one length stand. A slot of id 0 is to be empty: when any slot says so, the combination must have
-- the details that are asked for and no others. A slot that is left out (null) asks for nothing.

IF OBJECT_ID(N'dbo.GetGoodDetailValuesID', N'P') IS NOT NULL
    DROP PROCEDURE dbo.GetGoodDetailValuesID
go

CREATE PROCEDURE dbo.GetGoodDetailValuesID
    @GoodCode int,
    @DetailID1 int = NULL,
    @Detail1Value1 nvarchar(100) = N'',
    @Detail1Value2 nvarchar(100) = N'',
    @ConditionOperator1 nvarchar(10) = N'',
    @DetailID2 int = NULL,
    @Detail2Value1 nvarchar(100) = N'',
    @Detail2Value2 nvarchar(100) = N'',
    @ConditionOperator2 nvarchar(10) = N'',
    @DetailID3 int = NULL,
    @Detail3Value1 nvarchar(100) = N'',
    @Detail3Value2 nvarchar(100) = N'',
    @ConditionOperator3 nvarchar(10) = N'',
    @DetailID4 int = NULL,
    @Detail4Value1 nvarchar(100) = N'',
    @Detail4Value2 nvarchar(100) = N'',
    @ConditionOperator4 nvarchar(10) = N'',
    @DetailID5 int = NULL,
    @Detail5Value1 nvarchar(100) = N'',
    @Detail5Value2 nvarchar(100) = N'',
    @ConditionOperator5 nvarchar(10) = N''
AS
BEGIN
    SET NOCOUNT ON

    DECLARE @Whole bit
    CREATE TABLE #AskedDetails (
        DetailID int NOT NULL,
        Value1 nvarchar(100) COLLATE DATABASE_DEFAULT NOT NULL,
        Value2 nvarchar(100) COLLATE DATABASE_DEFAULT NOT NULL,
        Operator nvarchar(10) COLLATE DATABASE_DEFAULT NOT NULL)

    IF @DetailID1 > 0
        INSERT INTO #AskedDetails (DetailID, Value1, Value2, Operator)
        VALUES (@DetailID1, @Detail1Value1, @Detail1Value2, UPPER(LTRIM(RTRIM(@ConditionOperator1))))
    IF @DetailID2 > 0
        INSERT INTO #AskedDetails (DetailID, Value1, Value2, Operator)
        VALUES (@DetailID2, @Detail2Value1, @Detail2Value2, UPPER(LTRIM(RTRIM(@ConditionOperator2))))
    IF @DetailID3 > 0
        INSERT INTO #AskedDetails (DetailID, Value1, Value2, Operator)
        VALUES (@DetailID3, @Detail3Value1, @Detail3Value2, UPPER(LTRIM(RTRIM(@ConditionOperator3))))
    IF @DetailID4 > 0
        INSERT INTO #AskedDetails (DetailID, Value1, Value2, Operator)
        VALUES (@DetailID4, @Detail4Value1, @Detail4Value2, UPPER(LTRIM(RTRIM(@ConditionOperator4))))
    IF @DetailID5 > 0
        INSERT INTO #AskedDetails (DetailID, Value1, Value2, Operator)
        VALUES (@DetailID5, @Detail5Value1, @Detail5Value2, UPPER(LTRIM(RTRIM(@ConditionOperator5))))

    SET @Whole = CASE WHEN @DetailID1 = 0 OR @DetailID2 = 0 OR @DetailID3 = 0 OR @DetailID4 = 0 OR @DetailID5 = 0 THEN 1 ELSE 0 END

    SELECT T.DetailValueID, T.DetailValues, T.D1DetailID, T.D1Value, T.D2DetailID, T.D2Value, T.D3DetailID, T.D3Value,
        T.D4DetailID, T.D4Value, T.D5DetailID, T.D5Value
    FROM dbo.GoodDetailValues AS V
    INNER JOIN dbo.GoodDetailTitles AS T ON T.DetailValueID = V.ID
    WHERE V.GoodCode = @GoodCode
        AND NOT EXISTS (
            SELECT 1
            FROM #AskedDetails AS A
            WHERE NOT EXISTS (
                SELECT 1
                FROM dbo.GoodDetailValueDetails AS D
                WHERE D.DetailValueID = V.ID AND D.DetailID = A.DetailID
                    AND (
                        (A.Operator IN (N'', N'=') AND D.Value = A.Value1)
                        OR (A.Operator = N'<>' AND D.Value <> A.Value1)
                        OR (A.Operator = N'>' AND D.Value > A.Value1)
                        OR (A.Operator = N'>=' AND D.Value >= A.Value1)
                        OR (A.Operator = N'<' AND D.Value < A.Value1)
                        OR (A.Operator = N'<=' AND D.Value <= A.Value1)
                        OR (A.Operator = N'BETWEEN' AND D.Value BETWEEN A.Value1 AND A.Value2)
                    )
            )
        )
        AND (
            @Whole = 0
            OR (SELECT COUNT(*) FROM dbo.GoodDetailValueDetails AS D WHERE D.DetailValueID = V.ID)
                = (SELECT COUNT(*) FROM #AskedDetails)
        )
    ORDER BY V.ID
END
go
