// What the catalog views of SQL Server say, and what becomes of it.
#include "host/transfer/server_schema.h"

#include <gmock/gmock.h>

#include "engines/embedded/parser/parser.h"
#include "host/transfer/definition_text.h"
#include "tests/support/scripted_session.h"

namespace basalt::host {
namespace {

constexpr const char* columnsStatement =
    "SELECT T.name, C.name, TYPE_NAME(C.system_type_id), C.max_length, C.[precision], C.scale, C.is_nullable, "
    "CAST(I.seed_value AS bigint), CAST(I.increment_value AS bigint), D.name, D.definition, P.definition "
    "FROM sys.tables AS T JOIN sys.columns AS C ON C.object_id = T.object_id "
    "LEFT JOIN sys.identity_columns AS I ON I.object_id = C.object_id AND I.column_id = C.column_id "
    "LEFT JOIN sys.default_constraints AS D ON D.object_id = C.default_object_id "
    "LEFT JOIN sys.computed_columns AS P ON P.object_id = C.object_id AND P.column_id = C.column_id "
    "WHERE T.is_ms_shipped = 0 AND SCHEMA_NAME(T.schema_id) = N'dbo' ORDER BY T.name, C.column_id";

constexpr const char* indexesStatement =
    "SELECT T.name, I.name, I.is_primary_key, I.is_unique_constraint, I.is_unique, I.filter_definition, C.name, "
    "K.is_descending_key, K.is_included_column FROM sys.tables AS T JOIN sys.indexes AS I ON I.object_id = T.object_id "
    "JOIN sys.index_columns AS K ON K.object_id = I.object_id AND K.index_id = I.index_id "
    "JOIN sys.columns AS C ON C.object_id = K.object_id AND C.column_id = K.column_id "
    "WHERE T.is_ms_shipped = 0 AND SCHEMA_NAME(T.schema_id) = N'dbo' AND I.type IN (1, 2) "
    "AND (K.key_ordinal > 0 OR K.is_included_column = 1) "
    "ORDER BY T.name, I.is_primary_key DESC, I.name, K.is_included_column, K.key_ordinal, K.index_column_id";

constexpr const char* referencesStatement =
    "SELECT T.name, F.name, R.name, C.name, O.name, F.delete_referential_action_desc, "
    "F.update_referential_action_desc FROM sys.foreign_keys AS F JOIN sys.tables AS T ON T.object_id = "
    "F.parent_object_id JOIN sys.tables AS R ON R.object_id = F.referenced_object_id "
    "JOIN sys.foreign_key_columns AS K ON K.constraint_object_id = F.object_id "
    "JOIN sys.columns AS C ON C.object_id = K.parent_object_id AND C.column_id = K.parent_column_id "
    "JOIN sys.columns AS O ON O.object_id = K.referenced_object_id AND O.column_id = K.referenced_column_id "
    "WHERE SCHEMA_NAME(T.schema_id) = N'dbo' ORDER BY T.name, F.name, K.constraint_column_id";

constexpr const char* checksStatement =
    "SELECT T.name, C.name, C.definition FROM sys.check_constraints AS C JOIN sys.tables AS T ON T.object_id = "
    "C.parent_object_id WHERE SCHEMA_NAME(T.schema_id) = N'dbo' ORDER BY T.name, C.name";

constexpr const char* modulesStatement =
    "SELECT O.name, O.type, M.definition FROM sys.objects AS O JOIN sys.sql_modules AS M ON M.object_id = O.object_id "
    "WHERE O.is_ms_shipped = 0 AND SCHEMA_NAME(O.schema_id) = N'dbo' AND O.type IN ('V', 'P', 'FN', 'IF', 'TF') "
    "ORDER BY O.name";

// Rows of texts, which read as numbers too; an empty text stands for NULL.
RowSet rows(std::size_t columns, const std::vector<std::vector<std::string>>& lines) {
    std::vector<ColumnInfo> infos(columns);
    RowSet set(infos);
    for (const std::vector<std::string>& line : lines) {
        for (std::size_t c = 0; c < columns; ++c) {
            if (line.at(c).empty()) {
                set.column(c).appendNull();
            } else {
                set.column(c).appendText(line[c]);
            }
        }
        set.finishRow();
    }
    return set;
}

TEST(ServerSchema, statementsAreWellFormed) {
    for (const char* statement :
         {columnsStatement, indexesStatement, referencesStatement, checksStatement, modulesStatement}) {
        EXPECT_NO_THROW((void)embedded::parse(statement)) << statement;
    }
}

TEST(ServerSchema, isReadFromTheCatalogViews) {
    ScriptedSession session;
    session.expect(columnsStatement,
                   rows(12, {{"Line", "ID", "int", "4", "10", "0", "0", "1", "1", "", "", ""},
                             {"Line", "OrderCode", "bigint", "8", "19", "0", "0", "", "", "", "", ""},
                             {"Line", "Name", "nvarchar", "100", "0", "0", "1", "", "", "DF_Line_Name", "(N'(x)')", ""},
                             {"Line", "Note", "varchar", "-1", "0", "0", "1", "", "", "", "", ""},
                             {"Line", "Cost", "decimal", "13", "23", "9", "1", "", "", "DF_Line_Cost", "((0))", ""},
                             {"Line", "Moment", "datetime2", "8", "27", "7", "1", "", "", "", "", ""},
                             {"Line", "Twice", "decimal", "13", "24", "9", "1", "", "", "", "", "([Cost]*(2))"},
                             {"Order", "Code", "bigint", "8", "19", "0", "0", "", "", "", "", ""}}));
    session.expect(indexesStatement,
                   rows(9, {{"Line", "PK_Line", "1", "0", "1", "", "OrderCode", "0", "0"},
                            {"Line", "PK_Line", "1", "0", "1", "", "ID", "1", "0"},
                            {"Line", "IX_Line", "0", "0", "1", "([Name] IS NOT NULL)", "Name", "0", "0"},
                            {"Line", "IX_Line_Cost", "0", "0", "0", "", "Cost", "1", "0"},
                            {"Line", "IX_Line_Cost", "0", "0", "0", "", "OrderCode", "0", "0"},
                            {"Line", "IX_Line_Cost", "0", "0", "0", "", "Note", "0", "1"},
                            {"Line", "IX_Line_Cost", "0", "0", "0", "", "Moment", "0", "1"},
                            {"Line", "UQ_Line", "0", "1", "1", "", "ID", "0", "0"},
                            {"Order", "PK_Order", "1", "0", "1", "", "Code", "0", "0"}}));
    session.expect(referencesStatement,
                   rows(7, {{"Line", "FK_Line_Order", "Order", "OrderCode", "Code", "CASCADE", "NO_ACTION"}}));
    session.expect(checksStatement, rows(3, {{"Line", "CK_Line", "([Cost]>=(0) AND [Cost]<(100))"}}));
    session.expect(modulesStatement, rows(3, {{"F", "FN", "CREATE FUNCTION F() RETURNS int AS BEGIN RETURN 1 END"},
                                              {"P", "P ", "CREATE PROCEDURE P AS SELECT 1"},
                                              {"V", "V ", "CREATE VIEW V AS SELECT 1 AS A"}}));
    const DatabaseSchema schema = readServerSchema(session);
    ASSERT_EQ(schema.tables.size(), 2U);
    EXPECT_EQ(tableText(schema.tables[0]),
              "CREATE TABLE dbo.[Line] (\n"
              "    [ID] int IDENTITY(1,1) NOT NULL,\n"
              "    [OrderCode] bigint NOT NULL,\n"
              "    [Name] nvarchar(50) NULL CONSTRAINT [DF_Line_Name] DEFAULT N'(x)',\n"
              "    [Note] varchar(max) NULL,\n"
              "    [Cost] decimal(23,9) NULL CONSTRAINT [DF_Line_Cost] DEFAULT 0,\n"
              "    [Moment] datetime2(7) NULL,\n"
              "    [Twice] AS ([Cost]*(2)) PERSISTED,\n"
              "    CONSTRAINT [PK_Line] PRIMARY KEY ([OrderCode], [ID] DESC),\n"
              "    CONSTRAINT [UQ_Line] UNIQUE ([ID]),\n"
              "    CONSTRAINT [CK_Line] CHECK ([Cost]>=(0) AND [Cost]<(100)),\n"
              "    CONSTRAINT [FK_Line_Order] FOREIGN KEY ([OrderCode]) REFERENCES dbo.[Order] ([Code]) ON DELETE "
              "CASCADE\n"
              ")");
    ASSERT_EQ(schema.tables[0].indexes.size(), 2U);
    EXPECT_EQ(indexText(schema.tables[0], schema.tables[0].indexes[0]),
              "CREATE UNIQUE INDEX [IX_Line] ON dbo.[Line] ([Name]) WHERE [Name] IS NOT NULL");
    EXPECT_EQ(indexText(schema.tables[0], schema.tables[0].indexes[1]),
              "CREATE INDEX [IX_Line_Cost] ON dbo.[Line] ([Cost] DESC, [OrderCode]) INCLUDE ([Note], [Moment])");
    EXPECT_EQ(tableText(schema.tables[1]),
              "CREATE TABLE dbo.[Order] (\n"
              "    [Code] bigint NOT NULL,\n"
              "    CONSTRAINT [PK_Order] PRIMARY KEY ([Code])\n"
              ")");
    ASSERT_EQ(schema.modules.size(), 3U);
    EXPECT_EQ(schema.modules[0].kind, ModuleSchema::Kind::Function);
    EXPECT_EQ(schema.modules[1].kind, ModuleSchema::Kind::Procedure);
    EXPECT_EQ(schema.modules[2].kind, ModuleSchema::Kind::View);
}

}  // namespace
}  // namespace basalt::host
