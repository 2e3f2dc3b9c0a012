// Runs every file of fuzz/cases, which holds what fuzzing has found, through every target.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "fuzz/targets.h"

namespace basalt::fuzz {
namespace {

TEST(FuzzCases, HoldTheirProperties) {
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(std::string(BASALT_SOURCE_DIR) + "/fuzz/cases")) {
        SCOPED_TRACE(entry.path().filename().string());
        std::ifstream in(entry.path(), std::ios::binary);
        std::ostringstream content;
        content << in.rdbuf();
        // A property that does not hold ends the program, with its name on the standard error.
        lexer(content.str());
        parser(content.str());
        engine(content.str());
        ++files;
    }
    EXPECT_GT(files, 0);
}

}  // namespace
}  // namespace basalt::fuzz
