#include "ado/rows_arriving.h"

#include <algorithm>
#include <utility>

namespace basalt {

namespace {
thread_local RowsArriving* counting = nullptr;
}

RowsArriving::RowsArriving(std::size_t bytes, std::function<void()> reached)
    : outer_(std::exchange(counting, this)), bytes_(bytes), reached_(std::move(reached)) {}

RowsArriving::~RowsArriving() {
    counting = outer_;
}

void RowsArriving::resized(std::size_t before, std::size_t after) {
    if (counting != nullptr) counting->count(before, after);
}

void RowsArriving::count(std::size_t before, std::size_t after) {
    held_ = held_ + after - std::min(before, held_ + after);
    if (held_ <= bytes_ || !reached_) return;
    std::exchange(reached_, nullptr)();
}

}  // namespace basalt
