// docs/functions.md is what the registry tells, and everything that is exported has been thought through.
#include "cli/function_reference.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "cli/host_screens.h"
#include "host/module_loader/module_loader.h"

namespace basalt::cli {
namespace {

namespace fs = std::filesystem;

std::string read(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

const Registry& exported() {
    return host::loadModule(fs::path(BASALT_MODULE_FILE)).registry();
}

// All tests and their cases, steps among them.
std::string tests() {
    std::string all;
    for (const auto& entry : fs::recursive_directory_iterator(BASALT_SOURCE_DIR "/tests"))
        if (entry.is_regular_file()) all += read(entry.path());
    return all;
}

TEST(FunctionReference, documentIsUpToDate) {
    std::ostringstream written;
    writeReference(written, exported(), hostScreens());
    EXPECT_EQ(read(BASALT_SOURCE_DIR "/docs/functions.md"), written.str())
        << "basalt functions --markdown > docs/functions.md";
}

void expectDescribed(const std::string& name, const std::string& subsystem, const std::string& summary,
                     const std::vector<FunctionParameter>& parameters) {
    static const std::set<std::string> types{"integer", "byte", "amount", "text", "flag", "record", "list", "event"};
    EXPECT_FALSE(subsystem.empty()) << name;
    EXPECT_TRUE(!summary.empty() && summary.back() == '.') << name << ": " << summary;
    std::set<std::string> names;
    for (const FunctionParameter& parameter : parameters) {
        EXPECT_TRUE(names.insert(parameter.name).second) << name << " has two " << parameter.name;
        EXPECT_TRUE(types.contains(parameter.type)) << name << ", " << parameter.name << ": " << parameter.type;
        EXPECT_TRUE(parameter.input || parameter.output) << name << ", " << parameter.name;
    }
}

TEST(Exports, areDescribedAndTested) {
    const std::string text = tests();
    ASSERT_GT(exported().functions().size(), 30U);
    for (const FunctionEntry& entry : exported().functions()) {
        expectDescribed(entry.name, entry.subsystem, entry.summary, entry.parameters);
        EXPECT_TRUE(entry.run != nullptr) << entry.name;
        EXPECT_NE(text.find(entry.name), std::string::npos) << "no test calls " << entry.name;
    }
    for (const EntryPoint& entry : exported().entryPoints()) {
        expectDescribed(entry.name, entry.subsystem, entry.summary, entry.parameters);
        EXPECT_FALSE(entry.title.empty()) << entry.name;
        EXPECT_NE(text.find(entry.name), std::string::npos) << "no test opens " << entry.name;
    }
}

}  // namespace
}  // namespace basalt::cli
