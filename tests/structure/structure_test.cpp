// The rules of the house that a compiler does not check: who may include whom, what the module exports, what the data
// functions link, and that documents name paths that exist.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

const fs::path root = BASALT_SOURCE_DIR;

std::string read(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

bool startsWith(const std::string& text, const std::string& prefix) {
    return text.rfind(prefix, 0) == 0;
}

std::vector<fs::path> sourcesUnder(const std::string& folder) {
    std::vector<fs::path> files;
    if (!fs::exists(root / folder)) return files;
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
        const auto extension = entry.path().extension();
        if (extension == ".h" || extension == ".cpp") files.push_back(entry.path());
    }
    return files;
}

std::vector<std::string> matches(const std::string& text, const std::regex& pattern) {
    std::vector<std::string> found;
    for (std::sregex_iterator it(text.begin(), text.end(), pattern), end; it != end; ++it)
        found.push_back((*it)[1].str());
    return found;
}

std::string output(const std::string& command) {
    std::string text;
    FILE* pipe = popen(command.c_str(), "r");
    EXPECT_NE(pipe, nullptr) << command;
    if (!pipe) return text;
    std::array<char, 4096> buffer{};
    while (std::size_t n = fread(buffer.data(), 1, buffer.size(), pipe))
        text.append(buffer.data(), n);
    EXPECT_EQ(pclose(pipe), 0) << command;
    return text;
}

struct FolderRule {
    std::string folder;
    std::vector<std::string> mayInclude;  // prefixes of project includes
};

const std::vector<FolderRule> rules = {
    {"ado", {"ado/"}},
    {"package", {"ado/", "package/"}},
    {"costlevel", {"ado/", "package/", "costlevel/"}},
    {"goods", {"ado/", "package/", "goods/"}},
    {"engines/embedded", {"ado/", "engines/embedded/"}},
    {"engines/odbc", {"ado/", "engines/odbc/"}},
    {"host", {"ado/", "package/", "engines/", "database/", "host/", "costlevel/", "goods/"}},
    {"cli", {"ado/", "package/", "engines/", "database/", "host/", "cli/", "costlevel/", "goods/"}},
};

// The composition of the module: the only files below the subsystems that may know them all.
bool bringsSubsystemsTogether(const fs::path& file) {
    const std::string path = fs::relative(file, root).generic_string();
    return path == "package/module.cpp" || path == "package/basalt_interface_unt.cpp";
}

const std::vector<std::string> subsystems = {"costlevel/", "goods/"};

class FolderRules : public ::testing::TestWithParam<FolderRule> {};

