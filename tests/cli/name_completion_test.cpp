#include "cli/name_completion.h"

#include <gmock/gmock.h>

namespace basalt::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

DatabaseSchema sample() {
    DatabaseSchema schema;
    schema.tables.resize(2);
    schema.tables[0].name = "CostLevel";
    schema.tables[0].columns = {{.name = "Code", .type = "int"}, {.name = "Name", .type = "nvarchar(50)"}};
    schema.tables[1].name = "Order Lines";
    schema.tables[1].columns = {{.name = "نام", .type = "nvarchar(50)"}, {.name = "Net Price", .type = "int"}};
    schema.modules.push_back({"CostOf", ModuleSchema::Kind::Function, ""});
    return schema;
}

TEST(Completions, areObjectsColumnsAndWords) {
    EXPECT_THAT(completions("co", sample()), ElementsAre("Code", "Commit", "CostLevel", "CostOf", "Count"));
    EXPECT_THAT(completions("COSTL", sample()), ElementsAre("CostLevel"));
    EXPECT_THAT(completions("SEL", sample()), ElementsAre("SELECT"));
    EXPECT_THAT(completions("نا", sample()), ElementsAre("نام"));
}

TEST(Completions, knowWhoseColumnsAreMeant) {
    EXPECT_THAT(completions("costlevel.", sample()), ElementsAre("costlevel.Code", "costlevel.Name"));
    EXPECT_THAT(completions("dbo.CostLevel.n", sample()), ElementsAre("dbo.CostLevel.Name"));
    EXPECT_THAT(completions("dbo.cost", sample()), ElementsAre("dbo.CostLevel", "dbo.CostOf"));
    EXPECT_THAT(completions("L.n", sample()), ElementsAre("L.Name", "L.[Net Price]"));
}

TEST(Completions, bracketNamesThatNeedIt) {
    EXPECT_THAT(completions("order", sample()), ElementsAre("[Order Lines]", "order"));
    DatabaseSchema schema = sample();
    schema.tables[1].columns.push_back({.name = "odd]name", .type = "int"});
    EXPECT_THAT(completions("odd", schema), ElementsAre("[odd]]name]"));
}

TEST(Completions, agreeInSpellingAsFarAsTheyAgree) {
    DatabaseSchema schema = sample();
    schema.tables[1].columns.push_back({.name = "costlevel_Type", .type = "int"});
    EXPECT_THAT(completions("costle", schema), ElementsAre("CostLevel", "CostLevel_Type"));
}

TEST(Completions, ofNothingAreNone) {
    EXPECT_THAT(completions("", sample()), IsEmpty());
    EXPECT_THAT(completions("xyz", sample()), IsEmpty());
    EXPECT_THAT(completions("costlevel.x", sample()), IsEmpty());
}

}  // namespace
}  // namespace basalt::cli
