// Parsed and planned batches, found again by the key that texts share when they differ only in their literals.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engines/embedded/ast/batch.h"
#include "engines/embedded/executor/plan.h"
#include "engines/embedded/interpreter/layout.h"

namespace basalt::embedded {

struct CompiledBatch {
    ast::Batch batch;
    Layout layout;  // its variables
    PlanSet plans;
    std::vector<SqlType> markerTypes;
    std::uint64_t generation = 0;  // of the catalog when it was planned
    // One planned statement and nothing else: the plan that carries the whole batch out.
    Plan* single = nullptr;
    // Whether the executor alone runs it; otherwise it is the interpreter's.
    bool plain = false;
    // Whether every statement is planned, so that the plans say which literals they depend on. Otherwise the batch
    // serves only texts with all the same literals.
    bool complete = false;
};

class PlanCache {
public:
    // The least recently used batches give way beyond the capacity.
    explicit PlanCache(std::size_t capacity) : capacity_(capacity) {}

    // Null when no batch of the key fits the literals and the types of the `?` markers.
    [[nodiscard]] CompiledBatch* find(std::string_view key, const std::vector<Literal>& literals,
                                      std::span<const SqlType> markerTypes, std::uint64_t generation);
    CompiledBatch& keep(std::string_view key, std::unique_ptr<CompiledBatch> batch);
    void remove(const CompiledBatch* batch);
    void clear();

private:
    struct Entry {
        std::string key;
        std::unique_ptr<CompiledBatch> batch;
    };
    using Entries = std::list<Entry>;
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view key) const { return std::hash<std::string_view>{}(key); }
    };

    void erase(Entries::iterator entry);

    std::size_t capacity_;
    Entries entries_;  // the most recently used first
    std::unordered_map<std::string, std::vector<Entries::iterator>, Hash, std::equal_to<>> byKey_;
};

}  // namespace basalt::embedded
