// An entry point as a function is written.
#pragma once

#include <string>

#include "host/calls/arguments.h"
#include "package/registry.h"

namespace basalt::cli {

// "Get_BoxesWeight(var Weight: amount, var Count: integer): flag"
[[nodiscard]] inline std::string signatureOf(const EntryPoint& entry) {
    return host::signature(FunctionEntry{.name = entry.name,
                                         .subsystem = {},
                                         .summary = {},
                                         .parameters = entry.parameters,
                                         .result = entry.result,
                                         .run = {}});
}

}  // namespace basalt::cli
