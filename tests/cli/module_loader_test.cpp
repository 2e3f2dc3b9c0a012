// Where the module is looked for.
#include "host/module_loader/module_loader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace basalt::host {
namespace {

TEST(ModuleLoader, looksNowhereTwice) {
    const std::vector<std::filesystem::path> files = moduleCandidates();
    EXPECT_GE(files.size(), 2U);
    EXPECT_EQ(std::set(files.begin(), files.end()).size(), files.size());
    for (const std::filesystem::path& file : files)
        EXPECT_EQ(file, file.lexically_normal());
}

}  // namespace
}  // namespace basalt::host
