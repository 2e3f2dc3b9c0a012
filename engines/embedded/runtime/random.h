// RAND: two congruential generators combined, which give the server's numbers for a seed.
//
//   RandomNumbers numbers;
//   numbers.seed(1);
//   numbers.next()      0.713591993...
#pragma once

#include <cstdint>

namespace basalt::embedded {

class RandomNumbers {
public:
    // Starts anywhere.
    RandomNumbers();

    void seed(std::int64_t seed);
    // From 0 to 1, both exclusive.
    [[nodiscard]] double next();

private:
    std::int64_t first_;
    std::int64_t second_;
};

}  // namespace basalt::embedded
