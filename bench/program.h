// What every benchmark program does around its benchmarks.
//
//   int main(int count, char** arguments) {
//       return basalt::bench::program([&] {
//           benchmark::RegisterBenchmark("one", ...);
//           const SmallestTimes times = runRegistered(count, arguments, 5);
//           return report({{"one / other", times.of("one") / times.of("other"), 1.0}});
//       });
//   }
#pragma once

#include <functional>
#include <string>

#include "bench/ratios.h"

namespace basalt::bench {

// Runs what has been registered, each so many times in random order, and forgets it. The arguments are Google
// Benchmark's; what they say goes before the repetitions named here.
[[nodiscard]] SmallestTimes runRegistered(int count, char** arguments, int repetitions);

// Takes --OPTION=N out of the arguments; `otherwise` when it is not among them.
[[nodiscard]] int takeNumber(int& count, char** arguments, const std::string& option, int otherwise);
// Takes --rows=N out of the arguments; a million when it is not among them.
[[nodiscard]] int takeRows(int& count, char** arguments);

// The exit status: 0 when the run answers true, 1 when it answers false or throws (the reason goes to standard error).
[[nodiscard]] int program(const std::function<bool()>& run);

}  // namespace basalt::bench
