// Calls the module's functions by name, for the host's own screens.
//
//   ModuleCalls calls(registry);
//   const ModuleReply reply = calls("GetBarcode_Code", {{"Code", "7"}, {"ByAbbName", true}, {"ShowMessage", false}});
//   reply.result.asInteger()
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "package/registry.h"

namespace basalt::host {

struct ModuleReply {
    Datum result;
    Datum::Fields out;

    // An output; null when the call did not set it.
    [[nodiscard]] const Datum& operator[](std::string_view name) const;
};

class ModuleCalls {
public:
    explicit ModuleCalls(const Registry& registry) : registry_(registry) {}

    // The overload or entry point that takes exactly these inputs; UsageError when there is none. What the function
    // raises passes on.
    ModuleReply operator()(std::string_view name, std::map<std::string, Datum, std::less<>> inputs);

    // A query that one of the functions called so far keeps for its caller; UsageError when there is none of that name.
    [[nodiscard]] TADOQuery& query(std::string_view name) const;

private:
    const Registry& registry_;
    FunctionState state_;
};

}  // namespace basalt::host
