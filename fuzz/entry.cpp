// The entry that libFuzzer calls; BASALT_FUZZ_TARGET names the target.
#include <cstddef>
#include <cstdint>

#include "fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    basalt::fuzz::BASALT_FUZZ_TARGET({reinterpret_cast<const char*>(data), size});
    return 0;
}
