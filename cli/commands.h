// The commands. Each function adds one to the program: its options and what it does.
//
// What a command does returns the program's exit status; it may throw WrongUsage (status 2) or any other exception
// (status 1), whose text goes to the standard error.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "cli/options.h"

namespace basalt::cli {

struct Program {
    CLI::App& app;
    CommonOptions& options;
    std::function<int()>& chosen;  // what the chosen command does

    // A command of this name that also takes the common options behind its own.
    [[nodiscard]] CLI::App& command(CLI::App& parent, const std::string& name, const std::string& description,
                                    std::function<int()> run);
};

void addDatabaseCommand(Program& program);
void addSqlCommand(Program& program);
void addFunctionsCommand(Program& program);
void addCallCommand(Program& program);
void addBatchCommand(Program& program);
void addScreenCommand(Program& program);

}  // namespace basalt::cli
