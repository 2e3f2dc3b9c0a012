#include "host/calls/arguments.h"

#include <algorithm>
#include <cstdint>
#include <numeric>

#include "ado/error.h"
#include "ado/names.h"

namespace basalt::host {

namespace {

// UsageError when the value cannot be read as a plain type.
void requireFitting(const FunctionParameter& parameter, const Datum& value) {
    if (parameter.type == "integer") {
        (void)value.asInt32();
    } else if (parameter.type == "byte") {
        const int number = value.asInt32();
        if (number != static_cast<std::uint8_t>(number)) throw UsageError(std::to_string(number) + " is not 0 to 255");
    } else if (parameter.type == "amount") {
        (void)value.asAmount();
    } else if (parameter.type == "flag") {
        (void)value.asBool();
    } else if (parameter.type == "event") {
        (void)value.asEvent();
    } else if (parameter.type == "text") {
        (void)value.asText();
    }
}

// A mistyped name must not pass as a field that was left out.
void requireFields(const std::vector<FunctionParameter>& fields, const Datum& record) {
    if (fields.empty()) return;
    std::string known;
    for (const FunctionParameter& field : fields)
        known += (known.empty() ? "" : ", ") + field.name;
    for (const auto& [name, value] : record.asRecord()) {
        const auto field =
            std::find_if(fields.begin(), fields.end(), [&](const auto& each) { return sameName(each.name, name); });
        if (field == fields.end()) throw UsageError("there is no field " + name + "; the fields are " + known);
        try {
            if (!value.isNull()) requireFitting(*field, value);
        } catch (const std::exception& error) {
            throw UsageError("field " + field->name + ": " + error.what());
        }
    }
    for (const FunctionParameter& field : fields) {
        // A text that is left out is empty.
        if (field.type != "text" && record[field.name].isNull())
            throw UsageError("the field " + field.name + " is missing; the fields are " + known);
    }
}

// The argument as its parameter takes it; UsageError when it cannot be read so, before anything of the call has run.
Datum fitted(const FunctionParameter& parameter, const Datum& value) {
    try {
        if (parameter.type == "record" || parameter.type == "list") {
            Datum datum = value.isText() ? Datum::parseJson(value.asText()) : value;
            if (parameter.type == "list") (void)datum.asList();
            if (parameter.type == "record") (void)datum.asRecord();
            requireFields(parameter.fields, datum);
            return datum;
        }
        requireFitting(parameter, value);
    } catch (const std::exception& error) {
        throw ArgumentError(ArgumentError::Kind::Unreadable, parameter.name,
                            "argument " + parameter.name + ": " + error.what());
    }
    return value;
}

std::string describeParameter(const FunctionParameter& parameter) {
    const char* direction = !parameter.output ? "" : parameter.input ? "var " : "out ";
    std::string fields;
    for (const FunctionParameter& field : parameter.fields)
        fields += (fields.empty() ? " {" : ", ") + field.name;
    return direction + parameter.name + ": " + parameter.type + (fields.empty() ? "" : fields + "}");
}

// Changes of one letter that turn one name into the other.
std::size_t editDistance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

bool isParameter(const std::vector<FunctionParameter>& parameters, std::string_view name) {
    return std::any_of(parameters.begin(), parameters.end(),
                       [&](const FunctionParameter& p) { return sameName(p.name, name); });
}

[[noreturn]] void failUnknown(const Registry& registry, std::string_view function) {
    if (registry.findEntryPoint(function)) {
        throw UsageError(std::string(function) + " shows a screen; open it with: basalt screen " +
                         std::string(function));
    }
    std::string message = "there is no function " + std::string(function);
    const std::vector<std::string> near = nearNames(registry, function);
    for (std::size_t i = 0; i < near.size(); ++i)
        message += (i == 0 ? "; near names: " : ", ") + near[i];
    throw UsageError(message);
}

}  // namespace

BoundArguments bindArguments(const std::vector<FunctionParameter>& parameters, const std::string& name,
                             const CallArguments& given) {
    std::map<std::string, const Datum*> byName;  // folded
    for (const auto& [argument, value] : given.named) {
        if (!isParameter(parameters, argument)) throw UsageError(name + " has no parameter " + argument);
        if (!byName.emplace(foldName(argument), &value).second) {
            throw UsageError("argument " + argument + " is given twice");
        }
    }
    std::vector<const FunctionParameter*> open;
    for (const FunctionParameter& parameter : parameters) {
        if (byName.find(foldName(parameter.name)) == byName.end()) open.push_back(&parameter);
    }
    // Without a value for each, the outputs go without.
    if (given.positional.size() != open.size())
        std::erase_if(open, [](const auto* parameter) { return !parameter->input; });
    if (given.positional.size() < open.size()) {
        const std::string& missing = open[given.positional.size()]->name;
        throw ArgumentError(ArgumentError::Kind::Missing, missing, name + " needs the argument " + missing);
    }
    if (given.positional.size() > open.size()) {
        throw UsageError(name + " takes " + std::to_string(open.size() + byName.size()) + " arguments; " +
                         std::to_string(given.positional.size() + byName.size()) + " are given");
    }
    for (std::size_t i = 0; i < open.size(); ++i)
        byName.emplace(foldName(open[i]->name), &given.positional[i]);

    BoundArguments bound;
    for (const FunctionParameter& parameter : parameters) {
        const auto found = byName.find(foldName(parameter.name));
        if (found == byName.end()) continue;
        bound.emplace(parameter.name, parameter.input ? fitted(parameter, *found->second) : *found->second);
    }
    return bound;
}

BoundCall bindArguments(const Registry& registry, std::string_view function, const CallArguments& given) {
    const std::vector<const FunctionEntry*> overloads = registry.find(function);
    if (overloads.empty()) failUnknown(registry, function);
    for (const FunctionEntry* entry : overloads) {
        try {
            return {entry, bindArguments(entry->parameters, entry->name, given)};
        } catch (const UsageError&) {
            if (overloads.size() == 1) throw;
        }
    }
    std::string message = "no overload of " + overloads.front()->name + " takes these arguments; there are:";
    for (const FunctionEntry* entry : overloads)
        message += "\n  " + signature(*entry);
    throw UsageError(message);
}

CallArguments argumentsFromWords(const Registry& registry, std::string_view function,
                                 const std::vector<std::string>& words) {
    std::vector<FunctionParameter> parameters;
    for (const FunctionEntry* entry : registry.find(function)) {
        parameters.insert(parameters.end(), entry->parameters.begin(), entry->parameters.end());
    }
    return argumentsFromWords(parameters, words);
}

CallArguments argumentsFromWords(const std::vector<FunctionParameter>& parameters,
                                 const std::vector<std::string>& words) {
    CallArguments arguments;
    for (const std::string& word : words) {
        const std::size_t equals = word.find('=');
        const bool named =
            equals != std::string::npos && isParameter(parameters, std::string_view(word).substr(0, equals));
        if (named) {
            arguments.named.emplace_back(word.substr(0, equals), word.substr(equals + 1));
        } else {
            arguments.positional.emplace_back(word);
        }
    }
    return arguments;
}

std::vector<std::string> nearNames(const Registry& registry, std::string_view name) {
    const std::string wanted = foldName(name);
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (const FunctionEntry& entry : registry.functions()) {
        const std::string candidate = foldName(entry.name);
        std::size_t distance = editDistance(wanted, candidate);
        const bool contains = wanted.size() >= 3 && candidate.find(wanted) != std::string::npos;
        if (contains) distance = std::min<std::size_t>(distance, 2);
        if (!contains && distance > std::max<std::size_t>(2, candidate.size() / 3)) continue;
        ranked.emplace_back(distance, entry.name);
    }
    std::sort(ranked.begin(), ranked.end());
    std::vector<std::string> names;
    for (const auto& [distance, candidate] : ranked) {
        if (names.size() < 5 && std::find(names.begin(), names.end(), candidate) == names.end())
            names.push_back(candidate);
    }
    return names;
}

std::string signature(const FunctionEntry& entry) {
    std::string text = entry.name + "(";
    for (std::size_t i = 0; i < entry.parameters.size(); ++i) {
        text += (i == 0 ? "" : ", ") + describeParameter(entry.parameters[i]);
    }
    text += ")";
    return entry.result.empty() ? text : text + ": " + entry.result;
}

}  // namespace basalt::host
