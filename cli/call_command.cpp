// basalt call NAME [VALUE ...|NAME=VALUE ...] [--json|--text]: one function, and all that it did, in one line of JSON
// for programs or in words for people. Without a flag, what reads the output decides: a terminal is read by people.
#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/report_writer.h"
#include "cli/terminal.h"
#include "cli/workspace.h"
#include "cli/wrong_usage.h"
#include "host/calls/function_caller.h"

namespace basalt::cli {

namespace {

struct CallOptions {
    std::string function;
    std::vector<std::string> arguments;
    std::vector<std::string> answers;
    bool json = false;
    bool text = false;
};

std::vector<host::Answer> parseAnswers(const std::vector<std::string>& words) {
    std::vector<host::Answer> answers;
    for (const std::string& word : words) {
        const std::optional<host::Answer> answer = host::Answer::parse(word);
        if (!answer) throw WrongUsage("an answer is yes, no, cancel, ok or a number, not \"" + word + "\"");
        answers.push_back(*answer);
    }
    return answers;
}

// Why the call cannot be made, before anything is touched for it: an older recording gives way to that of a call only.
std::optional<host::CallReport> refusalOf(const std::string& function, const host::CallArguments& arguments) {
    try {
        (void)host::bindArguments(host::loadModule().registry(), function, arguments);
        return std::nullopt;
    } catch (const std::exception& error) {
        host::CallReport report;
        report.function = function;
        report.error = host::describeError(error);
        return report;
    }
}

void write(const host::CallReport& report, const CallOptions& options) {
    if (options.json || (!options.text && !outputIsTerminal())) {
        std::cout << host::toDatum(report).toJson() << std::endl;
    } else if (report.started) {
        writeReport(std::cout, report, outputIsTerminal());
        std::cout.flush();
    }
    if (report.error) std::cerr << "basalt: " << report.error->message << '\n';
}

int run(const CommonOptions& common, const CallOptions& options) {
    const std::vector<host::Answer> answers = parseAnswers(options.answers);
    std::vector<std::string> words = options.arguments;
    words.insert(words.end(), common.moreArguments.begin(), common.moreArguments.end());
    const host::CallArguments arguments =
        host::argumentsFromWords(host::loadModule().registry(), options.function, words);
    if (const std::optional<host::CallReport> refusal = refusalOf(options.function, arguments)) {
        write(*refusal, options);
        return 2;
    }
    Workspace workspace(common);
    // The caller watches the host, which finish lets go of, and is gone by then.
    const host::CallReport report = host::FunctionCaller(workspace.module().registry(), workspace.host())
                                        .call(options.function, arguments, answers);
    write(report, options);
    if (report.error) return 1;
    workspace.finish();
    return 0;
}

}  // namespace

void addCallCommand(Program& program) {
    const auto options = std::make_shared<CallOptions>();
    CLI::App& command = program.command(program.app, "call", "calls a function and tells what it did",
                                        [&common = program.options, options] { return run(common, *options); });
    command.add_option("FUNCTION", options->function, "its name, as in: basalt functions")->required();
    command.add_option("ARGUMENT", options->arguments,
                       "VALUE in the order of the inputs, or NAME=VALUE; records as JSON");
    command
        .add_option("--answer", options->answers, "answers to its questions in order: yes, no, cancel, ok or a number")
        ->type_name("ANSWER ...")
        ->expected(1)
        ->allow_extra_args(false)
        ->take_all();
    CLI::Option* json =
        command.add_flag("--json", options->json, "the reply as one line of JSON, as into a file or pipe");
    command.add_flag("--text", options->text, "the reply in words, as on a terminal")->excludes(json);
}

}  // namespace basalt::cli
