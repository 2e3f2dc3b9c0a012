// A file in the making takes its place whole, or leaves nothing.
#include "host/services/draft_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "ado/error.h"
#include "tests/support/files.h"

namespace basalt::host {
namespace {

using ::testing::HasSubstr;
using ::testing::ThrowsMessage;
using ::testing::UnorderedElementsAre;

class Draft : public test::Files {};

TEST_F(Draft, takesItsPlaceAndLeavesNothingBeside) {
    {
        const DraftFile draft(path("a.txt"));
        write(draft.path(), "whole");
        EXPECT_FALSE(std::filesystem::exists(path("a.txt")));
        draft.takePlace();
    }
    EXPECT_EQ(read("a.txt"), "whole");
    EXPECT_THAT(names(), UnorderedElementsAre("a.txt"));
}

TEST_F(Draft, leavesNothingWhenItIsGivenUp) {
    {
        const DraftFile draft(path("a.txt"));
        write(draft.path(), "half");
    }
    EXPECT_THAT(names(), UnorderedElementsAre());
}

TEST_F(Draft, doesNotReplaceAFileThatCameMeanwhile) {
    {
        const DraftFile draft(path("a.txt"));
        write(draft.path(), "mine");
        write(path("a.txt"), "another's");
        EXPECT_THAT([&] { draft.takePlace(); }, ThrowsMessage<FileExists>(HasSubstr("a.txt already")));
    }
    EXPECT_EQ(read("a.txt"), "another's");
    EXPECT_THAT(names(), UnorderedElementsAre("a.txt"));
}

TEST_F(Draft, replacesWhenItIsToldTo) {
    write(path("a.txt"), "old");
    const DraftFile draft(path("a.txt"));
    write(draft.path(), "new");
    EXPECT_EQ(read("a.txt"), "old");
    draft.replace();
    EXPECT_EQ(read("a.txt"), "new");
}

TEST_F(Draft, letsOtherDraftsAndFilesOfItsNameAlone) {
    write(path("a.txt.new"), "another's");
    std::filesystem::create_directory(path("a.txt.new-2"));
    {
        const DraftFile first(path("a.txt"));
        const DraftFile second(path("a.txt"));
        EXPECT_NE(first.path(), second.path());
        write(first.path(), "first");
        write(second.path(), "second");
        first.takePlace();
        EXPECT_THROW(second.takePlace(), UsageError);
    }
    EXPECT_EQ(read("a.txt"), "first");
    EXPECT_THAT(names(), UnorderedElementsAre("a.txt", "a.txt.new", "a.txt.new-2"));
}

TEST_F(Draft, saysWhyThereIsNoPlaceForIt) {
    EXPECT_THAT([&] { const DraftFile draft(path("nowhere/a.txt")); },
                ThrowsMessage<DraftError>(HasSubstr("nowhere/a.txt cannot be made: ")));
}

}  // namespace
}  // namespace basalt::host
