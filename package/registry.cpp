#include "package/registry.h"

#include "ado/error.h"
#include "ado/names.h"

namespace basalt {

namespace {

// Reads an argument and names it when it cannot be read.
template <class Read>
auto reading(std::string_view name, Read read) {
    try {
        return read();
    } catch (const UsageError& error) {
        throw UsageError("argument " + std::string(name) + ": " + error.what());
    }
}

}  // namespace

const Datum& FunctionCall::argument(std::string_view name) const {
    for (const auto& [given, value] : arguments_) {
        if (sameName(given, name)) return value;
    }
    throw UsageError("argument " + std::string(name) + " is missing");
}

int FunctionCall::integer(std::string_view name) const {
    const Datum& value = argument(name);
    return reading(name, [&] { return value.asInt32(); });
}

Extended FunctionCall::amount(std::string_view name) const {
    const Datum& value = argument(name);
    return reading(name, [&] { return value.asAmount(); });
}

std::string FunctionCall::text(std::string_view name) const {
    const Datum& value = argument(name);
    return reading(name, [&] { return value.asText(); });
}

bool FunctionCall::flag(std::string_view name) const {
    const Datum& value = argument(name);
    return reading(name, [&] { return value.asBool(); });
}

std::function<void()> FunctionCall::event(std::string_view name) const {
    const Datum& value = argument(name);
    return reading(name, [&] { return value.asEvent(); });
}

void FunctionCall::output(std::string_view name, Datum value) {
    for (auto& [given, kept] : outputs_) {
        if (sameName(given, name)) {
            kept = std::move(value);
            return;
        }
    }
    outputs_.emplace_back(std::string(name), std::move(value));
}

void Registry::add(FunctionEntry entry) {
    if (findEntryPoint(entry.name) != nullptr) throw UsageError("the name " + entry.name + " is taken");
    functions_.push_back(std::move(entry));
}

void Registry::add(EntryPoint entry) {
    if (findEntryPoint(entry.name) != nullptr || !find(entry.name).empty()) {
        throw UsageError("the name " + entry.name + " is taken");
    }
    entries_.push_back(std::move(entry));
}

std::vector<const FunctionEntry*> Registry::find(std::string_view name) const {
    std::vector<const FunctionEntry*> found;
    for (const FunctionEntry& entry : functions_) {
        if (sameName(entry.name, name)) found.push_back(&entry);
    }
    return found;
}

const EntryPoint* Registry::findEntryPoint(std::string_view name) const {
    for (const EntryPoint& entry : entries_) {
        if (sameName(entry.name, name)) return &entry;
    }
    return nullptr;
}

}  // namespace basalt
