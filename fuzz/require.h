#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace basalt::fuzz {

inline void require(bool holds, const char* property, const std::string& detail = {}) {
    if (holds) return;
    std::fprintf(stderr, "property does not hold: %s\n%s\n", property, detail.c_str());
    std::abort();
}

}  // namespace basalt::fuzz
