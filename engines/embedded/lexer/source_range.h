// Where something stands in the text of a batch: byte offsets, the end not included.
#pragma once

#include <cstdint>

namespace basalt::embedded {

struct SourceRange {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;

    [[nodiscard]] constexpr std::uint32_t size() const { return end - begin; }
    [[nodiscard]] constexpr bool empty() const { return begin == end; }
};

// From the start of the first to the end of the second.
[[nodiscard]] constexpr SourceRange spanning(SourceRange first, SourceRange last) {
    return {first.begin, last.end};
}

}  // namespace basalt::embedded
