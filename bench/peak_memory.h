// The most memory that a piece of work takes beyond what the process held before.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>

namespace basalt::bench {

// Bytes of resident memory at the peak of `work`; nothing where the system cannot tell.
[[nodiscard]] std::optional<std::size_t> peakMemoryOf(const std::function<void()>& work);

}  // namespace basalt::bench
