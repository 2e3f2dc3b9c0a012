#include "host/counter/module_calls.h"

#include <algorithm>

#include "ado/error.h"
#include "ado/names.h"

namespace basalt::host {

namespace {

using Inputs = std::map<std::string, Datum, std::less<>>;

bool takes(const std::vector<FunctionParameter>& parameters, const Inputs& inputs) {
    const auto wanted = std::count_if(parameters.begin(), parameters.end(), [](const auto& p) { return p.input; });
    return static_cast<std::size_t>(wanted) == inputs.size() &&
           std::all_of(parameters.begin(), parameters.end(),
                       [&](const auto& p) { return !p.input || inputs.find(p.name) != inputs.end(); });
}

}  // namespace

const Datum& ModuleReply::operator[](std::string_view name) const {
    static const Datum none;
    const auto found =
        std::find_if(out.begin(), out.end(), [&](const auto& each) { return sameName(each.first, name); });
    return found == out.end() ? none : found->second;
}

ModuleReply ModuleCalls::operator()(std::string_view name, Inputs inputs) {
    const std::function<void(FunctionCall&)>* run = nullptr;
    for (const FunctionEntry* entry : registry_.find(name)) {
        if (run == nullptr && takes(entry->parameters, inputs)) run = &entry->run;
    }
    const EntryPoint* screen = registry_.findEntryPoint(name);
    if (run == nullptr && screen != nullptr && takes(screen->parameters, inputs)) run = &screen->run;
    if (run == nullptr) throw UsageError("the module has no " + std::string(name) + " that takes these arguments");
    FunctionCall call(state_, std::move(inputs));
    (*run)(call);
    return {call.resultValue(), call.outputs()};
}

TADOQuery& ModuleCalls::query(std::string_view name) const {
    for (const TDataModule* module : state_.modules()) {
        for (TADOQuery* query : module->queries()) {
            if (sameName(query->Name(), name)) return *query;
        }
    }
    throw UsageError("no function has opened a query " + std::string(name));
}

}  // namespace basalt::host
