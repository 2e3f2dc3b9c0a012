// What the picker of goods sends while the user types, as full texts.
#include "host/price_editor/good_search.h"

#include <gtest/gtest.h>

#include "tests/ado/named_case.h"

namespace basalt::host {
namespace {

struct SearchCase {
    const char* name;
    const char* typed;
    const char* statement;
};

class GoodSearch : public ::testing::TestWithParam<SearchCase> {};
TEST_P(GoodSearch, putsFirstWhatWasMeant) {
    EXPECT_EQ(goodSearch(QString::fromUtf8(GetParam().typed), 200), GetParam().statement);
}
constexpr const char* kAll = "SELECT TOP 200 Code, Name FROM dbo.GoodInf ORDER BY Code";
constexpr const char* kCode57 =
    "SELECT TOP 200 Code, Name FROM dbo.GoodInf WHERE [Name] LIKE N'%[5۵٥][7۷٧]%' OR [AbbName] LIKE N'%[5۵٥][7۷٧]%' "
    "OR CAST([Code] AS NVARCHAR(40)) LIKE N'57%' ORDER BY CASE WHEN Code = 57 THEN 0 "
    "WHEN N'!' + [AbbName] + N'!' LIKE N'%![5۵٥][7۷٧]!%' OR [Name] LIKE N'[5۵٥][7۷٧]' THEN 1 "
    "WHEN [Name] LIKE N'[5۵٥][7۷٧]%' OR [AbbName] LIKE N'%![5۵٥][7۷٧]%' OR CAST([Code] AS NVARCHAR(40)) LIKE N'57%' "
    "THEN 2 ELSE 3 END, Code";
INSTANTIATE_TEST_SUITE_P(
    All, GoodSearch,
    ::testing::Values(
        SearchCase{"empty", "", kAll}, SearchCase{"blanks", "  ", kAll}, SearchCase{"code", "57", kCode57},
        SearchCase{"persianCodeAmongBlanks", " ۵۷ ", kCode57}, SearchCase{"arabicCode", "٥٧", kCode57},
        SearchCase{"name", "شیر",
                   "SELECT TOP 200 Code, Name FROM dbo.GoodInf WHERE [Name] LIKE N'%ش[یيى]ر%' OR [AbbName] LIKE "
                   "N'%ش[یيى]ر%' ORDER BY CASE WHEN N'!' + [AbbName] + N'!' LIKE N'%!ش[یيى]ر!%' OR [Name] LIKE "
                   "N'ش[یيى]ر' THEN 1 WHEN [Name] LIKE N'ش[یيى]ر%' OR [AbbName] LIKE N'%!ش[یيى]ر%' THEN 2 ELSE 3 END, "
                   "Code"},
        SearchCase{
            "zeros", "00",
            "SELECT TOP 200 Code, Name FROM dbo.GoodInf WHERE [Name] LIKE N'%[0۰٠][0۰٠]%' OR [AbbName] LIKE "
            "N'%[0۰٠][0۰٠]%' OR CAST([Code] AS NVARCHAR(40)) LIKE N'0%' ORDER BY CASE WHEN Code = 0 THEN 0 WHEN "
            "N'!' + [AbbName] + N'!' LIKE N'%![0۰٠][0۰٠]!%' OR [Name] LIKE N'[0۰٠][0۰٠]' THEN 1 WHEN [Name] LIKE "
            "N'[0۰٠][0۰٠]%' OR [AbbName] LIKE N'%![0۰٠][0۰٠]%' OR CAST([Code] AS NVARCHAR(40)) LIKE N'0%' THEN 2 "
            "ELSE 3 END, Code"},
        // A number that no code can be is compared with none.
        SearchCase{"longNumber", "11111111111",
                   "SELECT TOP 200 Code, Name FROM dbo.GoodInf WHERE [Name] LIKE "
                   "N'%[1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١]%' OR [AbbName] LIKE "
                   "N'%[1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١]%' OR CAST([Code] AS NVARCHAR(40)) LIKE "
                   "N'11111111111%' ORDER BY CASE WHEN N'!' + [AbbName] + N'!' LIKE "
                   "N'%![1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١]!%' OR [Name] LIKE "
                   "N'[1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١]' THEN 1 WHEN [Name] LIKE "
                   "N'[1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١]%' OR [AbbName] LIKE "
                   "N'%![1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١][1۱١]%' OR CAST([Code] AS NVARCHAR(40)) LIKE "
                   "N'11111111111%' THEN 2 ELSE 3 END, Code"}),
    NameOfCase());

}  // namespace
}  // namespace basalt::host
