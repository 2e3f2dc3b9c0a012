#include "host/engines/draft_file.h"

#include <string>
#include <system_error>
#include <utility>

#include "ado/error.h"
#include "host/engines/path_text.h"

namespace basalt::host {

namespace fs = std::filesystem;

namespace {

// As many drafts of one file as may lie about at most, each of a program that is at work or that died over it.
constexpr int kMostDrafts = 1000;

[[noreturn]] void cannotBeMade(const fs::path& place, const std::error_code& failure) {
    throw DatabaseError(ErrorCategory::Connection, "08001", 0,
                        textFromPath(place) + " cannot be made: " + failure.message());
}

[[noreturn]] void isThereAlready(const fs::path& place) {
    throw UsageError("there is a file at " + textFromPath(place) + " already");
}

// A new folder beside the place. Nobody else's is used: making it fails where it exists.
fs::path newFolderFor(const fs::path& place) {
    for (int number = 1; number <= kMostDrafts; ++number) {
        fs::path folder = place;
        folder += number == 1 ? ".new" : ".new-" + std::to_string(number);
        std::error_code failure;
        if (fs::create_directory(folder, failure)) return folder;
        std::error_code ignored;
        if (failure && !fs::exists(fs::symlink_status(folder, ignored))) cannotBeMade(place, failure);
    }
    throw DatabaseError(ErrorCategory::Connection, "08001", 0,
                        textFromPath(place) + " cannot be made: " + std::to_string(kMostDrafts) +
                            " unfinished ones lie beside it; remove the folders whose names go on with .new");
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
    if (failure) cannotBeMade(place_, failure);
}

}  // namespace basalt::host
