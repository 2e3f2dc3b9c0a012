#include "host/calls/function_caller.h"

#include <algorithm>

#include "ado/names.h"
#include "host/calls/answer_queue.h"

namespace basalt::host {

namespace {

// What went in as text is told as what it means: a number as a number.
Datum asItsType(const FunctionParameter& parameter, const Datum& given) {
    try {
        if (given.isNull()) return given;
        if (parameter.type == "integer" || parameter.type == "byte") return given.asInteger();
        if (parameter.type == "amount") return given.asAmount();
        if (parameter.type == "flag") return given.asBool();
    } catch (const std::exception&) {
        // As it was given: it is this that the call failed for.
    }
    return given;
}

// What the output parameters hold: what the call has set, else what went in, else nothing.
Datum::Fields outputsOf(const std::vector<FunctionParameter>& parameters, const FunctionCall& call,
                        const BoundArguments& arguments) {
    Datum::Fields outputs;
    for (const FunctionParameter& parameter : parameters) {
        if (!parameter.output) continue;
        const auto set = std::find_if(call.outputs().begin(), call.outputs().end(),
                                      [&](const auto& output) { return sameName(output.first, parameter.name); });
        const auto given = arguments.find(parameter.name);
        outputs.emplace_back(parameter.name, set != call.outputs().end() ? set->second
                                             : given != arguments.end()  ? asItsType(parameter, given->second)
                                                                         : Datum());
    }
    return outputs;
}

}  // namespace

CallReport FunctionCaller::call(std::string_view function, const CallArguments& given,
                                const std::vector<Answer>& answers) {
    BoundCall bound;
    try {
        bound = bindArguments(registry_, function, given);
    } catch (const std::exception& error) {
        CallReport report;
        report.function = function;
        report.error = describeError(error);
        return report;
    }
    AnswerQueue queue(answers);
    CallReport report = call(bound, queue);
    if (!report.error) {
        try {
            queue.requireEmpty();
        } catch (const std::exception& error) {
            report.error = describeError(error);
        }
    }
    return report;
}

CallReport FunctionCaller::call(const BoundCall& bound, MessageService& messages) {
    return run(bound.entry->name, bound.entry->parameters, bound.entry->run, bound.arguments, messages);
}

CallReport FunctionCaller::show(const EntryPoint& entry, const BoundArguments& arguments, MessageService& messages) {
    return run(entry.name, entry.parameters, entry.run, arguments, messages);
}

CallReport FunctionCaller::run(const std::string& name, const std::vector<FunctionParameter>& parameters,
                               const std::function<void(FunctionCall&)>& function, const BoundArguments& arguments,
                               MessageService& messages) {
    FunctionCall call(state_, arguments);
    std::optional<CallError> error;
    recorder_.begin(messages);
    try {
        function(call);
    } catch (const std::exception& failure) {
        error = describeError(failure);
    }
    CallReport report = recorder_.end();
    report.function = name;
    report.result = call.resultValue();
    report.out = outputsOf(parameters, call, arguments);
    report.error = std::move(error);
    report.started = true;
    return report;
}

}  // namespace basalt::host
