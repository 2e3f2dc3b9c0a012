// How each construct is understood, shown as the tree's text with all parentheses.
#include "engines/embedded/parser/parser.h"

#include <gtest/gtest.h>

#include "engines/embedded/ast/control_statement.h"
#include "engines/embedded/ast/data_statement.h"
#include "engines/embedded/ast/definition_statement.h"
#include "engines/embedded/printer/printer.h"

namespace basalt::embedded {
namespace {

struct TreeCase {
    const char* name;
    const char* sql;
    const char* tree;
};

void PrintTo(const TreeCase& c, std::ostream* os) {
    *os << c.name;
}

class Tree : public testing::TestWithParam<TreeCase> {};

TEST_P(Tree, IsUnderstood) {
    std::string text = print(parse(GetParam().sql), Parentheses::All);
    EXPECT_EQ(text.substr(0, text.size() - 1), GetParam().tree);
}

std::string nameOf(const testing::TestParamInfo<TreeCase>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Expressions, Tree,
    testing::Values(
        TreeCase{"Precedence", "select 1+2*3-4", "SELECT ((1 + (2 * 3)) - 4);"},
        TreeCase{"SignLooserThanTimes", "select -100/-100*10", "SELECT (-(100 / (-(100 * 10))));"},
        TreeCase{"SignTighterThanPlus", "select -1+2", "SELECT ((-1) + 2);"},
        TreeCase{"Complement", "select ~1*2", "SELECT ((~1) * 2);"},
        TreeCase{"BitwiseLikePlus", "select 1|2&3+4", "SELECT (((1 | 2) & 3) + 4);"},
        TreeCase{"MinusMinus", "select 1 - -1", "SELECT (1 - (-1));"},
        TreeCase{"AndBeforeOr", "select 1 where a=1 or b=2 and not c=3",
                 "SELECT 1 WHERE ((a = 1) OR ((b = 2) AND (NOT (c = 3))));"},
        TreeCase{"ParenthesizedOr", "select 1 where (a=1 or b=2) and c=3",
                 "SELECT 1 WHERE (((a = 1) OR (b = 2)) AND (c = 3));"},
        TreeCase{"BetweenTakesItsAnd", "select 1 where a between 1 and 2 and b=3",
                 "SELECT 1 WHERE ((a BETWEEN 1 AND 2) AND (b = 3));"},
        TreeCase{
            "NotForms",
            "select 1 where a not in (1,2) and b not like 'x' escape '!' and c is not null and d not between 1 and 2",
            "SELECT 1 WHERE ((((a NOT IN (1, 2)) AND (b NOT LIKE 'x' ESCAPE '!')) AND (c IS NOT NULL)) AND "
            "(d NOT BETWEEN 1 AND 2));"},
        TreeCase{"OddComparisons", "select 1 where a!=1 and b!<2 and c!>3 and d > = 4 and e < > 5",
                 "SELECT 1 WHERE (((((a <> 1) AND (b >= 2)) AND (c <= 3)) AND (d >= 4)) AND (e <> 5));"},
        TreeCase{"Quantified", "select 1 where a >= all(select 1) or a = some (select 2)",
                 "SELECT 1 WHERE ((a >= ALL (SELECT 1)) OR (a = ANY (SELECT 2)));"},
        TreeCase{"CaseForms", "select case a when 1 then 'x' else 'y' end, case when a=1 then 2 end",
                 "SELECT CASE a WHEN 1 THEN 'x' ELSE 'y' END, CASE WHEN (a = 1) THEN 2 END;"},
        TreeCase{"Functions",
                 "select left(a,2), coalesce(a,b), convert(varchar(10),a,111), cast(a as decimal(23,9)), iif(a=1,2,3)",
                 "SELECT left(a, 2), coalesce(a, b), CONVERT(varchar(10), a, 111), CAST(a AS decimal(23, 9)), "
                 "IIF((a = 1), 2, 3);"},
        TreeCase{"DateParts", "select dateadd(DAY,-1,getdate()), datediff(mi,a,b)",
                 "SELECT dateadd(day, (-1), getdate()), datediff(mi, a, b);"},
        TreeCase{"Aggregates", "select count(*), count(distinct a), sum(all b)",
                 "SELECT count(*), count(DISTINCT a), sum(b);"},
        TreeCase{"Window",
                 "select row_number() over(partition by a order by b desc), sum(c) over(order by a rows between 1 "
                 "preceding and current row)",
                 "SELECT row_number() OVER (PARTITION BY a ORDER BY b DESC), sum(c) OVER (ORDER BY a ROWS BETWEEN 1 "
                 "PRECEDING "
                 "AND CURRENT ROW);"},
        TreeCase{"Niladic", "select current_timestamp, user", "SELECT current_timestamp, user;"},
        TreeCase{"SystemVariable", "select @@rowcount, @x", "SELECT @@ROWCOUNT, @x;"},
        TreeCase{"Collate", "select a collate x + b", "SELECT ((a COLLATE x) + b);"},
        TreeCase{"ScalarSubqueryUnion", "select ((select 1) union (select 2))", "SELECT (SELECT 1 UNION SELECT 2);"},
        TreeCase{"DoubleParenthesesArithmetic", "select ((select 1) + 2)", "SELECT ((SELECT 1) + 2);"},
        TreeCase{"NonReservedNames", "select Type,Status,Level,Date,Value,Row,Comment,Name,Code,Path,Max from Output",
                 "SELECT Type, Status, Level, Date, Value, Row, Comment, Name, Code, Path, Max FROM Output;"},
        TreeCase{"BracketedNames", "select [desc], t.[Default], \"Key\", [a]]b] from [My Table] t",
                 "SELECT [desc], t.[Default], [Key], [a]]b] FROM [My Table] AS t;"},
        TreeCase{"Literals", "select 1, 1.50, .5, 5., 2147483648, 1e3, 'a''b', N'کالا', 0xAb, null",
                 "SELECT 1, 1.50, 0.5, 5., 2147483648., 1e+03, 'a''b', N'کالا', 0xAB, NULL;"},
        TreeCase{"UserFunction", "select dbo.f(default, 1)", "SELECT dbo.f(DEFAULT, 1);"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Queries, Tree,
    testing::Values(
        TreeCase{"Aliases", "select a b, a as c, d = a, a 'e', a as [f g], e=a+1 from t x",
                 "SELECT a AS b, a AS c, a AS d, a AS [e], a AS [f g], (a + 1) AS e FROM t AS x;"},
        TreeCase{"NoBlankBeforeAlias", "select max(level)as value from category",
                 "SELECT max(level) AS value FROM category;"},
        TreeCase{"Stars", "select *, t.*, dbo.t.*, colors.cl_code as c from t",
                 "SELECT *, t.*, dbo.t.*, colors.cl_code AS c FROM t;"},
        TreeCase{"NumberThenUnion", "select a from t where x = 1UNION ALL select 2",
                 "SELECT a FROM t WHERE (x = 1) UNION ALL SELECT 2;"},
        TreeCase{"SetPrecedence", "select 1 union select 2 intersect select 3 except select 4",
                 "(SELECT 1 UNION (SELECT 2 INTERSECT SELECT 3)) EXCEPT SELECT 4;"},
        TreeCase{"SetParentheses", "select 1 union (select 2 union all select 3)",
                 "SELECT 1 UNION (SELECT 2 UNION ALL SELECT 3);"},
        TreeCase{"Top", "select top 5 percent with ties a from t order by a",
                 "SELECT TOP (5) PERCENT WITH TIES a FROM t ORDER BY a;"},
        TreeCase{"TopThenSign", "select top 5 -1", "SELECT TOP (5) (-1);"},
        TreeCase{"OffsetFetch", "select a from t order by 1 desc, b offset 5 rows fetch next 10 rows only",
                 "SELECT a FROM t ORDER BY 1 DESC, b OFFSET 5 ROWS FETCH NEXT 10 ROWS ONLY;"},
        TreeCase{"Joins",
                 "select 1 from a left outer join b on a.x=b.x inner join c on 1=1 cross join d full join e on 1=1 "
                 "right join f on 1=1",
                 "SELECT 1 FROM a LEFT JOIN b ON (a.x = b.x) INNER JOIN c ON (1 = 1) CROSS JOIN d FULL JOIN e ON (1 = "
                 "1) RIGHT "
                 "JOIN f ON (1 = 1);"},
        TreeCase{"NestedJoin", "select 1 from a join b join c on b.x=c.x on a.x=b.x",
                 "SELECT 1 FROM a INNER JOIN (b INNER JOIN c ON (b.x = c.x)) ON (a.x = b.x);"},
        TreeCase{"ParenthesizedJoin", "select 1 from (a join b on 1=1) left join ((select 1 x) d join e on 2=2) on 3=3",
                 "SELECT 1 FROM a INNER JOIN b ON (1 = 1) LEFT JOIN ((SELECT 1 AS x) AS d INNER JOIN e ON (2 = 2)) ON "
                 "(3 = 3);"},
        TreeCase{"DerivedUnion", "select * from ((select 1 a) union (select 2)) t(x)",
                 "SELECT * FROM (SELECT 1 AS a UNION SELECT 2) AS t(x);"},
        TreeCase{"Apply", "select 1 from a cross apply (select top 1 b from c) x outer apply dbo.f(a.y) z",
                 "SELECT 1 FROM a CROSS APPLY (SELECT TOP (1) b FROM c) AS x OUTER APPLY dbo.f(a.y) AS z;"},
        TreeCase{"CommaJoin", "select 1 from a, b as c", "SELECT 1 FROM a, b AS c;"},
        TreeCase{"Hints", "select 1 from a with (nolock), b (nolock), c x with(updlock,rowlock) option (maxdop 1)",
                 "SELECT 1 FROM a WITH (NOLOCK), b WITH (NOLOCK), c AS x WITH (UPDLOCK, ROWLOCK);"},
        TreeCase{"ValuesTable", "select * from (values (1,'a'),(2,null)) v(x,y)",
                 "SELECT * FROM (VALUES (1, 'a'), (2, NULL)) AS v(x, y);"},
        TreeCase{"TableVariable", "select * from @t x", "SELECT * FROM @t AS x;"},
        TreeCase{"TemporaryTable", "select * from #t, tempdb..#u", "SELECT * FROM #t, tempdb..#u;"},
        TreeCase{"Grouping", "select a, count(*) from t group by a, b+1 having count(*) > 1",
                 "SELECT a, count(*) FROM t GROUP BY a, (b + 1) HAVING (count(*) > 1);"},
        TreeCase{"CommonTable", ";with x(a) as (select 1), y as (select 2 b) select * from x, y",
                 "WITH x (a) AS (SELECT 1), y AS (SELECT 2 AS b) SELECT * FROM x, y;"},
        TreeCase{"Into", "select a into #x from t", "SELECT a INTO #x FROM t;"},
        TreeCase{"Assignment", "select @a = x, @b += 1 from t", "SELECT @a = x, @b += 1 FROM t;"},
        TreeCase{"ForXml", "select a from t for xml path(''), type", "SELECT a FROM t FOR XML PATH(''), TYPE;"},
        TreeCase{"QuotedNewLines", "select 'a\nb'", "SELECT 'a\nb';"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    DataStatements, Tree,
    testing::Values(
        TreeCase{"InsertRows", "insert into t(a,[b]) values(1,default),(2,N'x')",
                 "INSERT INTO t (a, [b]) VALUES (1, DEFAULT), (2, N'x');"},
        TreeCase{"InsertQuery", "insert t select * from u", "INSERT INTO t SELECT * FROM u;"},
        TreeCase{"InsertParenthesizedQuery", "insert into t (select a from u)", "INSERT INTO t SELECT a FROM u;"},
        TreeCase{"InsertColumnsAndQuery", "insert into t (a) (select a from u)", "INSERT INTO t (a) SELECT a FROM u;"},
        TreeCase{"InsertExec", "insert #t exec p 1, @x out", "INSERT INTO #t EXEC p 1, @x OUTPUT;"},
        TreeCase{"InsertDefaults", "insert t default values", "INSERT INTO t DEFAULT VALUES;"},
        TreeCase{"InsertOutput", "insert t(a) output inserted.id into @ids(id) values(1)",
                 "INSERT INTO t (a) OUTPUT inserted.id INTO @ids (id) VALUES (1);"},
        TreeCase{"InsertMarkers", "insert t values (?, ?)", "INSERT INTO t VALUES (?, ?);"},
        TreeCase{"UpdateSimple", "update GoodCostDiscount Set CostLevel_Sell_3 = 12500 where GoodCode=57",
                 "UPDATE GoodCostDiscount SET CostLevel_Sell_3 = 12500 WHERE (GoodCode = 57);"},
        TreeCase{"UpdateFrom", "update x set a=y.b, x.c+=1, @v=d=d+1, @w=5 from t x join y on x.i=y.i where 1=1",
                 "UPDATE x SET a = y.b, x.c += 1, @v = d = (d + 1), @w = 5 FROM t AS x INNER JOIN y ON (x.i = y.i) "
                 "WHERE (1 = 1);"},
        TreeCase{"UpdateVariableFromColumn", "update t set @v = a where b = 1", "UPDATE t SET @v = a WHERE (b = 1);"},
        TreeCase{"UpdateTopOutput", "update top (5) t with (rowlock) set a = 1 output deleted.a, inserted.*",
                 "UPDATE TOP (5) t SET a = 1 OUTPUT deleted.a, inserted.*;"},
        TreeCase{"DeleteWithoutFrom", "Delete CostLevel where Code= 3 AND CostType = 1",
                 "DELETE FROM CostLevel WHERE ((Code = 3) AND (CostType = 1));"},
        TreeCase{"DeleteFromFrom", "delete from x from t x join u on 1=1 where u.a=1",
                 "DELETE FROM x FROM t AS x INNER JOIN u ON (1 = 1) WHERE (u.a = 1);"},
        TreeCase{"DeleteOutput", "delete t output deleted.* where a=1",
                 "DELETE FROM t OUTPUT deleted.* WHERE (a = 1);"},
        TreeCase{"DeleteTop", "delete top (3) from @t", "DELETE TOP (3) FROM @t;"},
        TreeCase{"WithDelete", "with x as (select 1 a) delete from x", "WITH x AS (SELECT 1 AS a) DELETE FROM x;"},
        TreeCase{"Truncate", "truncate table dbo.t", "TRUNCATE TABLE dbo.t;"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Definitions, Tree,
    testing::Values(
        TreeCase{"CreateTable",
                 "create table dbo.T (ID int identity(5,2) not null primary key clustered, Name nvarchar(50) collate X "
                 "null, "
                 "Price decimal(23, 9) not null constraint DF_P default (0) check (Price >= 0), G int references "
                 "dbo.G(Code) on "
                 "delete cascade, Total as Price * 2 persisted, constraint UQ unique nonclustered (Name asc, G desc), "
                 "foreign key "
                 "(G, Name) references H (A, B) on update set null, check (G > 0 or G is null)) on [PRIMARY]",
                 "CREATE TABLE dbo.T (ID int IDENTITY(5, 2) NOT NULL PRIMARY KEY CLUSTERED, Name nvarchar(50) COLLATE "
                 "X NULL, Price "
                 "decimal(23, 9) NOT NULL CONSTRAINT DF_P DEFAULT 0 CHECK ((Price >= 0)), G int REFERENCES dbo.G "
                 "(Code) ON DELETE "
                 "CASCADE, Total AS (Price * 2) PERSISTED, CONSTRAINT UQ UNIQUE NONCLUSTERED (Name, G DESC), FOREIGN "
                 "KEY (G, Name) "
                 "REFERENCES H (A, B) ON UPDATE SET NULL, CHECK (((G > 0) OR (G IS NULL))));"},
        TreeCase{"CreateTableNoComma", "create table t (a int constraint pk primary key (a))",
                 "CREATE TABLE t (a int, CONSTRAINT pk PRIMARY KEY (a));"},
        TreeCase{"IdentityNegative", "create table t (a bigint identity(-1,-1))",
                 "CREATE TABLE t (a bigint IDENTITY(-1, -1));"},
        TreeCase{"AlterAdd", "Alter Table CostReport Add F3 Decimal(23, 9) ",
                 "ALTER TABLE CostReport ADD F3 Decimal(23, 9);"},
        TreeCase{
            "AlterAddSeveral",
            "alter table t with nocheck add a int not null default 0 with values, constraint c check (a>0), "
            "default 5 for b",
            "ALTER TABLE t ADD a int NOT NULL DEFAULT 0 WITH VALUES, CONSTRAINT c CHECK ((a > 0)), DEFAULT 5 FOR b;"},
        TreeCase{"AlterColumn", "alter table t alter column a nvarchar(max) not null",
                 "ALTER TABLE t ALTER COLUMN a nvarchar(max) NOT NULL;"},
        TreeCase{"AlterDrop", "alter table t drop column a, b, constraint if exists c",
                 "ALTER TABLE t DROP COLUMN a, COLUMN b, CONSTRAINT IF EXISTS c;"},
        TreeCase{"AlterNocheck", "alter table t nocheck constraint all", "ALTER TABLE t NOCHECK CONSTRAINT ALL;"},
        TreeCase{"CreateIndex",
                 "create unique nonclustered index ix on dbo.t (a desc, b) include (c) where a is not null with "
                 "(fillfactor = 80)",
                 "CREATE UNIQUE NONCLUSTERED INDEX ix ON dbo.t (a DESC, b) INCLUDE (c) WHERE (a IS NOT NULL);"},
        TreeCase{"CreateView",
                 "create or alter view v (a) with schemabinding as with x as (select 1 b) select b from x",
                 "CREATE OR ALTER VIEW v (a) AS WITH x AS (SELECT 1 AS b) SELECT b FROM x;"},
        TreeCase{"CreateProcedure",
                 "create proc p @a int, @b as nvarchar(10) = N'x' output, @c decimal(5,2) = -1 as set nocount on "
                 "select @a return 5",
                 "CREATE PROCEDURE p @a int, @b nvarchar(10) = N'x' OUTPUT, @c decimal(5, 2) = (-1) AS\nSET NOCOUNT "
                 "ON;\nSELECT @a;\n"
                 "RETURN 5;;"},
        TreeCase{"CreateProcedureParentheses",
                 "alter procedure dbo.p (@a int = null) with recompile as begin print @a end",
                 "ALTER PROCEDURE dbo.p @a int = NULL AS\nBEGIN\n    PRINT @a;\nEND;;"},
        TreeCase{"ScalarFunction", "create function dbo.f(@a int) returns int as begin return @a + 1 end",
                 "CREATE FUNCTION dbo.f(@a int) RETURNS int AS BEGIN\n    RETURN (@a + 1);\nEND;"},
        TreeCase{"InlineFunction", "create function f() returns table as return (select 1 a)",
                 "CREATE FUNCTION f() RETURNS TABLE AS RETURN (SELECT 1 AS a);"},
        TreeCase{"TableFunction",
                 "create function f(@l varchar(max)) returns @t table (a int primary key) begin insert @t values(1) "
                 "return end",
                 "CREATE FUNCTION f(@l varchar(max)) RETURNS @t TABLE (a int PRIMARY KEY) AS BEGIN\n    INSERT INTO @t "
                 "VALUES (1);\n"
                 "    RETURN;\nEND;"},
        TreeCase{"Drops", "drop table if exists a, #b", "DROP TABLE IF EXISTS a, #b;"},
        TreeCase{"DropIndex", "drop index ix on t", "DROP INDEX ix ON t;"},
        TreeCase{"DropIndexOldForm", "drop index dbo.t.ix", "DROP INDEX ix ON dbo.t;"},
        TreeCase{"StandardTypes",
                 "declare @a double precision, @b national character varying(5), @c char varying(3), @d character(2)",
                 "DECLARE @a float, @b nvarchar(5), @c varchar(3), @d character(2);"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Control, Tree,
    testing::Values(
        TreeCase{"DeclareAndSelect", " declare @GoodCode int  select @GoodCode = 57 Select @GoodCode as g",
                 "DECLARE @GoodCode int;\nSELECT @GoodCode = 57;\nSELECT @GoodCode AS g;"},
        TreeCase{"DeclareTable", "declare @t table (a int, primary key (a)), @i as int = 5",
                 "DECLARE @t TABLE (a int, PRIMARY KEY (a)), @i int = 5;"},
        TreeCase{"CheckIdentity",
                 "dbcc checkident('t') dbcc checkident(t, noreseed) dbcc checkident(N'dbo.[t]', reseed, -5) with "
                 "no_infomsgs",
                 "DBCC CHECKIDENT('t');\nDBCC CHECKIDENT(t, NORESEED);\n"
                 "DBCC CHECKIDENT(N'dbo.[t]', RESEED, (-5)) WITH NO_INFOMSGS;"},
        TreeCase{
            "SetForms",
            "set @a = 1 set @a += 2; set nocount, xact_abort on set identity_insert t off set transaction "
            "isolation level read committed set dateformat dmy set rowcount 5 set lock_timeout -1",
            "SET @a = 1;\nSET @a = (@a + 2);\nSET NOCOUNT, XACT_ABORT ON;\nSET IDENTITY_INSERT t OFF;\nSET TRANSACTION "
            "ISOLATION LEVEL "
            "READ COMMITTED;\nSET DATEFORMAT DMY;\nSET ROWCOUNT 5;\nSET LOCK_TIMEOUT (-1);"},
        TreeCase{"DanglingElse", "if 1=1 if 2=2 print 1 else print 2",
                 "IF (1 = 1)\n    IF (2 = 2)\n        PRINT 1\n    ELSE\n        PRINT 2;"},
        TreeCase{"ElseBehindSemicolon", "if exists(select 1) print 1; else begin print 2 end",
                 "IF EXISTS (SELECT 1)\n    PRINT 1\nELSE\n    BEGIN\n        PRINT 2;\n    END;"},
        TreeCase{
            "While", "while @i < 5 begin set @i += 1 if @i = 3 break continue end",
            "WHILE (@i < 5)\n    BEGIN\n        SET @i = (@i + 1);\n        IF (@i = 3)\n            BREAK;\n        "
            "CONTINUE;\n    END;"},
        TreeCase{"TryCatch", "begin try print 1 end try begin catch throw end catch",
                 "BEGIN TRY\n    PRINT 1;\nEND TRY\nBEGIN CATCH\n    THROW;\nEND CATCH;"},
        TreeCase{"Raise", "raiserror('x %d',16,1,@a) with nowait; throw 50001, 'x', 1",
                 "RAISERROR('x %d', 16, 1, @a) WITH NOWAIT;\nTHROW 50001, 'x', 1;"},
        TreeCase{"GotoLabel", "again: goto again", "again:;\nGOTO again;"},
        TreeCase{"ReturnForms", "create procedure p as if 1=1 return return (select 1)",
                 "CREATE PROCEDURE p AS\nIF (1 = 1)\n    RETURN;\nRETURN (SELECT 1);;"},
        TreeCase{"Transactions", "begin tran x save transaction y rollback tran y commit work commit tran rollback",
                 "BEGIN TRANSACTION x;\nSAVE TRANSACTION y;\nROLLBACK TRANSACTION y;\nCOMMIT TRANSACTION;\nCOMMIT "
                 "TRANSACTION;\n"
                 "ROLLBACK TRANSACTION;"},
        TreeCase{"Exec",
                 "EXEC dbo.GetGoodDetailValuesID     @GoodCode      = 5  , @DetailID1     = 2  , @Detail1Value1 = 'x'",
                 "EXEC dbo.GetGoodDetailValuesID @GoodCode = 5, @DetailID1 = 2, @Detail1Value1 = 'x';"},
        TreeCase{
            "ExecForms",
            "exec @r = p -1, null, default, abc, [d e], @@rowcount, @o out execute @name exec('select '+@x)",
            "EXEC @r = p -1, NULL, DEFAULT, abc, [d e], @@ROWCOUNT, @o OUTPUT;\nEXEC @name;\nEXEC (('select ' + @x));"},
        TreeCase{"BareExec", "VoucherConflictAccountList_sp 1, 1", "EXEC VoucherConflictAccountList_sp 1, 1;"},
        TreeCase{"Call", "{call OfferSellCost(57,2)}", "{call OfferSellCost(57, 2)};"},
        TreeCase{"CallForms", "{ ? = call p (?, -1) } {CALL q}", "{? = call p(?, -1)};\n{call q()};"},
        TreeCase{"Guard", "IF OBJECT_ID('tempdb..#x') IS NULL CREATE TABLE #x (a int)",
                 "IF (OBJECT_ID('tempdb..#x') IS NULL)\n    CREATE TABLE #x (a int);"},
        TreeCase{"InsertThenScope", "INSERT t(a) VALUES (?); SELECT SCOPE_IDENTITY()",
                 "INSERT INTO t (a) VALUES (?);\nSELECT SCOPE_IDENTITY();"}),
    nameOf);

TEST(Parser, AnEmptyBatchHasNoStatements) {
    EXPECT_TRUE(parse("").statements.empty());
    EXPECT_TRUE(parse(" ; -- nothing\n;").statements.empty());
}

TEST(Parser, NodesKnowTheirPlace) {
    const ast::Batch batch = parse("print 1; select a, b + 2 from t where x in (1)  ");
    ASSERT_EQ(batch.statements.size(), 2U);
    EXPECT_EQ(batch.textOf(batch.statements[0]->range), "print 1");
    EXPECT_EQ(batch.textOf(batch.statements[1]->range), "select a, b + 2 from t where x in (1)");
    const auto& select = ast::as<ast::Select>(*ast::as<ast::SelectStatement>(*batch.statements[1]).query->body);
    EXPECT_EQ(batch.textOf(select.items[1].expression->range), "b + 2");
    EXPECT_EQ(batch.textOf(ast::as<ast::BinaryExpression>(*select.items[1].expression).operatorRange), "+");
    EXPECT_EQ(batch.textOf(select.where->range), "x in (1)");
    EXPECT_EQ(batch.textOf(select.from[0]->range), "t");
}

TEST(Parser, LiteralsThatShapeTheStatementAreFixed) {
    const ast::Batch batch =
        parse("select top 5 a 'alias', cast(b as varchar(10)), convert(int, '7') from t where c = 3 order by 1, 'x'");
    std::vector<std::string> fixed;
    for (LiteralIndex i = 0; i < batch.literals.size(); ++i) {
        if (batch.literals.use(i) == LiteralUse::Value) fixed.push_back(print(batch.literals[i]));
    }
    EXPECT_EQ(fixed, (std::vector<std::string>{"'alias'", "10", "1", "'x'"}));
}

TEST(Parser, MarkersCountThroughTheWholeBatch) {
    const ast::Batch batch = parse("insert t values (?, ?); select * from t where a = ?");
    EXPECT_EQ(batch.parameterMarkers, 3U);
    const auto& select = ast::as<ast::Select>(*ast::as<ast::SelectStatement>(*batch.statements[1]).query->body);
    const auto& comparison = ast::as<ast::ComparisonExpression>(*select.where);
    EXPECT_EQ(ast::as<ast::ParameterMarker>(*comparison.right).ordinal, 2U);
}

TEST(Parser, TheTreeOutlivesItsText) {
    ast::Batch batch;
    {
        const std::string sql = "select N'it''s', [a]]b] from t";
        batch = parse(sql);
    }
    EXPECT_EQ(print(batch), "SELECT N'it''s', [a]]b] FROM t;\n");
}

}  // namespace
}  // namespace basalt::embedded
