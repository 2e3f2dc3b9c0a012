#include "engines/embedded/executor/plan.h"

namespace basalt::embedded {

PlanSet::PlanSet() = default;
PlanSet::PlanSet(PlanSet&&) noexcept = default;
PlanSet& PlanSet::operator=(PlanSet&&) noexcept = default;
PlanSet::~PlanSet() = default;

Plan* PlanSet::find(const void* node) const {
    const auto found = plans_.find(node);
    return found == plans_.end() ? nullptr : found->second.get();
}

Plan& PlanSet::keep(const void* node, std::unique_ptr<Plan> plan) {
    return *(plans_[node] = std::move(plan));
}

}  // namespace basalt::embedded
