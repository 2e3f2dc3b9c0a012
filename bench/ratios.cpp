#include "bench/ratios.h"

#include <algorithm>
#include <cstdio>

namespace basalt::bench {

namespace {

void keepSmaller(std::map<std::string, double>& times, const std::string& name, double seconds,
                 std::int64_t iterations) {
    const double time = seconds / static_cast<double>(iterations) * 1e9;
    double& smallest = times.try_emplace(name, time).first->second;
    smallest = std::min(smallest, time);
}

}  // namespace

void SmallestTimes::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.iterations == 0 || run.error_occurred) continue;
        keepSmaller(processor_, run.run_name.function_name, run.cpu_accumulated_time, run.iterations);
        keepSmaller(elapsed_, run.run_name.function_name, run.real_accumulated_time, run.iterations);
    }
    ConsoleReporter::ReportRuns(runs);
}

double SmallestTimes::smallest(const Times& times, const std::string& name) {
    const auto found = times.find(name);
    return found == times.end() ? 0 : found->second;
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
