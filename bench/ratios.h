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
    [[nodiscard]] double of(const std::string& name) const { return smallest(processor_, name); }
    // The same on the clock, for work that a user waits for whether or not the processor is busy.
    [[nodiscard]] double elapsed(const std::string& name) const { return smallest(elapsed_, name); }

private:
    using Times = std::map<std::string, double>;
    static double smallest(const Times& times, const std::string& name);

    Times processor_;
    Times elapsed_;
};

struct Ratio {
    std::string what;
    double value;
    double limit;
};

// 0 when the peer was not measured.
[[nodiscard]] inline double quotient(double own, double peer) {
    return peer == 0 ? 0 : own / peer;
}

// Prints the table; false when a ratio is above its limit. A ratio of 0 was not measured and is said to be so.
[[nodiscard]] bool report(const std::vector<Ratio>& ratios);

}  // namespace basalt::bench
