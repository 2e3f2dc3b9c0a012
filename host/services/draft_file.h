// A file in the making: written in a folder of its own beside the place it is for, and moved there when it is whole.
//
//   DraftFile draft("shop.sql");
//   std::ofstream out(draft.path(), std::ios::binary);
//   ...
//   draft.replace();
//
// Whatever goes wrong before leaves nothing behind and touches no other file.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>

#include "ado/error.h"

namespace basalt::host {

// A file of that name is there already, and it is left as it is.
class FileExists : public UsageError {
public:
    using UsageError::UsageError;
};

// There is no place for the file; what() names it.
class DraftError : public std::runtime_error {
public:
    DraftError(const std::string& file, std::string reason)
        : std::runtime_error(file + " cannot be made: " + reason), reason_(std::move(reason)) {}

    [[nodiscard]] const std::string& reason() const { return reason_; }

private:
    std::string reason_;
};

class DraftFile {
public:
    // Makes the folder. DraftError when that cannot be.
    explicit DraftFile(std::filesystem::path place);
    ~DraftFile();
    DraftFile(const DraftFile&) = delete;
    DraftFile& operator=(const DraftFile&) = delete;

    // Where to write. What belongs to the file while it is open (an engine's log) may stand beside it.
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    // The file, closed by now, takes its place. FileExists when a file has come there meanwhile, which stays as it is;
    // DraftError when it cannot be moved.
    void takePlace() const;
    // The same, but a file that is there gives way.
    void replace() const;

private:
    std::filesystem::path place_;
    std::filesystem::path folder_;
    std::filesystem::path path_;
};

}  // namespace basalt::host
