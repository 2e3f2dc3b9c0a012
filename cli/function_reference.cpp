#include "cli/function_reference.h"

#include <map>
#include <string>

#include "cli/screen_signature.h"
#include "host/calls/arguments.h"

namespace basalt::cli {

namespace {

constexpr const char* kHead = R"(# Functions and screens

What the module exports, as `basalt functions` tells it. Inputs stand in the order in which `call` takes them; `out` marks
an output, `var` a parameter that is both. `basalt functions NAME --json` has the same for programs.

This page is written by `basalt functions --markdown`.
)";

// Of what is exported under one subsystem: signatures with their summaries, screens first.
using Sections = std::map<std::string, std::string>;

void add(Sections& sections, const std::string& subsystem, const std::string& signature, const std::string& summary) {
    sections[subsystem] += "- `" + signature + "`  \n  " + summary + "\n";
}

void write(std::ostream& out, const std::string& title, const Sections& sections) {
    out << "\n## " << title << "\n";
    for (const auto& [subsystem, lines] : sections)
        out << "\n### " << subsystem << "\n\n" << lines;
}

}  // namespace

void writeReference(std::ostream& out, const Registry& registry, const std::vector<EntryPoint>& hostScreens) {
    Sections screens;
    for (const EntryPoint& entry : registry.entryPoints())
        add(screens, entry.subsystem, signatureOf(entry), entry.summary);
    for (const EntryPoint& entry : hostScreens)
        add(screens, "the reference host", signatureOf(entry), entry.summary);
    Sections functions;
    for (const FunctionEntry& entry : registry.functions())
        add(functions, entry.subsystem, host::signature(entry), entry.summary);
    out << kHead;
    write(out, "Screens", screens);
    write(out, "Functions", functions);
}

}  // namespace basalt::cli
