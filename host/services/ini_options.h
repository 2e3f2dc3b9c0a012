// Options of this workstation, kept in a small JSON file in the user's data folder.
//
//   IniOptionsFile file(folder);
//   file.change([](WorkstationOptions& options) { options.workstationName = "صندوق ۲"; });
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace basalt::host {

constexpr int kLongestQuerySeconds = 24 * 60 * 60;
constexpr int kLongestWorkstationName = 50;  // UTF-16 units; a longer one that was written by hand is cut

struct WorkstationOptions {
    std::string workstationName;  // shown in the log and at code locks; at first the machine's name
    std::string lastUserName;     // offered at the next sign-in
    bool persianDigits = true;    // numbers on screens in Persian digits
    int fontSize = 10;            // points, 8 to 16
    int queryTimeoutSeconds = 0;  // of a statement on a server, up to a day; 0: it may take as long as it takes
};

class IniOptionsFile {
public:
    // Without a folder nothing is read or kept.
    explicit IniOptionsFile(std::filesystem::path folder);

    [[nodiscard]] const WorkstationOptions& options() const { return options_; }
    // A file that could not be read is kept beside with the ending ".damaged", as far as it can be moved there, and
    // this says in Persian where it is; else empty.
    [[nodiscard]] std::string warning() const;
    // Where that file is; else empty.
    [[nodiscard]] const std::filesystem::path& damaged() const { return damaged_; }
    // Reads the file anew, because another program of the user may have written it, changes what is to be changed and
    // replaces the file as a whole, so that a crash leaves the old or the new one. OptionsError with the reason when it
    // cannot be written; then nothing of it is left behind, and options() are what they were.
    void change(const std::function<void(WorkstationOptions&)>& change);
    [[nodiscard]] std::filesystem::path path() const;

private:
    // What the file says, and of what it does not say `otherwise`. A file that cannot be read is moved beside.
    [[nodiscard]] WorkstationOptions read(const WorkstationOptions& otherwise);
    void write(const WorkstationOptions& options) const;
    void moveBeside();

    std::filesystem::path folder_;
    WorkstationOptions options_;
    std::filesystem::path damaged_;
};

}  // namespace basalt::host
