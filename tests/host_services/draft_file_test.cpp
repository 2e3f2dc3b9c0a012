// A file in the making takes its place whole, or leaves nothing.
#include "host/services/draft_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "ado/error.h"
#include "tests/support/files.h"

namespace basalt::host {
namespace {

namespace fs = std::filesystem;

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Property;
using ::testing::StartsWith;
using ::testing::Throws;
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

TEST_F(Draft, twoOfOneFileAreApart) {
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
    EXPECT_THAT(names(), UnorderedElementsAre("a.txt"));
}

TEST_F(Draft, saysWhyThereIsNoPlaceForIt) {
    EXPECT_THAT([&] { const DraftFile draft(path("nowhere/a.txt")); },
                ThrowsMessage<DraftError>(HasSubstr("nowhere/a.txt cannot be made: ")));
}

TEST_F(Draft, isHiddenAndNamedAfterTheProgram) {
    const DraftFile draft(path("a.txt"));
    EXPECT_THAT(names(), ElementsAre(StartsWith(".basalt-draft-")));
}

TEST_F(Draft, theNameMayBeAsLongAsTheFileSystemAllows) {
    const std::string longest(255, 'a');
    const DraftFile draft(path(longest));
    write(draft.path(), "whole");
    draft.replace();
    EXPECT_EQ(read(longest), "whole");
}

#ifndef _WIN32
// A program that makes a draft of the file and is killed over it.
void dieOver(const fs::path& place) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        const DraftFile draft(place);
        std::ofstream(draft.path()) << "half" << std::flush;
        if (::write(ends[1], "x", 1) != 1) _exit(1);
        while (true)
            pause();
    }
    close(ends[1]);
    char made = 0;
    EXPECT_EQ(::read(ends[0], &made, 1), 1);
    close(ends[0]);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

TEST_F(Draft, whatAProgramThatWasKilledHasLeftGoesWithTheNextOne) {
    const DraftFile living(path("b.txt"));
    write(living.path(), "whole");
    dieOver(path("a.txt"));
    EXPECT_EQ(names().size(), 2U);
    {
        const DraftFile draft(path("a.txt"));
        EXPECT_EQ(names().size(), 2U) << "the killed one's has gone";
    }
    ASSERT_EQ(names().size(), 1U);
    living.takePlace();
    EXPECT_EQ(read("b.txt"), "whole");
}

TEST_F(Draft, aFolderOfThatNameWhichIsNoneStays) {
    fs::create_directory(path(".basalt-draft-1"));
    fs::create_directory(path(".basalt-draft-2"));
    write(path(".basalt-draft-2/letter.txt"), "somebody's");
    write(path(".basalt-draft-3"), "somebody's");
    fs::create_directory(path("elsewhere"));
    write(path("elsewhere/held"), "");
    fs::create_directory_symlink(path("elsewhere"), path(".basalt-draft-4"));
    { const DraftFile draft(path("a.txt")); }
    EXPECT_THAT(names(), UnorderedElementsAre(".basalt-draft-1", ".basalt-draft-2", ".basalt-draft-3",
                                              ".basalt-draft-4", "elsewhere"));
    // An empty one is swept when it has been there for long.
    fs::last_write_time(path(".basalt-draft-1"), fs::file_time_type::clock::now() - std::chrono::hours(2));
    { const DraftFile draft(path("a.txt")); }
    EXPECT_THAT(names(), UnorderedElementsAre(".basalt-draft-2", ".basalt-draft-3", ".basalt-draft-4", "elsewhere"));
}

TEST_F(Draft, aFileThatGivesWayHandsOnItsPermissions) {
    for (const auto mode : {0600U, 0640U, 0755U}) {
        write(path("a.txt"), "old");
        fs::permissions(path("a.txt"), fs::perms{mode});
        const DraftFile draft(path("a.txt"));
        write(draft.path(), "new");
        EXPECT_EQ(fs::status(draft.path().parent_path()).permissions(), fs::perms::owner_all);
        draft.replace();
        EXPECT_EQ(read("a.txt"), "new");
        EXPECT_EQ(fs::status(path("a.txt")).permissions(), fs::perms{mode});
    }
}

TEST_F(Draft, aLinkLeadsToItsFile) {
    fs::create_directory(path("far"));
    write(path("far/a.txt"), "old");
    fs::create_symlink("far/a.txt", path("near.txt"));
    fs::create_symlink(path("near.txt"), path("nearer.txt"));
    {
        const DraftFile draft(path("nearer.txt"));
        // Beside the file: a rename does not leave a file system.
        EXPECT_EQ(fs::canonical(draft.path().parent_path().parent_path()), fs::canonical(path("far")));
        write(draft.path(), "new");
        draft.replace();
    }
    EXPECT_EQ(read("far/a.txt"), "new");
    EXPECT_EQ(fs::read_symlink(path("near.txt")), "far/a.txt");
    EXPECT_TRUE(fs::is_symlink(path("nearer.txt")));
    EXPECT_THAT(names(), UnorderedElementsAre("far", "near.txt", "nearer.txt"));
}

TEST_F(Draft, aLinkToNoFileYetMakesIt) {
    fs::create_symlink("a.txt", path("link.txt"));
    const DraftFile draft(path("link.txt"));
    write(draft.path(), "new");
    draft.takePlace();
    EXPECT_EQ(read("a.txt"), "new");
    EXPECT_TRUE(fs::is_symlink(path("link.txt")));
}

TEST_F(Draft, linksInACircleLeadNowhere) {
    fs::create_symlink("b.txt", path("a.txt"));
    fs::create_symlink("a.txt", path("b.txt"));
    EXPECT_THAT([&] { const DraftFile draft(path("a.txt")); },
                Throws<DraftError>(Property(&DraftError::reason, std::errc::too_many_symbolic_link_levels)));
    EXPECT_THAT(names(), UnorderedElementsAre("a.txt", "b.txt"));
}

TEST_F(Draft, whatIsNoFileStays) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_THAT([&] { const DraftFile draft(path("pipe")); },
                Throws<DraftError>(Property(&DraftError::reason, std::errc::operation_not_permitted)));
    EXPECT_TRUE(fs::is_fifo(path("pipe")));
    fs::create_directory(path("folder"));
    EXPECT_THAT([&] { const DraftFile draft(path("folder")); },
                Throws<DraftError>(Property(&DraftError::reason, std::errc::is_a_directory)));
}
#endif

}  // namespace
}  // namespace basalt::host
