#include "host/services/draft_file.h"

#include <string>
#include <system_error>
#include <utility>

#include "host/services/path_text.h"

namespace basalt::host {

namespace fs = std::filesystem;

namespace {

// As many drafts of one file as may lie about at most, each of a program that is at work or that died over it.
constexpr int kMostDrafts = 1000;

[[noreturn]] void isThereAlready(const fs::path& place) {
    throw FileExists("there is a file at " + textFromPath(place) + " already");
}

// A new folder beside the place. Nobody else's is used: making it fails where it exists.
fs::path newFolderFor(const fs::path& place) {
    for (int number = 1; number <= kMostDrafts; ++number) {
        fs::path folder = place;
        folder += number == 1 ? ".new" : ".new-" + std::to_string(number);
        std::error_code failure;
        if (fs::create_directory(folder, failure)) return folder;
        std::error_code ignored;
        if (failure && !fs::exists(fs::symlink_status(folder, ignored)))
            throw DraftError(textFromPath(place), failure.message());
    }
    throw DraftError(textFromPath(place), std::to_string(kMostDrafts) +
                                              " unfinished ones lie beside it; remove the folders whose names go on "
                                              "with .new");
}

}  // namespace

DraftFile::DraftFile(fs::path place)
    : place_(std::move(place)), folder_(newFolderFor(place_)), path_(folder_ / place_.filename()) {}

DraftFile::~DraftFile() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

void DraftFile::takePlace() const {
    std::error_code failure;
    // A second name is never given over another file's, whereas a rename would replace that file.
    fs::create_hard_link(path_, place_, failure);
    if (!failure) return;
    std::error_code ignored;
    if (fs::exists(fs::symlink_status(place_, ignored))) isThereAlready(place_);
    // Some file systems know no second names.
    replace();
}

void DraftFile::replace() const {
    std::error_code failure;
    fs::rename(path_, place_, failure);
    if (failure) throw DraftError(textFromPath(place_), failure.message());
}

}  // namespace basalt::host
