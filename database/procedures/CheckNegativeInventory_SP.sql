-- CheckNegativeInventory_SP @NegativeType, @SelectQuery, @Date, @globalID, @StoreTransition,
--     @NegProductNames OUTPUT, @NegProductCodes OUTPUT
--
-- Whether saving a document would drive the stock of a good in a store below zero, at its own moment or at any later one.
--   @NegativeType     0 forbid, 1 warn, 2 allow: with 2 nothing is looked at
--   @SelectQuery      a query of the document's lines: Code (good), Anbar (store), Mogodi (signed quantity). Of a good that is
--                     not in GoodInf, and where a line names no good or no store, there is nothing. It may read temporary
--                     tables of the caller, by any name but those that begin with #CheckNegativeInventory_, which are the
--                     procedure's own
--   @Date, @globalID  the document's place in the ledger. 0 or null for a new document, which comes last on its day
--   @StoreTransition  1 for a document that moves goods between stores; its lines name both stores, and each is looked at for
--                     itself, as with any other document
-- Returns 1 when some stock would go below zero, else 0. Then @NegProductCodes holds the codes of these goods, by code, with
-- commas between, and @NegProductNames their names, for a good that is not in GoodInf its code; a line without a good has
-- neither. Otherwise both are empty. No rows.
--
-- Rule: the rows that the document has in the ledger already are taken as gone and its lines as entered. Which rows these are
-- the ledger's rows cannot tell; the row LedgerNumbering of dbo.HostSettings says it for the whole ledger:
--   'date', or no such row: numbers begin again with each date. The rows with its @globalID on its @Date are the document's;
--                           those on other dates are other documents'. One that moves to another date has to be taken out of
--                           the ledger on its old date first, else its old rows go on counting there.
--   'all'                   numbers run over all dates. All rows with its @globalID are the document's, also those on other
--                           dates: it moves to @Date now.
-- A good is negative when then, after some document of its ledger, its balance in a store is below zero and lower than it is
-- now. So a good that was below zero before does not hold up a document that leaves it there or improves it, and one that
-- was taken out of the document is looked at too.

IF OBJECT_ID(N'dbo.CheckNegativeInventory_SP', N'P') IS NOT NULL
    DROP PROCEDURE dbo.CheckNegativeInventory_SP
go

CREATE PROCEDURE dbo.CheckNegativeInventory_SP
    @NegativeType tinyint,
    @SelectQuery nvarchar(max),
    @Date nvarchar(10),
    @globalID int,
    @StoreTransition bit,
    @NegProductNames nvarchar(max) OUTPUT,
    @NegProductCodes nvarchar(max) OUTPUT
