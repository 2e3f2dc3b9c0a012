#include "host/services/ini_options.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>

#include "host/services/cut_text.h"
#include "host/services/draft_file.h"
#include "host/services/isolated_text.h"
#include "host/services/output_error.h"
#include "host/services/path_text.h"
#include "host/services/platform/process.h"
#include "host/services/system_errors.h"

namespace basalt::host {

namespace {

constexpr int kSmallestFont = 8;
constexpr int kLargestFont = 16;

}  // namespace

IniOptionsFile::IniOptionsFile(std::filesystem::path folder) : folder_(std::move(folder)) {
    options_.workstationName = cutText(platform::machineName(), kLongestWorkstationName);
    if (!folder_.empty()) options_ = read(options_);
}

std::filesystem::path IniOptionsFile::path() const {
    return folder_ / "workstation.json";
}

void IniOptionsFile::moveBeside() {
    std::error_code failure;
    damaged_ = path();
    damaged_ += ".damaged";
    std::filesystem::rename(path(), damaged_, failure);
    if (failure) damaged_ = path();
}

WorkstationOptions IniOptionsFile::read(const WorkstationOptions& otherwise) {
    std::error_code ignored;
    if (!std::filesystem::exists(std::filesystem::symlink_status(path(), ignored))) return otherwise;
    WorkstationOptions read = otherwise;
    try {
        // A folder of that name can be opened, too, and fails only when it is read.
        std::ifstream file(path(), std::ios::binary);
        file.exceptions(std::ios::badbit | std::ios::failbit);
        std::ostringstream text;
        if (file.peek() != std::ifstream::traits_type::eof()) text << file.rdbuf();
        const auto json = nlohmann::json::parse(text.str());
        read.workstationName = json.value("workstationName", read.workstationName);
        read.lastUserName = json.value("lastUserName", read.lastUserName);
        read.persianDigits = json.value("persianDigits", read.persianDigits);
        read.fontSize = json.value("fontSize", read.fontSize);
        if (read.fontSize < kSmallestFont || read.fontSize > kLargestFont) read.fontSize = otherwise.fontSize;
        read.queryTimeoutSeconds = json.value("queryTimeoutSeconds", read.queryTimeoutSeconds);
        if (read.queryTimeoutSeconds < 0 || read.queryTimeoutSeconds > kLongestQuerySeconds)
            read.queryTimeoutSeconds = 0;
        read.workstationName = cutText(read.workstationName, kLongestWorkstationName);
        if (read.workstationName.empty()) read.workstationName = otherwise.workstationName;
    } catch (const nlohmann::json::exception&) {
        moveBeside();
        return otherwise;
    } catch (const std::ios_base::failure&) {
        moveBeside();
        return otherwise;
    }
    return read;
}

void IniOptionsFile::change(const std::function<void(WorkstationOptions&)>& change) {
    WorkstationOptions changed = folder_.empty() ? options_ : read(options_);
    change(changed);
    changed.workstationName = cutText(changed.workstationName, kLongestWorkstationName);
    write(changed);
    options_ = std::move(changed);
}

std::string IniOptionsFile::warning() const {
    if (damaged_.empty()) return {};
    // The formatter would cut the sentence to pieces.
    // clang-format off
    return "پروندهٔ تنظیمات ایستگاه خوانده نشد و تنظیمات پیش‌فرض به کار رفت. نسخهٔ خراب در این نشانی نگه داشته شد: " + readFromLeft(textFromPath(damaged_));
    // clang-format on
}

void IniOptionsFile::write(const WorkstationOptions& options) const {
    if (folder_.empty()) return;
    const nlohmann::ordered_json json = {{"workstationName", options.workstationName},
                                         {"lastUserName", options.lastUserName},
                                         {"persianDigits", options.persianDigits},
                                         {"fontSize", options.fontSize},
                                         {"queryTimeoutSeconds", options.queryTimeoutSeconds}};
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
    } catch (const DraftError& error) {
        // Where the folder could not be made, that is the reason.
        throw OptionsError("تنظیمات ایستگاه در پوشهٔ «" + readFromLeft(textFromPath(folder_)) +
                           "» ذخیره نشد: " + fileErrorSentence(failure ? failure : error.reason()));
    }
}

}  // namespace basalt::host
