#include "case_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace basalt::test {

namespace {

bool takePrefix(const std::string& line, const std::string& prefix, std::string& rest) {
    if (!line.starts_with(prefix)) return false;
    rest = line.substr(prefix.size());
    return true;
}

class Reader {
public:
    explicit Reader(const std::filesystem::path& path) : name_(path.filename().string()), input_(path) {
        if (!input_) throw std::runtime_error("cannot read " + path.string());
    }

    void readInto(std::vector<SqlCase>& cases) {
        enum class Part { None, Sql, Rows } part = Part::None;
        SqlCase* current = nullptr;
        for (std::string line; std::getline(input_, line);) {
            ++line_;
            std::string rest;
            if (line.starts_with("#") && part != Part::Sql) continue;
            if (takePrefix(line, "case ", rest)) {
                current = &cases.emplace_back(SqlCase{name_, rest, {}});
                part = Part::None;
            } else if (current == nullptr) {
                if (!line.empty()) fail("text before the first case");
            } else if (line == "sql") {
                current->steps.emplace_back().line = line_;
                part = Part::Sql;
            } else if (current->steps.empty()) {
                if (!line.empty()) fail("expected 'sql'");
            } else if (line == "rows") {
                step(*current).rows.emplace();
                part = Part::Rows;
            } else if (takePrefix(line, "types ", rest)) {
                step(*current).types = rest;
                part = Part::None;
            } else if (takePrefix(line, "columns ", rest)) {
                step(*current).columns = rest;
                part = Part::None;
            } else if (takePrefix(line, "changed ", rest)) {
                step(*current).changed = std::stoll(rest);
                part = Part::None;
            } else if (takePrefix(line, "error ", rest)) {
                step(*current).error = std::stoi(rest);
                part = Part::None;
            } else if (takePrefix(line, "message ", rest)) {
                step(*current).message = rest;
                part = Part::None;
            } else if (line.empty()) {
                if (part == Part::Rows) part = Part::None;
            } else if (part == Part::Sql) {
                std::string& sql = step(*current).sql;
                sql += (sql.empty() ? "" : "\n") + line;
            } else if (part == Part::Rows) {
                step(*current).rows->push_back(line);
            } else {
                fail("unexpected '" + line + "'");
            }
        }
    }

private:
    static CaseStep& step(SqlCase& current) { return current.steps.back(); }
    [[noreturn]] void fail(const std::string& what) const {
        throw std::runtime_error(name_ + ":" + std::to_string(line_) + ": " + what);
    }

    std::string name_;
    std::ifstream input_;
    int line_ = 0;
};

}  // namespace

std::vector<SqlCase> readCases(const std::string& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".test") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<SqlCase> cases;
    for (const std::filesystem::path& file : files)
        Reader(file).readInto(cases);
    return cases;
}

}  // namespace basalt::test
