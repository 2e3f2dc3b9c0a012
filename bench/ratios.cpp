#include "bench/ratios.h"

#include <algorithm>
#include <cstdio>

namespace basalt::bench {

void SmallestTimes::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
        const double time = run.cpu_accumulated_time / static_cast<double>(run.iterations) * 1e9;
        double& smallest = smallest_.try_emplace(run.run_name.function_name, time).first->second;
        smallest = std::min(smallest, time);
    }
    ConsoleReporter::ReportRuns(runs);
}

double SmallestTimes::of(const std::string& name) const {
    const auto found = smallest_.find(name);
    return found == smallest_.end() ? 0 : found->second;
}

bool report(const std::vector<Ratio>& ratios) {
    bool good = true;
    std::printf("\n%-64s %8s %8s\n", "ratio", "is", "limit");
    for (const Ratio& ratio : ratios) {
        if (ratio.value == 0) {
            std::printf("%-64s %8s %8.2f\n", ratio.what.c_str(), "not run", ratio.limit);
            continue;
        }
        const bool kept = ratio.value <= ratio.limit;
        good = good && kept;
        std::printf("%-64s %8.2f %8.2f%s\n", ratio.what.c_str(), ratio.value, ratio.limit, kept ? "" : "   too high");
    }
    return good;
}

}  // namespace basalt::bench
