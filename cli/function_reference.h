// The reference of all exports as a document, made from the registry; docs/functions.md is its copy.
#pragma once

#include <ostream>
#include <vector>

#include "package/registry.h"

namespace basalt::cli {

// Markdown. hostScreens are the reference host's own.
void writeReference(std::ostream& out, const Registry& registry, const std::vector<EntryPoint>& hostScreens);

}  // namespace basalt::cli
