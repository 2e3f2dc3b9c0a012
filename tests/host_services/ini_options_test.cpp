#include "host/services/ini_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

#include "host/services/output_error.h"

namespace basalt::host {
namespace {

namespace fs = std::filesystem;

using ::testing::ThrowsMessage;
using ::testing::UnorderedElementsAre;

class IniOptionsTest : public ::testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() / ("basalt-options-" + std::to_string(getpid()));
        fs::remove_all(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }

    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator(folder_))
            all.push_back(entry.path().filename().string());
        return all;
    }

    fs::path folder_;
};

TEST_F(IniOptionsTest, comeBackAsTheyWereSaved) {
    {
        IniOptionsFile file(folder_ / "deeper");
        file.options().workstationName = "صندوق «۲»";
        file.options().lastUserName = "cashier";
        file.options().persianDigits = false;
        file.options().fontSize = 14;
        file.options().queryTimeoutSeconds = 90;
        file.save();
    }
    const IniOptionsFile file(folder_ / "deeper");
    EXPECT_EQ(file.options().queryTimeoutSeconds, 90);
    EXPECT_EQ(file.options().workstationName, "صندوق «۲»");
    EXPECT_EQ(file.options().lastUserName, "cashier");
    EXPECT_FALSE(file.options().persianDigits);
    EXPECT_EQ(file.options().fontSize, 14);
    EXPECT_EQ(file.warning(), "");
}

TEST_F(IniOptionsTest, withoutAFileTheMachineNamesTheWorkstation) {
    const IniOptionsFile file(folder_);
    EXPECT_NE(file.options().workstationName, "");
    EXPECT_EQ(file.options().fontSize, 10);
    EXPECT_FALSE(fs::exists(folder_));
}

TEST_F(IniOptionsTest, timesThatAreNoneLeaveStatementsUnlimited) {
    fs::create_directories(folder_);
    for (const auto& [written, read] : {std::pair{"0", 0}, {"1", 1}, {"86400", 86400}, {"86401", 0}, {"-1", 0}}) {
        std::ofstream(folder_ / "workstation.json") << "{\"queryTimeoutSeconds\": " << written << "}";
        EXPECT_EQ(IniOptionsFile(folder_).options().queryTimeoutSeconds, read) << written;
    }
    EXPECT_EQ(IniOptionsFile(folder_ / "empty").options().queryTimeoutSeconds, 0);
}

TEST_F(IniOptionsTest, aDamagedFileIsKeptBesideAndSaid) {
    fs::create_directories(folder_);
    std::ofstream(folder_ / "workstation.json") << "{ not json";
    const IniOptionsFile file(folder_);
    EXPECT_EQ(file.options().fontSize, 10);
    EXPECT_THAT(file.warning(), ::testing::HasSubstr("workstation.json.damaged"));
    EXPECT_TRUE(fs::exists(folder_ / "workstation.json.damaged"));
    EXPECT_FALSE(fs::exists(folder_ / "workstation.json"));
}

TEST_F(IniOptionsTest, valuesOutOfRangeLeaveTheDefault) {
    fs::create_directories(folder_);
    std::ofstream(folder_ / "workstation.json")
        << R"({"fontSize": 400, "workstationName": "", "lastUserName": "manager"})";
    const IniOptionsFile file(folder_);
    EXPECT_EQ(file.options().fontSize, 10);
    EXPECT_NE(file.options().workstationName, "");
    EXPECT_EQ(file.options().lastUserName, "manager");
}

TEST_F(IniOptionsTest, aFolderThatCannotBeWrittenIsSaid) {
    std::ofstream(folder_.string()) << "a file where the folder should be";
    const IniOptionsFile file(folder_);
    // clang-format off
    EXPECT_THAT([&] { file.save(); }, ThrowsMessage<OutputError>("تنظیمات ایستگاه ذخیره نشد. دسترسی نوشتن و فضای خالی این پوشه را بررسی کنید: " + folder_.string()));
    // clang-format on
}

TEST_F(IniOptionsTest, whatCannotTakeItsPlaceLeavesNothingBehind) {
    const IniOptionsFile file(folder_);
    fs::create_directories(folder_ / "workstation.json" / "in the way");
    EXPECT_THROW(file.save(), OutputError);
    EXPECT_THAT(names(), UnorderedElementsAre("workstation.json"));
}

TEST_F(IniOptionsTest, withoutAFolderNothingIsKept) {
    IniOptionsFile file{fs::path()};
    file.options().lastUserName = "manager";
    file.save();
    EXPECT_EQ(IniOptionsFile{fs::path()}.options().lastUserName, "");
}

}  // namespace
}  // namespace basalt::host
