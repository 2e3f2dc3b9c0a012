#include "host/transfer/definition_order.h"

#include <gmock/gmock.h>

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TableSchema table(const std::string& name, const std::vector<std::string>& references = {}) {
    TableSchema result;
    result.name = name;
    result.columns.push_back({.name = "ID", .type = "int", .nullable = false});
    for (const std::string& other : references)
        result.foreignKeys.push_back({"FK_" + name + "_" + other, {"ID"}, other, {"ID"}});
    return result;
}

std::vector<std::string> names(const DefinitionOrder& order) {
    std::vector<std::string> result;
    for (const DefinitionOrder::Item& item : order.items)
        result.push_back(item.table ? item.table->name : item.module->name);
    return result;
}

TEST(DefinitionOrder, tablesStandBehindThoseTheyReferTo) {
    const DatabaseSchema schema{{table("A", {"C", "B"}), table("B"), table("C", {"D", "c"}), table("D")}, {}};
    const DefinitionOrder order = definitionOrder(schema);
    EXPECT_THAT(names(order), ElementsAre("D", "C", "B", "A"));
    EXPECT_THAT(order.late, IsEmpty());
}

TEST(DefinitionOrder, aCircleIsClosedLate) {
    const DatabaseSchema schema{{table("A", {"B"}), table("B", {"C"}), table("C", {"A"})}, {}};
    const DefinitionOrder order = definitionOrder(schema);
    EXPECT_THAT(names(order), ElementsAre("C", "B", "A"));
    EXPECT_THAT(order.late, ElementsAre(&schema.tables[2].foreignKeys[0]));
}

TEST(DefinitionOrder, viewsStandBehindWhatTheyReadAndProceduresLast) {
    using Kind = ModuleSchema::Kind;
    const DatabaseSchema schema{{table("T")},
                                {{"A_View", Kind::View, "CREATE VIEW A_View AS SELECT ID FROM dbo.[Z View]"},
                                 {"Fn", Kind::Function, "CREATE FUNCTION Fn() RETURNS int AS BEGIN RETURN 1 END"},
                                 {"P", Kind::Procedure, "CREATE PROCEDURE P AS SELECT 1"},
                                 {"Z View", Kind::View, "CREATE VIEW [Z View] AS SELECT dbo.fn() AS ID FROM t"}}};
    EXPECT_THAT(names(definitionOrder(schema)), ElementsAre("Fn", "T", "Z View", "A_View", "P"));
}

TEST(DefinitionOrder, aTableStandsBehindTheFunctionsOfItsDefaults) {
    DatabaseSchema schema{{table("A")},
                          {{"Today", ModuleSchema::Kind::Function,
                            "CREATE FUNCTION Today() RETURNS date AS BEGIN "
                            "RETURN GETDATE() END"}}};
    schema.tables[0].columns[0].defaultText = "dbo.Today()";
    EXPECT_THAT(names(definitionOrder(schema)), ElementsAre("Today", "A"));
}

}  // namespace
}  // namespace basalt::host
