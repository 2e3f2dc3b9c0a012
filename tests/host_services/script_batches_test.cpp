#include "host/services/script_batches.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "ado/error.h"
#include "database/scripts.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ScriptBatches, goesByLinesThatSayGo) {
    EXPECT_THAT(splitBatches("select 1\ngo\nselect 2\n  GO \nselect 3"),
                ElementsAre("select 1\n", "select 2\n", "select 3"));
    EXPECT_THAT(splitBatches("select 1\r\nGo\r\nselect 2\r\n"), ElementsAre("select 1\r\n", "select 2\r\n"));
}

TEST(ScriptBatches, emptyBatchesAreLeftOut) {
    EXPECT_THAT(splitBatches(""), IsEmpty());
    EXPECT_THAT(splitBatches("go\n\ngo\n  \n"), IsEmpty());
    EXPECT_THAT(splitBatches("go\nselect 1\ngo\ngo"), ElementsAre("select 1\n"));
}

TEST(ScriptBatches, goInsideTextsAndCommentsIsText) {
    for (const char* script : {"select 'a\ngo\nb'", "select 'it''s\ngo\n'", "select 1 as [a\ngo\n]",
                               "/* a\ngo\n*/ select 1", "/* /* */\ngo\n*/ select 1", "select \"a\ngo\n\""}) {
        EXPECT_THAT(splitBatches(script), ElementsAre(script));
    }
}

TEST(ScriptBatches, marksInsideOtherTextsMeanNothing) {
    EXPECT_THAT(splitBatches("select 1 -- it's\ngo\nselect 2"), ElementsAre("select 1 -- it's\n", "select 2"));
    EXPECT_THAT(splitBatches("select '/*'\ngo\nselect '*/'"), ElementsAre("select '/*'\n", "select '*/'"));
    EXPECT_THAT(splitBatches("select 1 as [a'b]\ngo\nselect 2"), ElementsAre("select 1 as [a'b]\n", "select 2"));
}

TEST(ScriptBatches, wordsThatBeginWithGoAreNoSeparators) {
    EXPECT_THAT(splitBatches("goods\ngoto x\nselect go\n"), ElementsAre("goods\ngoto x\nselect go\n"));
}

TEST(DatabaseScripts, tablesComeBeforeTheDemoData) {
    bool demo = false;
    std::set<std::string_view> names;
    for (const auto& script : database::scripts()) {
        EXPECT_TRUE(names.insert(script.name).second) << script.name;
        EXPECT_FALSE(script.text.empty()) << script.name;
        // What a shop begins with is only for tables that the demo data has left empty.
        if (script.name.substr(0, 6) == "start/") continue;
        EXPECT_FALSE(demo && !script.demo) << script.name << " would run after the demo data";
        demo = script.demo;
    }
    EXPECT_TRUE(demo);
}

TEST(ScriptBatches, aNumberBeyondIntIsRefused) {
    EXPECT_EQ(batchEnd("GO 2147483647"), 2147483647U);
    for (const char* number : {"2147483648", "99999999999", "99999999999999999999999"}) {
        try {
            (void)splitBatches("select 1\ngo " + std::string(number) + " \n");
            FAIL() << number;
        } catch (const UsageError& error) {
            EXPECT_EQ(error.what(), "GO " + std::string(number) + ": a batch is run 2147483647 times at most");
        }
    }
    EXPECT_EQ(batchEnd("GO -1"), std::nullopt);
    EXPECT_EQ(batchEnd("GO 1x"), std::nullopt);
}

TEST(ScriptBatches, areRepeatedAsOftenAsGoSays) {
    EXPECT_THAT(splitBatches("a\ngo 3\nb\nGO\t2 \r\nc\ngo 0\nd"), ElementsAre("a\n", "a\n", "a\n", "b\n", "b\n", "d"));
    for (const char* script : {"a\ngo3\n", "a\ngo -1\n", "a\ngo 1.5\n", "a\ngo x\n"})
        EXPECT_THAT(splitBatches(script), ElementsAre(script));
}

TEST(ScriptBatches, aCommentMayFollowGo) {
    EXPECT_THAT(splitBatches("a\nGO -- next\nb\ngo 2--twice\r\nc\nGO--\nd\nGO /* so */\ne\nGO 1 /* so */ -- and so\nf"),
                ElementsAre("a\n", "b\n", "b\n", "c\n", "d\n", "e\n", "f"));
    for (const char* script : {"a\ngo x -- y\n", "a\ngo - - 1\n", "a\ngoing -- on\n", "a\ngo /* so\n", "a\ngo so */\n"})
        EXPECT_THAT(splitBatches(script), ElementsAre(script));
}

TEST(ScriptBatches, linesThatBelongToNoneAreCounted) {
    BatchSplitter splitter;
    EXPECT_FALSE(splitter.add("\n"));
    splitter.skipLine();
    EXPECT_FALSE(splitter.add("a\n"));
    const auto batch = splitter.add("go 2\n");
    ASSERT_TRUE(batch);
    EXPECT_EQ(batch->text, "a\n");
    EXPECT_EQ(batch->firstLine, 3U);
    EXPECT_EQ(batch->times, 2U);
}

}  // namespace
}  // namespace basalt::host
