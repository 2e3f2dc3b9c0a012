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
        file.change([](WorkstationOptions& options) {
            options.workstationName = "صندوق «۲»";
            options.lastUserName = "cashier";
            options.persianDigits = false;
            options.fontSize = 14;
            options.queryTimeoutSeconds = 90;
        });
        EXPECT_EQ(file.options().fontSize, 14);
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

TEST_F(IniOptionsTest, aDamagedFileIsSaidOnceByWhoReadItFirst) {
    fs::create_directories(folder_);
    std::ofstream(folder_ / "workstation.json") << "{ not json";
    EXPECT_EQ(IniOptionsFile(folder_).damaged(), folder_ / "workstation.json.damaged");
    const IniOptionsFile second(folder_);
    EXPECT_EQ(second.damaged(), fs::path());
    EXPECT_EQ(second.warning(), "");
}

TEST_F(IniOptionsTest, aDamagedFileThatCannotBeMovedIsSaidToBeWhereItIs) {
    fs::create_directories(folder_ / "workstation.json.damaged" / "in the way");
    std::ofstream(folder_ / "workstation.json") << "{ not json";
    const IniOptionsFile file(folder_);
    EXPECT_EQ(file.damaged(), folder_ / "workstation.json");
    EXPECT_TRUE(fs::exists(folder_ / "workstation.json"));
}

TEST_F(IniOptionsTest, whatAnotherProgramHasStoredMeanwhileStays) {
    IniOptionsFile first(folder_);
    IniOptionsFile second(folder_);
    second.change([](WorkstationOptions& options) { options.workstationName = "صندوق ۲"; });
    first.change([](WorkstationOptions& options) { options.lastUserName = "cashier"; });
    const IniOptionsFile stored(folder_);
    EXPECT_EQ(stored.options().workstationName, "صندوق ۲");
    EXPECT_EQ(stored.options().lastUserName, "cashier");
    EXPECT_EQ(first.options().workstationName, "صندوق ۲");
}

TEST_F(IniOptionsTest, aFolderOfThatNameIsMovedBesideAndSaid) {
    fs::create_directories(folder_ / "workstation.json" / "in it");
    const IniOptionsFile file(folder_);
    EXPECT_EQ(file.options().fontSize, 10);
    EXPECT_EQ(file.damaged(), folder_ / "workstation.json.damaged");
    EXPECT_TRUE(fs::exists(folder_ / "workstation.json.damaged" / "in it"));
}

TEST_F(IniOptionsTest, aFileThatMayNotBeReadIsMovedBesideAndSaid) {
    if (geteuid() == 0) GTEST_SKIP() << "root may read every file";
    fs::create_directories(folder_);
    std::ofstream(folder_ / "workstation.json") << "{}";
    fs::permissions(folder_ / "workstation.json", fs::perms::none);
    const IniOptionsFile file(folder_);
    EXPECT_EQ(file.damaged(), folder_ / "workstation.json.damaged");
}

TEST_F(IniOptionsTest, anEmptyFileIsDamaged) {
    fs::create_directories(folder_);
    std::ofstream(folder_ / "workstation.json") << "";
    EXPECT_EQ(IniOptionsFile(folder_).damaged(), folder_ / "workstation.json.damaged");
}

TEST_F(IniOptionsTest, aNameThatIsTooLongIsCut) {
    fs::create_directories(folder_);
    std::ofstream(folder_ / "workstation.json") << R"({"workstationName": ")" << std::string(49, 'a') << "ببب\"}";
    EXPECT_EQ(IniOptionsFile(folder_).options().workstationName, std::string(49, 'a') + "ب");
    IniOptionsFile file(folder_);
    file.change([](WorkstationOptions& options) { options.workstationName = std::string(60, 'b'); });
    EXPECT_EQ(file.options().workstationName, std::string(50, 'b'));
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
    IniOptionsFile file(folder_);
    const auto larger = [](WorkstationOptions& options) { options.fontSize = 14; };
    // clang-format off
    EXPECT_THAT([&] { file.change(larger); }, ThrowsMessage<OptionsError>("تنظیمات ایستگاه در پوشهٔ «\u2066" + folder_.string() + "\u2069» ذخیره نشد: پوشهٔ آن پیدا نشد."));
    // clang-format on
    EXPECT_EQ(file.options().fontSize, 10) << "as it is stored";
}

TEST_F(IniOptionsTest, whatCannotTakeItsPlaceLeavesNothingBehind) {
    IniOptionsFile file(folder_);
    fs::create_directories(folder_ / "workstation.json" / "in the way");
    fs::create_directories(folder_ / "workstation.json.damaged" / "in the way, too");
    EXPECT_THROW(file.change([](WorkstationOptions& options) { options.fontSize = 14; }), OptionsError);
    EXPECT_THAT(names(), UnorderedElementsAre("workstation.json", "workstation.json.damaged"));
    EXPECT_EQ(file.options().fontSize, 10);
}

TEST_F(IniOptionsTest, withoutAFolderNothingIsKept) {
    IniOptionsFile file{fs::path()};
    file.change([](WorkstationOptions& options) { options.lastUserName = "manager"; });
    EXPECT_EQ(file.options().lastUserName, "manager");
    EXPECT_EQ(IniOptionsFile{fs::path()}.options().lastUserName, "");
}

}  // namespace
}  // namespace basalt::host
