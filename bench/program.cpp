#include "bench/program.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

namespace basalt::bench {

SmallestTimes runRegistered(int count, char** arguments, int repetitions) {
    std::string repeat = "--benchmark_repetitions=" + std::to_string(repetitions);
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> all(arguments, arguments + count);
    all.insert(all.begin() + 1, {repeat.data(), interleave.data()});
    int allCount = static_cast<int>(all.size());
    all.push_back(nullptr);
    benchmark::Initialize(&allCount, all.data());
    SmallestTimes times;
    benchmark::RunSpecifiedBenchmarks(&times);
    benchmark::ClearRegisteredBenchmarks();
    benchmark::Shutdown();
    return times;
}

int takeNumber(int& count, char** arguments, const std::string& option, int otherwise) {
    const std::string begin = "--" + option + "=";
    int number = otherwise;
    int kept = 0;
    for (int i = 0; i < count; ++i) {
        if (std::strncmp(arguments[i], begin.c_str(), begin.size()) == 0) {
            number = std::atoi(arguments[i] + begin.size());
        } else {
            arguments[kept++] = arguments[i];
        }
    }
    count = kept;
    return number;
}

int takeRows(int& count, char** arguments) {
    return takeNumber(count, arguments, "rows", 1'000'000);
}

int program(const std::function<bool()>& run) {
    try {
        return run() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}

}  // namespace basalt::bench
