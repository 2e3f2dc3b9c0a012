// A folder of a test's own, and what lies in it.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/temp_folder.h"

namespace basalt::test {

class Files : public ::testing::Test {
protected:
    [[nodiscard]] std::filesystem::path path(const std::string& name) const { return folder_.file(name); }
    static void write(const std::filesystem::path& file, const std::string& bytes) {
        std::ofstream(file, std::ios::binary) << bytes;
    }
    [[nodiscard]] std::string read(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // Of files and folders.
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            all.push_back(entry.path().filename().string());
        return all;
    }

private:
    TempFolder folder_;
};

}  // namespace basalt::test
