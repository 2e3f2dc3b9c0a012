// The options that go with every command.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace basalt::cli {

struct CommonOptions {
    std::string database;  // a database URL; empty: this user's own
    int user = 1;
    std::string record;                      // a file
    std::string replay;                      // a file
    std::vector<std::string> settings;       // NAME=VALUE
    std::vector<std::string> moreArguments;  // of a command that takes a list of them, behind the rest
};

}  // namespace basalt::cli
