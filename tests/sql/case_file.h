// Reads the plain text files that pin what statements mean; see README.md for the format.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace basalt::test {

struct CaseStep {
    std::string sql;
    std::optional<std::vector<std::string>> rows;
    std::optional<std::string> types;
    std::optional<std::string> columns;
    std::optional<long long> changed;
    std::optional<int> error;
    std::optional<std::string> message;
    int line = 0;
};

struct SqlCase {
    std::string file;
    std::string name;
    std::vector<CaseStep> steps;
};

// All cases of all *.test files of the folder, sorted by file. Throws std::runtime_error with file and line for a file
// that does not follow the format.
std::vector<SqlCase> readCases(const std::string& folder);

}  // namespace basalt::test
