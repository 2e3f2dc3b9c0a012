#include "bench/peak_memory.h"

#include <fstream>
#include <string>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace basalt::bench {

namespace {

// A line of /proc/self/status in bytes: "VmHWM:     1234 kB".
std::optional<std::size_t> statusBytes(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        std::size_t kilobytes = 0;
        if (word == name && status >> kilobytes) return kilobytes * 1024;
    }
    return std::nullopt;
}

}  // namespace

PeakMemory::PeakMemory() {
#ifdef __GLIBC__
    // Memory that earlier work has freed would hide what this work needs.
    malloc_trim(0);
#endif
    before_ = statusBytes("VmRSS:");
}

std::optional<std::size_t> PeakMemory::of(const std::function<void()>& work) const {
    // Sets the high-water mark back to what is held now.
    if (!(std::ofstream("/proc/self/clear_refs") << "5" << std::flush)) return std::nullopt;
    work();
    const auto peak = statusBytes("VmHWM:");
    if (!before_ || !peak) return std::nullopt;
    return *peak > *before_ ? *peak - *before_ : 0;
}

}  // namespace basalt::bench
