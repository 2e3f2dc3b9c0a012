// The most memory that pieces of work take beyond what the process held before.
//
//   const PeakMemory memory;                          // what is held now counts nothing
//   const auto opening = memory.of([&] { open(); });
//   const auto search = memory.of([&] { search(); }); // what opening has left counts too
#pragma once

#include <cstddef>
#include <functional>
#include <optional>

namespace basalt::bench {

class PeakMemory {
public:
    PeakMemory();

    // Bytes of resident memory at the peak of `work`; nothing where the system cannot tell.
    [[nodiscard]] std::optional<std::size_t> of(const std::function<void()>& work) const;

private:
    std::optional<std::size_t> before_;
};

// Of one piece of work.
[[nodiscard]] inline std::optional<std::size_t> peakMemoryOf(const std::function<void()>& work) {
    return PeakMemory().of(work);
}

}  // namespace basalt::bench
