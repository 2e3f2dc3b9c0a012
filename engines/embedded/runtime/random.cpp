#include "engines/embedded/runtime/random.h"

#include <random>

namespace basalt::embedded {

namespace {

constexpr std::int64_t kFirstModulus = 2'147'483'563;
constexpr std::int64_t kSecondModulus = 2'147'483'399;
constexpr std::int64_t kFirstStart = 12345;
constexpr std::int64_t kSecondStart = 67890;

}  // namespace

RandomNumbers::RandomNumbers() {
    std::random_device device;
    first_ = 1 + device() % (kFirstModulus - 1);
    second_ = 1 + device() % (kSecondModulus - 1);
}

void RandomNumbers::seed(std::int64_t seed) {
    const std::int64_t size = seed < 0 ? -seed : seed;
    first_ = size % kFirstModulus == 0 ? kFirstStart : size % kFirstModulus;
    second_ = kSecondStart;
}

double RandomNumbers::next() {
    first_ = first_ * 40014 % kFirstModulus;
    second_ = second_ * 40692 % kSecondModulus;
    std::int64_t difference = first_ - second_;
    if (difference < 1) difference += kFirstModulus - 1;
    return static_cast<double>(difference) * 4.656613e-10;
}

}  // namespace basalt::embedded
