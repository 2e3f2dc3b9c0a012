#include "host/services/draft_file.h"

#include <cerrno>
#include <chrono>
#include <fstream>
#include <random>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "host/services/path_text.h"
#include "host/services/platform/file_owner.h"

namespace basalt::host {

namespace fs = std::filesystem;

namespace {

// As many links in a row as systems follow themselves.
constexpr int kMostLinks = 40;

[[noreturn]] void cannotBe(const fs::path& place, const std::error_code& reason) {
    throw DraftError(textFromPath(place), reason);
}

[[noreturn]] void isThereAlready(const fs::path& place) {
    throw FileExists("there is a file at " + textFromPath(place) + " already");
}

// Where links from the place lead, also when nothing is there yet.
fs::path targetOf(const fs::path& place) {
    fs::path target = place;
    std::error_code ignored;
    for (int links = 0; fs::is_symlink(fs::symlink_status(target, ignored)); ++links) {
        if (links == kMostLinks) cannotBe(place, std::make_error_code(std::errc::too_many_symbolic_link_levels));
        std::error_code failure;
        const fs::path next = fs::read_symlink(target, failure);
        if (failure) cannotBe(place, failure);
        target = target.parent_path() / next;
    }
    return target;
}

// A rename would put a file where a device or a pipe was.
void requireNoOtherKind(const fs::path& place, const fs::path& target) {
    std::error_code ignored;
    const fs::file_status status = fs::status(target, ignored);
    if (fs::is_directory(status)) cannotBe(place, std::make_error_code(std::errc::is_a_directory));
    if (fs::exists(status) && !fs::is_regular_file(status))
        cannotBe(place, std::make_error_code(std::errc::operation_not_permitted));
}

constexpr const char* kPrefix = ".basalt-draft-";
constexpr const char* kHoldName = "held";

// Whether it is certain that nobody writes there any more.
bool isAbandoned(const fs::path& folder) {
    std::error_code failure;
    if (!fs::is_directory(fs::symlink_status(folder, failure))) return false;
    if (platform::FileHold::take(folder / kHoldName).held()) return true;
    // Its maker may have died before it held anything; or it has just been made.
    constexpr auto kLong = std::chrono::hours(1);
    const bool empty = fs::is_empty(folder, failure) && !failure;
    const auto made = fs::last_write_time(folder, failure);
    return empty && !failure && fs::file_time_type::clock::now() - made > kLong;
}

// What programs that died have left beside the target. It is in nobody's way, so a failure is none of the draft's.
void sweepBeside(const fs::path& target) {
    std::error_code failure;
    const fs::path parent = target.parent_path().empty() ? "." : target.parent_path();
    std::vector<fs::path> abandoned;
    fs::directory_iterator entry(parent, failure);
    for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
        const fs::path name = entry->path().filename();
        if (name.native().starts_with(fs::path(kPrefix).native()) && isAbandoned(entry->path()))
            abandoned.push_back(entry->path());
    }
    for (const fs::path& folder : abandoned)
        fs::remove_all(folder, failure);
}

// A new folder in that of the target, for nobody else's eyes: what was private must not be open to all while it is
// written. Nobody else's is used: making it fails where it exists. Its name owes nothing to the file's, which may be as
// long as names can be.
fs::path newFolderFor(const fs::path& place, const fs::path& target) {
    std::random_device number;
    for (;;) {
        fs::path folder = target.parent_path() / (kPrefix + std::to_string(number()));
        std::error_code failure;
        if (fs::create_directory(folder, failure)) {
            fs::permissions(folder, fs::perms::owner_all, failure);
            return folder;
        }
        if (failure && failure != std::errc::file_exists) cannotBe(place, failure);
    }
}

void handOnPermissions(const fs::path& place, const fs::path& from, const fs::path& to) {
    std::error_code failure;
    const fs::file_status old = fs::status(from, failure);
    if (!fs::exists(old)) return;
    // Before the permissions: a system takes some of them away from a file that changes hands.
    platform::handOnOwner(from, to);
    // Where a file system knows none they are equal, and would not let themselves be set.
    if (fs::status(to, failure).permissions() == old.permissions()) return;
    fs::permissions(to, old.permissions(), failure);
    if (failure) cannotBe(place, failure);
}

// The disk is asked once more. What a writer has removed again may have made room, and then the system's last word to
// the writer is the best that there is.
std::error_code whyNotWritten(const fs::path& draft) {
    constexpr std::size_t kMuch = 65'536;
    const int lastWord = std::exchange(errno, 0);
    std::ofstream file(draft, std::ios::binary | std::ios::app);
    file << std::string(kMuch, ' ') << std::flush;
    const int reason = file ? lastWord : errno;
    return {reason != 0 ? reason : EIO, std::generic_category()};
}

}  // namespace

DraftFile::DraftFile(fs::path place) : place_(std::move(place)), target_(targetOf(place_)) {
    requireNoOtherKind(place_, target_);
    sweepBeside(target_);
    makeFolder();
    path_ = folder_ / "draft";
}

void DraftFile::makeFolder() {
    // Another program that sweeps may come between the making of the folder and the hold. Some file systems know no
    // holds, and then the folder stays if the program dies.
    constexpr int kMostAttempts = 3;
    for (int attempt = 1;; ++attempt) {
        folder_ = newFolderFor(place_, target_);
        hold_ = platform::FileHold::make(folder_ / kHoldName);
        if (hold_.held()) return;
        std::error_code ignored;
        fs::remove(folder_ / kHoldName, ignored);
        if (attempt == kMostAttempts && fs::exists(folder_, ignored)) return;
        fs::remove(folder_, ignored);
    }
}

DraftFile::~DraftFile() {
    hold_.release();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

void DraftFile::fail() const {
    cannotBe(place_, whyNotWritten(path_));
}

void DraftFile::takePlace() const {
    std::error_code failure;
    // A second name is never given over another file's, whereas a rename would replace that file.
    fs::create_hard_link(path_, target_, failure);
    if (!failure) return;
    std::error_code ignored;
    if (fs::exists(fs::symlink_status(target_, ignored))) isThereAlready(place_);
    // Some file systems know no second names.
    replace();
}

void DraftFile::replace() const {
    handOnPermissions(place_, target_, path_);
    std::error_code failure;
    fs::rename(path_, target_, failure);
    if (failure) cannotBe(place_, failure);
}

}  // namespace basalt::host
