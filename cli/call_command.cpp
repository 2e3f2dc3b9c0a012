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

host::CallReport call(Workspace& workspace, const std::string& function, const std::vector<std::string>& words,
                      const std::vector<host::Answer>& answers) {
    const Registry& registry = workspace.module().registry();
    host::FunctionCaller caller(registry, workspace.host());
    return caller.call(function, host::argumentsFromWords(registry, function, words), answers);
}

int run(const CommonOptions& common, const CallOptions& options) {
    const std::vector<host::Answer> answers = parseAnswers(options.answers);
    Workspace workspace(common);
    std::vector<std::string> words = options.arguments;
    words.insert(words.end(), common.moreArguments.begin(), common.moreArguments.end());
    const host::CallReport report = call(workspace, options.function, words, answers);
    if (options.json || (!options.text && !outputIsTerminal())) {
        std::cout << host::toDatum(report).toJson() << std::endl;
    } else if (report.started) {
        writeReport(std::cout, report, outputIsTerminal());
        std::cout.flush();
    }
    if (!report.error) {
        workspace.finish();
        return 0;
    }
    std::cerr << "basalt: " << report.error->message << '\n';
    return report.started ? 1 : 2;
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
        ->type_name("ANSWER")
        ->expected(1, -1)
        ->take_all();
    CLI::Option* json =
        command.add_flag("--json", options->json, "the reply as one line of JSON, as into a file or pipe");
    command.add_flag("--text", options->text, "the reply in words, as on a terminal")->excludes(json);
}

}  // namespace basalt::cli
