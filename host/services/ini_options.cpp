#include "host/services/ini_options.h"

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

#include "host/services/draft_file.h"
#include "host/services/isolated_text.h"
#include "host/services/output_error.h"
#include "host/services/path_text.h"
#include "host/services/platform/process.h"

namespace basalt::host {

namespace {

constexpr int kSmallestFont = 8;
constexpr int kLargestFont = 16;
constexpr int kLongestQuery = 24 * 60 * 60;

}  // namespace

IniOptionsFile::IniOptionsFile(std::filesystem::path folder) : folder_(std::move(folder)) {
    options_.workstationName = platform::machineName();
    if (!folder_.empty()) load();
}

std::filesystem::path IniOptionsFile::path() const {
    return folder_ / "workstation.json";
}

void IniOptionsFile::load() {
    std::ifstream file(path(), std::ios::binary);
    if (!file) return;
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    WorkstationOptions read = options_;
    try {
        const auto json = nlohmann::json::parse(text);
        read.workstationName = json.value("workstationName", read.workstationName);
        read.lastUserName = json.value("lastUserName", read.lastUserName);
        read.persianDigits = json.value("persianDigits", read.persianDigits);
        read.fontSize = json.value("fontSize", read.fontSize);
        if (read.fontSize < kSmallestFont || read.fontSize > kLargestFont) read.fontSize = options_.fontSize;
        read.queryTimeoutSeconds = json.value("queryTimeoutSeconds", read.queryTimeoutSeconds);
        if (read.queryTimeoutSeconds < 0 || read.queryTimeoutSeconds > kLongestQuery) read.queryTimeoutSeconds = 0;
        if (read.workstationName.empty()) read.workstationName = options_.workstationName;
    } catch (const nlohmann::json::exception&) {
        std::error_code ignored;
        std::filesystem::path kept = path();
        kept += ".damaged";
        std::filesystem::rename(path(), kept, ignored);
        // The formatter would cut the sentence to pieces.
        // clang-format off
        warning_ = "پروندهٔ تنظیمات ایستگاه خوانده نشد و تنظیمات پیش‌فرض به کار رفت. نسخهٔ خراب در این نشانی نگه داشته شد: " + readFromLeft(textFromPath(kept));
        // clang-format on
        return;
    }
    options_ = std::move(read);
}

void IniOptionsFile::save() const {
    if (folder_.empty()) return;
    const nlohmann::ordered_json json = {{"workstationName", options_.workstationName},
                                         {"lastUserName", options_.lastUserName},
                                         {"persianDigits", options_.persianDigits},
                                         {"fontSize", options_.fontSize},
                                         {"queryTimeoutSeconds", options_.queryTimeoutSeconds}};
    std::error_code failure;
    std::filesystem::create_directories(folder_, failure);
    try {
        const DraftFile draft(path());
        {
            std::ofstream file(draft.path(), std::ios::binary | std::ios::trunc);
            file << json.dump(2) << '\n';
            file.flush();
            if (!file) draft.fail();
        }
        draft.replace();
    } catch (const DraftError&) {
        // clang-format off
        throw OutputError("تنظیمات ایستگاه ذخیره نشد. دسترسی نوشتن و فضای خالی این پوشه را بررسی کنید: " + textFromPath(folder_));
        // clang-format on
    }
}

}  // namespace basalt::host
