// Every statement that the printer writes parses to the tree that it was written from.
#include <gtest/gtest.h>

#include "corpus.h"
#include "engines/embedded/parser/parser.h"
#include "engines/embedded/printer/printer.h"

namespace basalt::embedded {
namespace {

// With parentheses around every operation the text shows the whole tree, so two trees with the same text are the same.
void expectRoundTrip(const std::string& sql) {
    SCOPED_TRACE(sql);
    std::string printed;
    try {
        const ast::Batch batch = parse(sql);
        ASSERT_FALSE(batch.statements.empty());
        printed = print(batch);
        const ast::Batch again = parse(printed);
        EXPECT_EQ(print(again), printed);
        EXPECT_EQ(print(again, Parentheses::All), print(batch, Parentheses::All)) << printed;
        EXPECT_EQ(again.parameterMarkers, batch.parameterMarkers);
        EXPECT_EQ(print(parse(print(batch, Parentheses::All))), printed);
    } catch (const DatabaseError& error) {
        ADD_FAILURE() << error.what() << "\nprinted: " << printed;
    }
}

TEST(RoundTrip, StatementsOfTheModuleAndTheHost) {
    const std::vector<std::string> entries = readCorpus("statements.txt");
    ASSERT_GE(entries.size(), 300U);
    for (const std::string& entry : entries)
        expectRoundTrip(entry);
}

TEST(RoundTrip, BreadthOfTheLanguage) {
    const std::vector<std::string> entries = readCorpus("language.txt");
    ASSERT_GE(entries.size(), 100U);
    for (const std::string& entry : entries)
        expectRoundTrip(entry);
}

}  // namespace
}  // namespace basalt::embedded
