// Runs the built program as the files in cases/ say and compares all that it writes.
//
//   # a remark
//   $ call CostLevel_GetNewCode 114 1 --database embedded::memory:     a run; the words go through the shell
//   < a line of its standard input
//   > a line that it must write to the standard output
//   ! a line that it must write to the standard error
//   = 1                                                                 its exit status, 0 when left out
//
// The runs of one file follow each other in one empty folder, which is also the user's data folder.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct ProgramRun {
    int line = 0;
    std::string words, input, output, errors;
    int status = 0;
};

std::string read(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

void write(const fs::path& file, const std::string& text) {
    std::ofstream(file, std::ios::binary) << text;
}

std::vector<ProgramRun> runsOf(const fs::path& file) {
    std::vector<ProgramRun> runs;
    std::ifstream stream(file);
    int number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        if (line.empty() || line[0] == '#') continue;
        const std::string rest = line.size() > 2 ? line.substr(2) : "";
        if (line[0] == '$') {
            runs.push_back({.line = number, .words = rest, .input = {}, .output = {}, .errors = {}});
            continue;
        }
        if (runs.empty()) throw std::runtime_error(file.string() + ": a line before the first run");
        switch (line[0]) {
            case '<':
                runs.back().input += rest + "\n";
                break;
            case '>':
                runs.back().output += rest + "\n";
                break;
            case '!':
                runs.back().errors += rest + "\n";
                break;
            case '=':
                runs.back().status = std::stoi(rest);
                break;
            default:
                throw std::runtime_error(file.string() + ": a line of no kind: " + line);
        }
    }
    return runs;
}

std::vector<fs::path> cases() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(fs::path(BASALT_SOURCE_DIR) / "tests/cli/cases")) {
        if (entry.path().extension() == ".case") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

class Program : public ::testing::TestWithParam<fs::path> {
protected:
    Program() : folder_(fs::temp_directory_path() / ("basalt-case-" + std::to_string(getpid()))) {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        fs::permissions(folder_, fs::perms::owner_all);  // as a run-time folder has to be
    }
    ~Program() override { fs::remove_all(folder_); }

    fs::path folder_;
};

TEST_P(Program, runsAsTheCaseSays) {
    const std::vector<ProgramRun> runs = runsOf(GetParam());
    ASSERT_FALSE(runs.empty());
    for (const ProgramRun& run : runs) {
        SCOPED_TRACE(GetParam().filename().string() + ":" + std::to_string(run.line) + ": basalt " + run.words);
        write(folder_ / "in", run.input);
        // In a group, so that words may go on with commands that look at what the program has left.
        const std::string at = folder_.string();
        const std::string command = "cd '" + at + "' && export XDG_DATA_HOME='" + at + "/data' XDG_RUNTIME_DIR='" + at +
                                    "' BASALT='" BASALT_PROGRAM
                                    "' DISPLAY= WAYLAND_DISPLAY= QT_QPA_PLATFORM= && ( '" BASALT_PROGRAM "' " +
                                    run.words + " ) <in >out 2>err";
        const int status = std::system(command.c_str());
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(read(folder_ / "out"), run.output);
        EXPECT_EQ(read(folder_ / "err"), run.errors);
        EXPECT_EQ(WEXITSTATUS(status), run.status);
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, Program, ::testing::ValuesIn(cases()), [](const auto& test) {
    return std::regex_replace(test.param.stem().string(), std::regex("[^A-Za-z0-9]"), "_");
});

}  // namespace
