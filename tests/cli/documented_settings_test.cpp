// The document of the command line names what --set takes.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "host/services/settings_store.h"

namespace basalt::cli {
namespace {

TEST(CommandLineDocument, namesEverySetting) {
    std::ifstream stream(BASALT_SOURCE_DIR "/docs/command_line.md", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    ASSERT_FALSE(text.empty());
    for (const host::SettingField& field : host::SettingsStore::fields())
        EXPECT_NE(text.find("`" + std::string(field.name) + "`"), std::string::npos) << field.name;
}

}  // namespace
}  // namespace basalt::cli
