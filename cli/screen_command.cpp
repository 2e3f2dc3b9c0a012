// basalt screen ENTRY [ARG ...] [--steps FILE]: an entry point on the screen, by hand or played from a script.
#include <QApplication>
#include <fstream>
#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/host_screens.h"
#include "cli/workspace.h"
#include "cli/wrong_usage.h"
#include "host/calls/function_caller.h"
#include "host/screens/qt_message_service.h"
#include "host/screens/quiet_display.h"
#include "host/screens/screen_services_impl.h"
#include "host/services/path_text.h"
#include "host/services/platform/display.h"
#include "host/steps/step_player.h"
#include "host/steps/steps_error.h"
#include "host/steps/steps_file.h"

namespace basalt::cli {

namespace {

struct ScreenOptions {
    std::string entry;
    std::vector<std::string> arguments;
    std::string steps;
};

std::string readFile(const std::string& name) {
    std::ifstream stream(host::pathFromText(name), std::ios::binary);
    if (!stream) throw WrongUsage("the file " + name + " cannot be read");
    // A folder opens like a file and fails only when it is read.
    std::string text;
    for (char block[4096]; stream.read(block, sizeof block), stream.gcount() > 0;)
        text.append(block, static_cast<std::size_t>(stream.gcount()));
    if (stream.bad()) throw WrongUsage("the file " + name + " cannot be read");
    return text;
}

std::vector<host::Step> readSteps(const std::string& name) {
    try {
        return host::parseSteps(readFile(name), name);
    } catch (const host::StepsError& error) {
        throw WrongUsage(error.what());
    }
}

// The module's screens and the host's own.
Registry screensOf(const Module& module, std::vector<EntryPoint> own) {
    Registry screens;
    for (const EntryPoint& entry : module.registry().entryPoints())
        screens.add(entry);
    for (EntryPoint& entry : own)
        screens.add(std::move(entry));
    return screens;
}

const EntryPoint& findEntry(const Registry& registry, const std::string& name) {
    if (const EntryPoint* entry = registry.findEntryPoint(name)) return *entry;
    std::string message = "there is no screen " + name + "; there are:";
    for (const EntryPoint& entry : registry.entryPoints())
        message += "\n  " + entry.name;
    throw WrongUsage(message);
}

host::BoundArguments bindWords(const EntryPoint& entry, const std::vector<std::string>& words) {
    try {
        return host::bindArguments(entry.parameters, entry.name, host::argumentsFromWords(entry.parameters, words));
    } catch (const UsageError& error) {
        throw WrongUsage(error.what());
    }
}

// Qt reads its own options from the arguments; those of this program are not for it.
class Application {
public:
    Application() : application_(count_, arguments_) {}

private:
    host::QuietDisplay quiet_{"basalt"};
    char name_[7] = "basalt";
    char* arguments_[2] = {name_, nullptr};
    int count_ = 1;
    QApplication application_;
};

void requireDisplay(bool played) {
    std::string problem = host::displayProblem(host::platformPlugins());
    if (!problem.empty() && played) {
        host::useOffscreenDisplay();
        problem = host::displayProblem(host::platformPlugins());
    }
    const char* otherWay = played ? "" : "; --steps FILE plays a screen without one";
    if (!problem.empty()) throw std::runtime_error(problem + otherWay);
}

int report(const host::CallReport& report, const std::optional<std::string>& failure) {
    std::cout << host::toDatum(report).toJson() << std::endl;
    if (failure) std::cerr << *failure << '\n';
    if (report.error) std::cerr << "basalt: " << report.error->message << '\n';
    return failure || report.error ? 1 : 0;
}

int play(Workspace& workspace, const EntryPoint& entry, const host::BoundArguments& arguments,
         std::vector<host::Step> steps, const std::string& file) {
    host::FunctionCaller caller(workspace.module().registry(), workspace.host());
    host::StepPlayer player(std::move(steps), file);
    // Steps may ask for statements after the call has returned and its report has been taken.
    std::optional<host::CallReport> done;
    player.setStatements(
        [&]() -> const std::vector<SentStatement>& { return done ? done->statements : caller.statements(); });
    player.start();
    done = caller.show(entry, arguments, player.messages());
    player.returned(done->result);
    player.finish();
    return report(*done, player.failure());
}

int showByHand(Workspace& workspace, const EntryPoint& entry, const host::BoundArguments& arguments) {
    host::FunctionCaller caller(workspace.module().registry(), workspace.host());
    host::QtMessageService messages(workspace.host().catalogue());
    return report(caller.show(entry, arguments, messages), std::nullopt);
}

int openScreen(Workspace& workspace, const ScreenOptions& options, const host::BoundArguments& arguments,
               std::vector<host::Step> steps) {
    host::HostScreenServices screens(workspace.host());
    workspace.host().setScreens(&screens);
    const Module& module = workspace.module();
    const Registry known = screensOf(module, hostScreens(workspace.host(), module.registry(), screens));
    const EntryPoint& entry = findEntry(known, options.entry);
    if (options.steps.empty()) return showByHand(workspace, entry, arguments);
    return play(workspace, entry, arguments, std::move(steps), options.steps);
}

int run(const CommonOptions& common, const ScreenOptions& options) {
    const bool played = !options.steps.empty();
    std::vector<std::string> words = options.arguments;
    words.insert(words.end(), common.moreArguments.begin(), common.moreArguments.end());
    // What is wrong with the command line is told before anything that is missing on this computer.
    const Registry known = screensOf(host::loadModule(), hostScreens());
    const host::BoundArguments arguments = bindWords(findEntry(known, options.entry), words);
    std::vector<host::Step> steps;
    if (played) steps = readSteps(options.steps);
    requireDisplay(played);
    Application application;
    Workspace workspace(common);
    const int status = openScreen(workspace, options, arguments, std::move(steps));
    if (status == 0) workspace.finish();
    return status;
}

}  // namespace

void addScreenCommand(Program& program) {
    const auto options = std::make_shared<ScreenOptions>();
    CLI::App& command = program.command(program.app, "screen", "opens a screen and tells in JSON what was done on it",
                                        [&common = program.options, options] { return run(common, *options); });
    command.add_option("ENTRY", options->entry, "the entry point, as in: basalt functions")->required();
    command.add_option("ARGUMENT", options->arguments, "VALUE in the order of the inputs, or NAME=VALUE");
    command.add_option("--steps", options->steps, "play the steps of a file instead of waiting for a person")
        ->type_name("FILE");
}

}  // namespace basalt::cli
