#include <gtest/gtest.h>

#include "ado/row_writer.h"
#include "tests/ado/named_case.h"

namespace basalt {
namespace {

struct StatementCase {
    const char* name;
    const char* statement;
    const char* table;  // empty: refused
};

class SingleTable : public ::testing::TestWithParam<StatementCase> {};

TEST_P(SingleTable, isFoundOrRefused) {
    EXPECT_EQ(singleTableOf(GetParam().statement), GetParam().table);
}

INSTANTIATE_TEST_SUITE_P(
    Statements, SingleTable,
    ::testing::Values(
        StatementCase{"all", "select * from CostLevel", "CostLevel"},
        StatementCase{"columns", "SELECT Code, [Name], c.Comment FROM [Cost Level] AS c WHERE Code = 7", "Cost Level"},
        StatementCase{"alias", "select c.* from CostLevel c order by c.Code", "CostLevel"},
        StatementCase{"schema", "select * from dbo.CostLevel where Code in (select Code from Other)", "CostLevel"},
        StatementCase{"top", "select top 5 Code from CostLevel;", "CostLevel"},
        StatementCase{"comments", "/* a /* b */ */ select * -- from Other\n from CostLevel", "CostLevel"},
        StatementCase{"textWithFrom", "select * from CostLevel where Name = ' from Other; union '", "CostLevel"},
        StatementCase{"empty", "", ""}, StatementCase{"noSelect", "delete from CostLevel", ""},
        StatementCase{"noFrom", "select 1", ""}, StatementCase{"distinct", "select distinct Code from CostLevel", ""},
        StatementCase{"twoTables", "select * from A, B", ""},
        StatementCase{"join", "select * from A join B on A.x = B.x", ""},
        StatementCase{"leftJoin", "select * from A left join B on A.x = B.x", ""},
        StatementCase{"subSelect", "select * from (select * from A) T", ""},
        StatementCase{"sum", "select sum(Code) as Code from CostLevel", ""},
        StatementCase{"renamed", "select Name as Code from CostLevel", ""},
        StatementCase{"renamedWithoutAs", "select Name Code from CostLevel", ""},
        StatementCase{"expression", "select Code + 1 from CostLevel", ""},
        StatementCase{"literal", "select 'x' from CostLevel", ""},
        StatementCase{"group", "select Code from CostLevel group by Code", ""},
        StatementCase{"groupBehindWhere", "select Code from CostLevel where Code > 1 group by Code", ""},
        StatementCase{"unionBehindWhere", "select Code from A where Code > 1 union select Code from B", ""},
        StatementCase{"secondStatement", "select * from CostLevel where Code = 1; delete from CostLevel", ""},
        StatementCase{"otherSchema", "select * from audit.CostLevel", ""},
        StatementCase{"otherDatabase", "select * from db.dbo.CostLevel", ""},
        StatementCase{"openText", "select * from CostLevel where Name = 'x", ""},
        StatementCase{"openComment", "select * from CostLevel /* x", "CostLevel"},
        StatementCase{"commaMissing", "select Code, from CostLevel", ""}),
    NameOfCase());

}  // namespace
}  // namespace basalt
