// Programs and libraries of this machine, for the module.
//
// They are looked for in the given folders first, then where the operating system looks. On Windows programs are
// started through the shell. Elsewhere a program is started as a process of its own, detached, with the parameters as
// its one argument and no shell in between: nothing in a parameter can become an option or a command. The library
// NAME.dll is libNAME.so here.
#pragma once

#include <filesystem>
#include <vector>

#include "package/programs.h"

namespace basalt::host {

class SystemPrograms final : public ProgramService {
public:
    explicit SystemPrograms(std::vector<std::filesystem::path> folders) : folders_(std::move(folders)) {}

    [[nodiscard]] StartResult start(const ProgramStart& program) override;
    [[nodiscard]] std::unique_ptr<ProgramLibrary> load(const std::string& name) override;

private:
    std::vector<std::filesystem::path> folders_;
};

}  // namespace basalt::host
