// basalt batch: a call in JSON on each line of the standard input, its reply on a line of the standard output.
#include <iostream>
#include <memory>
#include <set>
#include <stdexcept>

#include "ado/error.h"
#include "cli/commands.h"
#include "cli/workspace.h"
#include "host/calls/function_caller.h"

namespace basalt::cli {

namespace {

struct BatchCall {
    std::string function;
    host::CallArguments arguments;
    std::vector<host::Answer> answers;
};

host::Answer parseAnswer(const Datum& word) {
    const std::optional<host::Answer> answer = host::Answer::parse(word.asText());
    if (!answer) throw UsageError("an answer is yes, no, cancel, ok or a number, not " + word.toJson());
    return *answer;
}

// {"call":NAME,"args":{...} or [...],"answers":[...]}
// After a failure the call has what was read before it.
void parseCall(const std::string& line, BatchCall& call) {
    const Datum request = Datum::parseJson(line);
    if (!request.isRecord()) throw UsageError("a call is an object like {\"call\":NAME,\"args\":{},\"answers\":[]}");
    std::set<std::string> seen;
    for (const auto& [key, value] : request.asRecord()) {
        if (!seen.insert(key).second) throw UsageError("the call has \"" + key + "\" more than once");
        if (key == "call" && value.isText()) {
            call.function = value.asText();
        } else if (key == "args" && value.isRecord()) {
            call.arguments.named = value.asRecord();
        } else if (key == "args" && value.isList()) {
            call.arguments.positional = value.asList();
        } else if (key == "answers" && value.isList()) {
            for (const Datum& word : value.asList())
                call.answers.push_back(parseAnswer(word));
        } else {
            throw UsageError(
                "a call has \"call\" with a name, \"args\" with an object or a list, and \"answers\" with a list; \"" +
                key + "\": " + value.toJson() + " is none of them");
        }
    }
    if (call.function.empty()) throw UsageError("the call names no function: \"call\" is missing");
}

host::CallReport answer(host::FunctionCaller& caller, const std::string& line) {
    BatchCall call;
    try {
        parseCall(line, call);
        return caller.call(call.function, call.arguments, call.answers);
    } catch (const std::exception& error) {
        host::CallReport report;
        report.function = call.function;
        report.error = host::describeError(error);
        return report;
    }
}

// False when a call failed. runtime_error at the first reply that is lost: nobody would know what the lines behind it
// have done.
bool answerAll(Workspace& workspace) {
    host::FunctionCaller caller(workspace.module().registry(), workspace.host());
    bool well = true;
    int number = 0;
    for (std::string line; std::getline(std::cin, line);) {
        ++number;
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        const host::CallReport report = answer(caller, line);
        well = well && !report.error;
        if (!(std::cout << host::toDatum(report).toJson() << std::endl))
            throw std::runtime_error("the output cannot be written; the lines behind line " + std::to_string(number) +
                                     " are not called");
    }
    return well;
}

int run(const CommonOptions& common) {
    Workspace workspace(common);
    // What failed is in the replies; the batch itself has gone through.
    if (answerAll(workspace)) workspace.finish();
    return 0;
}

}  // namespace

void addBatchCommand(Program& program) {
    (void)program.command(program.app, "batch", "calls functions given in JSON, one a line, and replies likewise",
                          [&common = program.options] { return run(common); });
}

}  // namespace basalt::cli
