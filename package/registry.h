// The list of everything that the module exports: data functions, store operations and entry points.
//
// Each subsystem folder registers what it exports in one function (costlevel/registration.h). The command line, the
// function console and docs/functions.md read the registry; they know no function by name.
//
//   registry.add({.name = "CostLevel_GetNewCode", .subsystem = "costlevel",
//                 .summary = "The next free code of a kind of level.",
//                 .parameters = {in("Part", "integer"), in("CostType", "integer")}, .result = "integer",
//                 .run = [](FunctionCall& call) {
//                     call.result(call.store<TCostLevel_DM>().CostLevel_GetNewCode(call.integer("Part"),
//                     call.integer("CostType")));
//                 }});
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <typeindex>
#include <vector>

#include "package/data_module.h"
#include "package/datum.h"
#include "package/types.h"

namespace basalt {

struct FunctionParameter {
    std::string name;
    std::string type;  // "integer", "byte", "amount", "text", "flag", "record", "list", "event"
    bool input = true;
    bool output = false;
    std::vector<FunctionParameter> fields = {};  // of a record that goes in; none: whatever is given passes
};
[[nodiscard]] inline FunctionParameter in(std::string name, std::string type) {
    return {std::move(name), std::move(type), true, false};
}
// A record with those fields; others are refused by name.
[[nodiscard]] inline FunctionParameter inRecord(std::string name, std::vector<FunctionParameter> fields) {
    return {std::move(name), "record", true, false, std::move(fields)};
}
[[nodiscard]] inline FunctionParameter out(std::string name, std::string type) {
    return {std::move(name), std::move(type), false, true};
}
[[nodiscard]] inline FunctionParameter inOut(std::string name, std::string type) {
    return {std::move(name), std::move(type), true, true};
}

// Stores that live from call to call, as they would in a host's document screen.
class FunctionState {
public:
    template <class Store>
    [[nodiscard]] Store& store() {
        auto& slot = stores_[std::type_index(typeid(Store))];
        if (!slot) {
            auto made = std::make_shared<Store>();
            modules_.push_back(made.get());
            slot = std::move(made);
        }
        return *static_cast<Store*>(slot.get());
    }
    // The stores made so far, in the order of their making.
    [[nodiscard]] const std::vector<TDataModule*>& modules() const { return modules_; }

private:
    std::map<std::type_index, std::shared_ptr<void>> stores_;
    std::vector<TDataModule*> modules_;
};

// One call: arguments by parameter name, and where result and outputs go.
class FunctionCall {
public:
    FunctionCall(FunctionState& state, std::map<std::string, Datum, std::less<>> arguments)
        : state_(state), arguments_(std::move(arguments)) {}

    // UsageError naming the argument when it is missing or cannot be read so, or out of the range of a 32-bit integer.
    [[nodiscard]] int integer(std::string_view name) const;
    [[nodiscard]] Extended amount(std::string_view name) const;
    [[nodiscard]] std::string text(std::string_view name) const;
    [[nodiscard]] bool flag(std::string_view name) const;
    [[nodiscard]] std::function<void()> event(std::string_view name) const;  // null: none
    [[nodiscard]] const Datum& argument(std::string_view name) const;

    template <class Store>
    [[nodiscard]] Store& store() {
        return state_.store<Store>();
    }

    void result(Datum value) { result_ = std::move(value); }
    // Outputs are kept in the order in which they are set; setting one again replaces it.
    void output(std::string_view name, Datum value);

    [[nodiscard]] const Datum& resultValue() const { return result_; }
    [[nodiscard]] const Datum::Fields& outputs() const { return outputs_; }

private:
    FunctionState& state_;
    std::map<std::string, Datum, std::less<>> arguments_;
    Datum result_;
    Datum::Fields outputs_;
};

struct FunctionEntry {
    std::string name;
    std::string subsystem;  // the folder
    std::string summary;    // one line, English
    std::vector<FunctionParameter> parameters;
    std::string result;  // type, empty for none
    std::function<void(FunctionCall&)> run;
};

// An entry point that shows a screen.
struct EntryPoint {
    std::string name;       // the C symbol
    std::string subsystem;  // the folder
    std::string title;      // Persian, for menus
    std::string summary;    // one line, English
    TSoftwarePart part;
    TPermission permission;
    std::vector<FunctionParameter> parameters;
    std::string result;
    std::function<void(FunctionCall&)> run;
};

class Registry {
public:
    void add(FunctionEntry entry);
    void add(EntryPoint entry);  // UsageError when the name is taken

    // In the order of registration.
    [[nodiscard]] const std::vector<FunctionEntry>& functions() const { return functions_; }
    [[nodiscard]] const std::vector<EntryPoint>& entryPoints() const { return entries_; }
    // Overloads share a name. Names compare without case.
    [[nodiscard]] std::vector<const FunctionEntry*> find(std::string_view name) const;
    [[nodiscard]] const EntryPoint* findEntryPoint(std::string_view name) const;

private:
    std::vector<FunctionEntry> functions_;
    std::vector<EntryPoint> entries_;
};

}  // namespace basalt