AS
BEGIN
    SET NOCOUNT ON

    DECLARE @Insert nvarchar(max), @Place int, @First nvarchar(10), @Last nvarchar(10), @From nvarchar(10), @Code int

    SET @NegProductNames = N''
    SET @NegProductCodes = N''
    IF @NegativeType = 2
        RETURN 0

    -- Each good in each store once.
    CREATE TABLE #CheckNegativeInventory_Lines (ID int IDENTITY(1, 1) NOT NULL PRIMARY KEY, Code int NULL, Anbar int NULL,
        Mogodi decimal(23, 9) NOT NULL)
    -- By how much the document changes the ledger, and where: its old rows go, its lines come.
    CREATE TABLE #CheckNegativeInventory_Changes (ID int NOT NULL, [Date] nvarchar(10) COLLATE DATABASE_DEFAULT NOT NULL,
        Global_ID int NOT NULL, Tedad decimal(38, 9) NOT NULL, PRIMARY KEY (ID, [Date], Global_ID))
    CREATE TABLE #CheckNegativeInventory_Lowered (ID int NOT NULL PRIMARY KEY, Code int NULL, Anbar int NULL,
        Opening decimal(38, 9) NOT NULL, Issues decimal(38, 9) NOT NULL, Lowering decimal(38, 9) NOT NULL,
        Least decimal(38, 9) NOT NULL)
    CREATE TABLE #CheckNegativeInventory_Suspects (ID int NOT NULL PRIMARY KEY)
    CREATE TABLE #CheckNegativeInventory_Goods (Code int NULL)

    -- On a line of its own, for a query that ends in a comment.
    SET @Insert = N'INSERT INTO #CheckNegativeInventory_Lines (Code, Anbar, Mogodi) '
        + N'SELECT L.Code, L.Anbar, ISNULL(SUM(L.Mogodi), 0) FROM (SELECT CAST(S.Code AS int) AS Code, '
        + N'CAST(S.Anbar AS int) AS Anbar, S.Mogodi FROM (' + @SelectQuery + NCHAR(10)
        + N') AS S) AS L GROUP BY L.Code, L.Anbar'
    EXEC (@Insert)
    CREATE INDEX IX_Lines ON #CheckNegativeInventory_Lines (Code, Anbar)

    SET @Place = CASE WHEN @globalID > 0 THEN @globalID ELSE 2147483647 END

    -- From which date to which the document has rows of its own; a new one has none.
    IF @globalID > 0
    BEGIN
        SET @First = @Date
        SET @Last = @Date
        -- A host that keeps its settings elsewhere has no such table, and numbers within a date.
        IF OBJECT_ID(N'dbo.HostSettings') IS NOT NULL
            IF EXISTS (SELECT 1 FROM dbo.HostSettings WHERE Name = N'LedgerNumbering' AND Value = N'all')
                SELECT @First = MIN([Date]), @Last = MAX([Date]) FROM dbo.Kardex WHERE Global_ID = @globalID
    END

    -- What the document moved before and does not name any more.
    INSERT INTO #CheckNegativeInventory_Lines (Code, Anbar, Mogodi)
    SELECT DISTINCT K.kala, K.Anbar, 0
    FROM dbo.Kardex AS K
    WHERE K.Global_ID = @Place AND K.[Date] >= @First AND K.[Date] <= @Last
        AND NOT EXISTS (SELECT 1 FROM #CheckNegativeInventory_Lines AS L WHERE L.Code = K.kala AND L.Anbar = K.Anbar)

    -- Before the document's date, and before those that it was on, nothing changes.
    SET @From = ISNULL(@Date, N'')
    IF @First < @From
        SET @From = @First

    INSERT INTO #CheckNegativeInventory_Changes (ID, [Date], Global_ID, Tedad)
    SELECT C.ID, C.[Date], C.Global_ID, SUM(C.Tedad)
    FROM (
        SELECT L.ID, K.[Date], K.Global_ID, -K.Tedad AS Tedad
        FROM #CheckNegativeInventory_Lines AS L
        INNER JOIN dbo.Kardex AS K ON K.kala = L.Code AND K.Anbar = L.Anbar
        WHERE K.Global_ID = @Place AND K.[Date] >= @First AND K.[Date] <= @Last
        UNION ALL
        SELECT L.ID, ISNULL(@Date, N''), @Place, L.Mogodi
        FROM #CheckNegativeInventory_Lines AS L
    ) AS C
    GROUP BY C.ID, C.[Date], C.Global_ID

    -- Only what the document lowers can go below zero by it. The balance until then, and all that goes out from then on.
    INSERT INTO #CheckNegativeInventory_Lowered (ID, Code, Anbar, Opening, Issues, Lowering, Least)
    SELECT L.ID, L.Code, L.Anbar,
        ISNULL((
            SELECT SUM(K.Tedad)
            FROM dbo.Kardex AS K
            WHERE K.kala = L.Code AND K.Anbar = L.Anbar AND K.[Date] < @From
        ), 0),
        ISNULL((
            SELECT SUM(K.Tedad)
            FROM dbo.Kardex AS K
            WHERE K.kala = L.Code AND K.Anbar = L.Anbar AND K.[Date] >= @From AND K.Tedad < 0
        ), 0),
        C.Tedad, 0
    FROM (
        SELECT ID, SUM(Tedad) AS Tedad FROM #CheckNegativeInventory_Changes WHERE Tedad < 0 GROUP BY ID
    ) AS C
    INNER JOIN #CheckNegativeInventory_Lines AS L ON L.ID = C.ID

    -- What does not go below zero even if nothing more comes in need not be followed. Of the others the movements must not sum
    -- up to less than this.
    DELETE FROM #CheckNegativeInventory_Lowered WHERE Opening + Issues + Lowering >= 0
    UPDATE #CheckNegativeInventory_Lowered SET Least = -(Opening + Lowering)

    -- Row by row the balance goes as low as document by document or lower, and is found sooner. It is looked at after each
    -- row of the ledger and where the document is.
    INSERT INTO #CheckNegativeInventory_Suspects (ID)
    SELECT B.ID
    FROM (
        SELECT L.ID, L.Least,
            SUM(K.Tedad) OVER (PARTITION BY L.ID ORDER BY K.[Date], K.Global_ID ROWS UNBOUNDED PRECEDING) AS Moved
        FROM #CheckNegativeInventory_Lowered AS L
        INNER JOIN dbo.Kardex AS K ON K.kala = L.Code AND K.Anbar = L.Anbar AND K.[Date] >= @From
    ) AS B
    WHERE B.Moved < B.Least
    UNION
    SELECT L.ID
    FROM #CheckNegativeInventory_Lowered AS L
    INNER JOIN #CheckNegativeInventory_Changes AS C ON C.ID = L.ID
    WHERE ISNULL((
            SELECT SUM(K.Tedad)
            FROM dbo.Kardex AS K
            WHERE K.kala = L.Code AND K.Anbar = L.Anbar AND K.[Date] >= @From
                AND (K.[Date] < C.[Date] OR (K.[Date] = C.[Date] AND K.Global_ID <= C.Global_ID))
        ), 0) < L.Least

    -- What the ledger would have of these: the balance until then, and from then on document by document.
    INSERT INTO #CheckNegativeInventory_Goods (Code)
    SELECT DISTINCT (SELECT L.Code FROM #CheckNegativeInventory_Lowered AS L WHERE L.ID = B.ID)
    FROM (
        -- Without a frame of rows, so that the rows of one document count together.
        SELECT M.ID, M.[Date], M.Global_ID,
            SUM(M.Tedad) OVER (PARTITION BY M.ID ORDER BY M.[Date], M.Global_ID) AS Later
        FROM (
            SELECT L.ID, N'' AS [Date], 0 AS Global_ID, L.Opening AS Tedad
            FROM #CheckNegativeInventory_Suspects AS S
            INNER JOIN #CheckNegativeInventory_Lowered AS L ON L.ID = S.ID
            UNION ALL
            SELECT L.ID, K.[Date], K.Global_ID, K.Tedad
            FROM #CheckNegativeInventory_Suspects AS S
            INNER JOIN #CheckNegativeInventory_Lowered AS L ON L.ID = S.ID
            INNER JOIN dbo.Kardex AS K ON K.kala = L.Code AND K.Anbar = L.Anbar AND K.[Date] >= @From
            UNION ALL
            SELECT C.ID, C.[Date], C.Global_ID, C.Tedad
            FROM #CheckNegativeInventory_Suspects AS S
            INNER JOIN #CheckNegativeInventory_Changes AS C ON C.ID = S.ID
        ) AS M
    ) AS B
    -- Below zero, and lower than it is now.
    WHERE B.Later < 0
        AND (
            SELECT SUM(C.Tedad)
            FROM #CheckNegativeInventory_Changes AS C
            WHERE C.ID = B.ID AND (C.[Date] < B.[Date] OR (C.[Date] = B.[Date] AND C.Global_ID <= B.Global_ID))
        ) < 0

    IF NOT EXISTS (SELECT 1 FROM #CheckNegativeInventory_Goods)
        RETURN 0

    SELECT @Code = MIN(Code) FROM #CheckNegativeInventory_Goods WHERE Code IS NOT NULL
    WHILE @Code IS NOT NULL
    BEGIN
        SELECT @NegProductCodes = @NegProductCodes + CASE WHEN @NegProductCodes = N'' THEN N'' ELSE N',' END
                + CAST(N.Code AS nvarchar(12)),
            @NegProductNames = @NegProductNames + CASE WHEN @NegProductNames = N'' THEN N'' ELSE N'، ' END
                + ISNULL(G.Name, CAST(N.Code AS nvarchar(12)))
        FROM #CheckNegativeInventory_Goods AS N
        LEFT JOIN dbo.GoodInf AS G ON G.Code = N.Code
        WHERE N.Code = @Code

        SELECT @Code = MIN(Code) FROM #CheckNegativeInventory_Goods WHERE Code > @Code
    END
    RETURN 1
END
go
