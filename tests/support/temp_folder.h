// A folder of its own for a test, gone afterwards.
#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace basalt::test {

class TempFolder {
public:
    TempFolder() {
        // Programs run side by side and one may have left its folders behind, so the name is drawn until it is new.
        std::random_device number;
        do
            path_ = std::filesystem::temp_directory_path() / ("basalt-" + std::to_string(number()));
        while (!std::filesystem::create_directory(path_));
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code problem;
        std::filesystem::remove_all(path_, problem);
    }

    [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace basalt::test
