// Fits the arguments of a caller to one of the overloads of a function.
//
//   CallArguments given{.named = {{"GoodCode", 5}}};
//   BoundCall bound = bindArguments(registry, "GetGoodUnits", given);
//   bound.entry->run(...bound.arguments...)
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "package/registry.h"

namespace basalt::host {

// By name, by position, or both: positions fill the inputs that are not named, in their order, or all parameters that
// are not named when there are so many. An output need not be given; one that is given chooses the overload that has
// it.
struct CallArguments {
    std::vector<std::pair<std::string, Datum>> named;
    std::vector<Datum> positional;
};

using BoundArguments = std::map<std::string, Datum, std::less<>>;

// An argument that is not there, or cannot be read as what its parameter is.
class ArgumentError : public UsageError {
public:
    enum class Kind { Missing, Unreadable };
    ArgumentError(Kind kind, std::string parameter, const std::string& message)
        : UsageError(message), kind_(kind), parameter_(std::move(parameter)) {}

    [[nodiscard]] Kind kind() const noexcept { return kind_; }
    [[nodiscard]] const std::string& parameter() const noexcept { return parameter_; }

private:
    Kind kind_;
    std::string parameter_;
};

struct BoundCall {
    const FunctionEntry* entry = nullptr;
    BoundArguments arguments;  // by the registered names of the parameters
};

// The first overload that takes the arguments. Texts are read as what the parameter is: records and lists from JSON.
// UsageError when there is no such function (with names that are near), or when no overload takes the arguments (with
// what is wrong, or with all the overloads).
[[nodiscard]] BoundCall bindArguments(const Registry& registry, std::string_view function, const CallArguments& given);
// The same for one list of parameters; `name` is for errors. ArgumentError when it is one argument that is wrong.
[[nodiscard]] BoundArguments bindArguments(const std::vector<FunctionParameter>& parameters, const std::string& name,
                                           const CallArguments& given);

// Takes VALUE and NAME=VALUE apart. NAME counts only when it is the name of a parameter of `function`; otherwise the
// whole word is a value.
[[nodiscard]] CallArguments argumentsFromWords(const Registry& registry, std::string_view function,
                                               const std::vector<std::string>& words);
[[nodiscard]] CallArguments argumentsFromWords(const std::vector<FunctionParameter>& parameters,
                                               const std::vector<std::string>& words);

// The registered names that a mistyped one may have meant, the nearest first; at most five.
[[nodiscard]] std::vector<std::string> nearNames(const Registry& registry, std::string_view name);
// "CostLevel_GetNewCode(Part: integer, CostType: integer): integer"
[[nodiscard]] std::string signature(const FunctionEntry& entry);

}  // namespace basalt::host