TEST_P(FolderRules, includesPointDownwardOnly) {
    static const std::regex include("#include \"([^\"]+)\"");
    for (const auto& file : sourcesUnder(GetParam().folder)) {
        for (const auto& name : matches(read(file), include)) {
            const auto begins = [&](const auto& prefix) { return startsWith(name, prefix); };
            const auto& may = GetParam().mayInclude;
            const bool allowed =
                std::any_of(may.begin(), may.end(), begins) ||
                (bringsSubsystemsTogether(file) && std::any_of(subsystems.begin(), subsystems.end(), begins));
            EXPECT_TRUE(allowed) << fs::relative(file, root) << " includes " << name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(House, FolderRules, ::testing::ValuesIn(rules),
                         [](const auto& rule) { return std::regex_replace(rule.param.folder, std::regex("/"), "_"); });

// Screens are the only files of the module that may know Qt.
bool mayUseQt(const fs::path& file) {
    const std::string path = fs::relative(file, root).generic_string();
    if (startsWith(path, "ado/") || startsWith(path, "engines/") || startsWith(path, "host/services/")) return false;
    if (startsWith(path, "package/"))
        return startsWith(path, "package/screens/") || startsWith(path, "package/basalt_interface_unt");
    const std::string stem = file.stem().string();
    return stem.find("_dm") == std::string::npos && stem.find("_unt") == std::string::npos;
}

TEST(House, qtStaysInScreens) {
    static const std::regex include("#include <(Q[A-Za-z/]*)>");
    for (const char* folder : {"ado", "package", "costlevel", "goods", "engines", "host"}) {
        for (const auto& file : sourcesUnder(folder)) {
            if (mayUseQt(file)) continue;
            EXPECT_THAT(matches(read(file), include), ::testing::IsEmpty()) << fs::relative(file, root);
        }
    }
}

// Files that are built for one operating system.
bool isOfOneSystem(const fs::path& file) {
    static const std::regex name(".*_(linux|posix|windows)\\.cpp");
    return std::regex_match(file.filename().string(), name);
}

TEST(House, theHostKnowsItsSystemsByFiles) {
    static const std::regex condition("(_WIN32|__linux__|__unix__|__APPLE__)");
    // The narrow text of a path is not UTF-8 on every system; textFromPath() is.
    static const std::regex narrow("(\\.string\\(\\))");
    for (const char* folder : {"host", "cli"}) {
        for (const auto& file : sourcesUnder(folder)) {
            if (isOfOneSystem(file)) continue;
            EXPECT_THAT(matches(read(file), condition), ::testing::IsEmpty()) << fs::relative(file, root);
            EXPECT_THAT(matches(read(file), narrow), ::testing::IsEmpty()) << fs::relative(file, root);
        }
    }
}

TEST(House, onlyTheEmbeddedEngineKnowsSqlite) {
    for (const char* folder : {"ado", "package", "costlevel", "goods", "host", "cli"}) {
        for (const auto& file : sourcesUnder(folder)) {
            EXPECT_EQ(read(file).find("sqlite3.h"), std::string::npos) << fs::relative(file, root);
        }
    }
}

TEST(House, dataFunctionsLinkNeitherQtNorAnEngine) {
    const std::string needed = output(std::string("readelf -d ") + BASALT_DATA_CLOSURE_FILE + " | grep NEEDED");
    EXPECT_THAT(needed, ::testing::HasSubstr("libstdc++"));
    for (const char* library : {"libQt6", "libsqlite3", "libodbc"}) {
        EXPECT_THAT(needed, ::testing::Not(::testing::HasSubstr(library)));
    }
}

TEST(House, moduleExportsExactlyTheCheckedInSymbols) {
    std::set<std::string> expected;
    std::istringstream list(read(root / "package/exports.txt"));
    for (std::string line; std::getline(list, line);) {
        if (!line.empty() && line[0] != '#') expected.insert(line);
    }
    ASSERT_FALSE(expected.empty());
    std::set<std::string> exported;
    std::istringstream symbols(output(std::string("nm -D --defined-only ") + BASALT_MODULE_FILE));
    for (std::string address, kind, name; symbols >> address >> kind >> name;)
        exported.insert(name);
    EXPECT_EQ(exported, expected);
}

std::vector<fs::path> documents() {
    std::vector<fs::path> files;
    for (fs::recursive_directory_iterator it(root), end; it != end; ++it) {
        const std::string name = it->path().filename().string();
        if (it->is_directory() && (name == "build" || name == ".git" || name == "tour")) {
            it.disable_recursion_pending();
        } else if (it->path().extension() == ".md") {
            files.push_back(it->path());
        }
    }
    return files;
}

// A path is anything in backquotes or a link that has a slash between plain names; commands and placeholders are not.
TEST(House, documentsNamePathsThatExist) {
    static const std::regex quoted("`([A-Za-z0-9_.-]+(?:/[A-Za-z0-9_.-]*)+)`");
    static const std::regex linked("\\]\\(([A-Za-z0-9_./-]+)\\)");
    const auto files = documents();
    ASSERT_FALSE(files.empty());
    for (const auto& file : files) {
        const std::string text = read(file);
        std::vector<std::string> paths = matches(text, quoted);
        const auto links = matches(text, linked);
        paths.insert(paths.end(), links.begin(), links.end());
        for (const auto& path : paths) {
            if (startsWith(path, "build/")) continue;  // made by a build
            EXPECT_TRUE(fs::exists(root / path) || fs::exists(file.parent_path() / path))
                << fs::relative(file, root) << " names " << path;
        }
    }
}

TEST(House, everyFolderSaysWhatLivesThere) {
    for (const char* folder :
         {"ado", "package", "costlevel", "goods", "engines/embedded", "host", "cli", "database", "tests", "bench"}) {
        EXPECT_TRUE(fs::exists(root / folder / "README.md")) << folder;
    }
}

}  // namespace
