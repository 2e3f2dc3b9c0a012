#include "engines/embedded/plan_cache.h"

#include <algorithm>

namespace basalt::embedded {

namespace {

// Texts that differ in literals that decisions depend on leave several batches under one key; more than a few of them
// are not worth looking through.
constexpr std::size_t kMostVariants = 8;

bool allSame(const LiteralTable& table, const std::vector<Literal>& literals) {
    for (std::size_t i = 0; i < literals.size(); ++i) {
        if (!sameLiteral(table[static_cast<LiteralIndex>(i)], literals[i])) return false;
    }
    return true;
}

}  // namespace

CompiledBatch* PlanCache::find(std::string_view key, const std::vector<Literal>& literals,
                               std::span<const SqlType> markerTypes, std::uint64_t generation) {
    const auto found = byKey_.find(key);
    if (found == byKey_.end()) return nullptr;
    for (std::size_t i = 0; i < found->second.size(); ++i) {
        const Entries::iterator entry = found->second[i];
        CompiledBatch& candidate = *entry->batch;
        if (candidate.generation != generation) {
            // The schema has changed: what was planned before is planned anew.
            clear();
            return nullptr;
        }
        if (!std::ranges::equal(candidate.markerTypes, markerTypes)) continue;
        if (!(candidate.complete ? candidate.batch.literals.fits(literals)
                                 : allSame(candidate.batch.literals, literals)))
            continue;
        if (entry != entries_.begin()) entries_.splice(entries_.begin(), entries_, entry);
        return &candidate;
    }
    return nullptr;
}

CompiledBatch& PlanCache::keep(std::string_view key, std::unique_ptr<CompiledBatch> batch) {
    CompiledBatch& result = *batch;
    entries_.push_front({std::string(key), std::move(batch)});
    std::vector<Entries::iterator>& variants = byKey_[entries_.front().key];
    variants.insert(variants.begin(), entries_.begin());
    if (variants.size() > kMostVariants) erase(variants.back());
    while (entries_.size() > capacity_)
        erase(std::prev(entries_.end()));
    return result;
}

void PlanCache::erase(Entries::iterator entry) {
    const auto found = byKey_.find(entry->key);
    std::erase(found->second, entry);
    if (found->second.empty()) byKey_.erase(found);
    entries_.erase(entry);
}

void PlanCache::remove(const CompiledBatch* batch) {
    for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
        if (entry->batch.get() != batch) continue;
        erase(entry);
        return;
    }
}

void PlanCache::clear() {
    byKey_.clear();
    entries_.clear();
}

}  // namespace basalt::embedded
