// basalt functions [NAME] [--json] | --markdown: what the module exports, and the reference host's own screens.
#include <iostream>
#include <map>
#include <memory>

#include "ado/names.h"
#include "cli/commands.h"
#include "cli/function_reference.h"
#include "cli/host_screens.h"
#include "cli/screen_signature.h"
#include "cli/wrong_usage.h"
#include "host/calls/arguments.h"
#include "host/module_loader/module_loader.h"

namespace basalt::cli {

namespace {

struct FunctionsOptions {
    std::string name;
    bool json = false;
    bool markdown = false;
};

Datum toDatum(const std::vector<FunctionParameter>& parameters) {
    Datum::List list;
    for (const FunctionParameter& parameter : parameters) {
        const char* direction = !parameter.output ? "in" : parameter.input ? "inout" : "out";
        Datum::Fields described{{"name", parameter.name}, {"type", parameter.type}, {"direction", direction}};
        if (!parameter.fields.empty()) described.emplace_back("fields", toDatum(parameter.fields));
        list.push_back(Datum::record(std::move(described)));
    }
    return Datum::list(std::move(list));
}

Datum resultOf(const std::string& type) {
    return type.empty() ? Datum() : Datum(type);
}

Datum toDatum(const FunctionEntry& entry) {
    return Datum::record({{"name", entry.name},
                          {"kind", "function"},
                          {"subsystem", entry.subsystem},
                          {"summary", entry.summary},
                          {"parameters", toDatum(entry.parameters)},
                          {"result", resultOf(entry.result)}});
}

Datum toDatum(const EntryPoint& entry, const char* owner) {
    return Datum::record({{"name", entry.name},
                          {"kind", "screen"},
                          {"of", owner},
                          {"subsystem", entry.subsystem},
                          {"title", entry.title},
                          {"summary", entry.summary},
                          {"part", static_cast<int>(entry.part)},
                          {"permission", static_cast<int>(entry.permission)},
                          {"parameters", toDatum(entry.parameters)},
                          {"result", resultOf(entry.result)}});
}

std::string describe(const std::string& line, const std::string& summary) {
    return "  " + line + "\n      " + summary + "\n";
}

int run(const FunctionsOptions& options) {
    const Registry& registry = host::loadModule().registry();
    if (options.markdown) {
        writeReference(std::cout, registry, hostScreens());
        return 0;
    }
    const auto wanted = [&](const std::string& name) { return options.name.empty() || sameName(name, options.name); };
    Datum::List list;
    std::vector<std::string> order;
    std::map<std::string, std::string> sections;
    const auto section = [&](const std::string& title) -> std::string& {
        if (sections.find(title) == sections.end()) order.push_back(title);
        return sections[title];
    };
    for (const EntryPoint& entry : registry.entryPoints()) {
        if (!wanted(entry.name)) continue;
        list.push_back(toDatum(entry, "module"));
        section(entry.subsystem) += describe("screen " + signatureOf(entry), entry.summary);
    }
    for (const EntryPoint& entry : hostScreens()) {
        if (!wanted(entry.name)) continue;
        list.push_back(toDatum(entry, "host"));
        section(entry.subsystem) += describe("screen " + signatureOf(entry) + "   [host]", entry.summary);
    }
    for (const FunctionEntry& entry : registry.functions()) {
        if (!wanted(entry.name)) continue;
        list.push_back(toDatum(entry));
        section(entry.subsystem) += describe(host::signature(entry), entry.summary);
    }
    if (list.empty()) {
        std::string message = "there is no function " + options.name;
        const std::vector<std::string> near = host::nearNames(registry, options.name);
        for (std::size_t i = 0; i < near.size(); ++i)
            message += (i == 0 ? "; near names: " : ", ") + near[i];
        throw WrongUsage(message);
    }
    if (options.json) {
        std::cout << Datum::list(std::move(list)).toJson() << '\n';
        return 0;
    }
    for (const std::string& title : order)
        std::cout << title << '\n' << sections[title];
    return 0;
}

}  // namespace

void addFunctionsCommand(Program& program) {
    const auto options = std::make_shared<FunctionsOptions>();
    CLI::App& command =
        program.command(program.app, "functions", "lists what the module exports", [options] { return run(*options); });
    CLI::Option* name = command.add_option("NAME", options->name, "only that function, with all its overloads");
    CLI::Option* json = command.add_flag("--json", options->json, "as one line of JSON");
    command.add_flag("--markdown", options->markdown, "all of them as a document")->excludes(name)->excludes(json);
}

}  // namespace basalt::cli
