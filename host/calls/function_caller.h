// Calls functions by name and tells all that they did. Stores live from call to call, as in a host's document screen.
//
//   FunctionCaller caller(module.registry(), host);
//   CallReport report = caller.call("GetGoodUnits", {.positional = {5}}, {});
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "host/calls/answer.h"
#include "host/calls/arguments.h"
#include "host/calls/call_recorder.h"

namespace basalt::host {

class FunctionCaller {
public:
    FunctionCaller(const Registry& registry, ReferenceHost& host) : registry_(registry), recorder_(host) {}

    // Never throws for what the call does: a failure is the report's error, and so is a question without an answer or
    // an answer that no question took.
    [[nodiscard]] CallReport call(std::string_view function, const CallArguments& given,
                                  const std::vector<Answer>& answers);
    // The same with messages that a person or a script answers.
    [[nodiscard]] CallReport call(const BoundCall& bound, MessageService& messages);
    // Shows an entry point's screen and returns when it is closed.
    [[nodiscard]] CallReport show(const EntryPoint& entry, const BoundArguments& arguments, MessageService& messages);

    // The statements of the call that is running.
    [[nodiscard]] const std::vector<SentStatement>& statements() const { return recorder_.statements(); }

private:
    [[nodiscard]] CallReport run(const std::string& name, const std::vector<FunctionParameter>& parameters,
                                 const std::function<void(FunctionCall&)>& function, const BoundArguments& arguments,
                                 MessageService& messages);

    const Registry& registry_;
    CallRecorder recorder_;
    FunctionState state_;
};

}  // namespace basalt::host
