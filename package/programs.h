// Other programs of the workstation, as the module reaches them: started with a command line, or called into as a
// library. The host does both, so that a test can stand in for them.
//
//   const StartResult result = Programs().start({.verb = "open", .file = "ScaleAgentApp.exe", .parameters = "28"});
//   if (!result.started) ...
//   if (const auto library = Programs().load("ScaleAgent.dll")) ... library->find("GoodInfo_Register");
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace basalt {

// A program to start, in the words of the Windows shell.
struct ProgramStart {
    std::string verb;
    std::string file;
    std::string parameters;      // one text; the started program takes it apart
    std::string directory = {};  // empty: the host's own
    int show = 0;                // 0: without a window
};

// What became of a start.
struct StartResult {
    bool started = false;
    // When there is no such program: the folders in which it was looked for, in that order.
    std::vector<std::string> searched = {};
    // When there is one that does not start: its path and the words of the operating system.
    std::string reason = {};
};

// A loaded library; destroying it frees the library.
class ProgramLibrary {
public:
    virtual ~ProgramLibrary() = default;
    // The address of an exported function; null when the library has none of that name.
    [[nodiscard]] virtual void* find(const std::string& function) = 0;
};

class ProgramService {
public:
    virtual ~ProgramService() = default;
    // Starts the program and does not wait for it. What the program then does is not known here.
    [[nodiscard]] virtual StartResult start(const ProgramStart& program) = 0;
    // Null when there is no such library or it cannot be loaded.
    [[nodiscard]] virtual std::unique_ptr<ProgramLibrary> load(const std::string& name) = 0;
};

}  // namespace basalt
