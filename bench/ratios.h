// Collects times by benchmark name and compares them at the end.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace basalt::bench {

// Prints what the console reporter prints, and keeps the smallest time of each benchmark.
class SmallestTimes final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    // Nanoseconds of processor time for one iteration, which other work on the machine disturbs least; 0 when the
    // benchmark did not run.
    [[nodiscard]] double of(const std::string& name) const;

private:
    std::map<std::string, double> smallest_;
};

struct Ratio {
    std::string what;
    double value;
    double limit;
};

// Prints the table; false when a ratio is above its limit. A ratio of 0 was not measured and is said to be so.
[[nodiscard]] bool report(const std::vector<Ratio>& ratios);

}  // namespace basalt::bench
