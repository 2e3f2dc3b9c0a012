#include "host/transfer/definition_text.h"

#include <gtest/gtest.h>

namespace basalt::host {
namespace {

TEST(TableText, hasEverythingThatTheTableHas) {
    TableSchema table;
    table.name = "Line]s";
    table.columns = {
        {.name = "ID", .type = "int", .nullable = false, .identity = ColumnSchema::Identity{10, 5}},
        {.name = "Name", .type = "nvarchar(50)", .defaultName = "DF_Name", .defaultText = "N'x'"},
        {.name = "Twice", .type = "int", .computedText = "ID * 2"},
    };
    table.keys = {{"PK_Lines", true, {{"Name", true}, {"ID", false}}}, {"UQ_Lines", false, {{"Name", false}}}};
    table.checks = {{"CK_Lines", "ID > 0"}};
    table.foreignKeys = {{"FK_Lines", {"ID"}, "Order", {"Code"}, "CASCADE", "NO ACTION"}};
    EXPECT_EQ(tableText(table),
              "CREATE TABLE dbo.[Line]]s] (\n"
              "    [ID] int IDENTITY(10,5) NOT NULL,\n"
              "    [Name] nvarchar(50) NULL CONSTRAINT [DF_Name] DEFAULT N'x',\n"
              "    [Twice] AS (ID * 2) PERSISTED,\n"
              "    CONSTRAINT [PK_Lines] PRIMARY KEY ([Name] DESC, [ID]),\n"
              "    CONSTRAINT [UQ_Lines] UNIQUE ([Name]),\n"
              "    CONSTRAINT [CK_Lines] CHECK (ID > 0),\n"
              "    CONSTRAINT [FK_Lines] FOREIGN KEY ([ID]) REFERENCES dbo.[Order] ([Code]) ON DELETE CASCADE\n"
              ")");
    EXPECT_EQ(indexText(table, {"IX", true, {{"Name", false}, {"ID", true}}, "ID > 1"}),
              "CREATE UNIQUE INDEX [IX] ON dbo.[Line]]s] ([Name], [ID] DESC) WHERE ID > 1");
    EXPECT_EQ(referenceText(table, {"FK_2", {"ID", "Name"}, "T", {"A", "B"}, "NO ACTION", "SET NULL"}),
              "ALTER TABLE dbo.[Line]]s] ADD CONSTRAINT [FK_2] FOREIGN KEY ([ID], [Name]) REFERENCES dbo.[T] ([A], "
              "[B]) ON UPDATE SET NULL");
}

TEST(ModuleText, alwaysCreates) {
    const auto text = [](const char* stored) { return moduleText({"P", ModuleSchema::Kind::Procedure, stored}); };
    EXPECT_EQ(text("CREATE PROCEDURE P AS SELECT 1"), "CREATE PROCEDURE P AS SELECT 1");
    EXPECT_EQ(text("alter procedure P as select 1"), "CREATE procedure P as select 1");
    EXPECT_EQ(text("CREATE  OR\nALTER PROCEDURE P AS SELECT 1"), "CREATE PROCEDURE P AS SELECT 1");
}

}  // namespace
}  // namespace basalt::host
