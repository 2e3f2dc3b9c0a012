// Options of this workstation, kept in a small JSON file in the user's data folder.
//
//   IniOptionsFile file(folder);
//   file.options().workstationName = "صندوق ۲";
//   file.save();
#pragma once

#include <filesystem>
#include <string>

namespace basalt::host {

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

    [[nodiscard]] WorkstationOptions& options() { return options_; }
    [[nodiscard]] const WorkstationOptions& options() const { return options_; }
    // A file that could not be read is kept beside with the ending ".damaged", and this says so in Persian; else empty.
    [[nodiscard]] const std::string& warning() const { return warning_; }
    // Replaces the file as a whole, so that a crash leaves the old or the new one and programs that save at the same
    // time do not mix. OutputError when it cannot be written; nothing of it is left behind then.
    void save() const;
    [[nodiscard]] std::filesystem::path path() const;

private:
    void load();

    std::filesystem::path folder_;
    WorkstationOptions options_;
    std::string warning_;
};

}  // namespace basalt::host
