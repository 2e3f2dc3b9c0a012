// A file in the making: written in a folder of its own beside the place it is for, and moved there when it is whole.
//
//   DraftFile draft("shop.sql");
//   std::ofstream out(draft.path(), std::ios::binary);
//   ...
//   draft.replace();
//
// Whatever goes wrong before leaves nothing behind and touches no other file. A program that dies over it leaves a
// hidden folder, .basalt-draft- and a number, which the next draft in the same place sweeps away.
//
// A place that is a symbolic link stays one: the file that it leads to is meant. A file that gives way hands on its
// permissions; its owner becomes who wrote the new one, and other names (hard links) that it has keep the old contents.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

#include "ado/error.h"
#include "host/services/platform/file_hold.h"

namespace basalt::host {

// A file of that name is there already, and it is left as it is.
class FileExists : public UsageError {
public:
    using UsageError::UsageError;
};

// There is no place for the file; what() names it.
class DraftError : public std::runtime_error {
public:
    DraftError(const std::string& file, const std::error_code& reason)
        : std::runtime_error(file + " cannot be made: " + reason.message()), reason_(reason) {}

    [[nodiscard]] const std::error_code& reason() const { return reason_; }

private:
    std::error_code reason_;
};

class DraftFile {
public:
    // Makes the folder. DraftError when that cannot be, and when the place is taken by what is no file: a folder, a
    // device.
    explicit DraftFile(std::filesystem::path place);
    ~DraftFile();
    DraftFile(const DraftFile&) = delete;
    DraftFile& operator=(const DraftFile&) = delete;

    // Where to write. What belongs to the file while it is open (an engine's log) may stand beside it.
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    // The file could not be written: DraftError with the reason, which those who write files seldom tell.
    [[noreturn]] void fail() const;

    // The file, closed by now, takes its place. FileExists when a file has come there meanwhile, which stays as it is;
    // DraftError when it cannot be moved.
    void takePlace() const;
    // The same, but a file that is there gives way.
    void replace() const;

private:
    void makeFolder();

    std::filesystem::path place_;   // as asked for, in messages
    std::filesystem::path target_;  // where links from there lead
    std::filesystem::path folder_;
    platform::FileHold hold_;  // of a file in the folder, by which others see that it is in use
    std::filesystem::path path_;
};

}  // namespace basalt::host
