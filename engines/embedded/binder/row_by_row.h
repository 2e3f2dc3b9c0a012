// A change whose rows are all read before the first one changes, each with what the change and its OUTPUT need of it.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "engines/embedded/binder/bound_query.h"

namespace basalt::embedded {

// The rows while they are put together. What the change takes from a row is a slot of Slot::Source::Row.
class RowByRow {
public:
    // `select` has the key of the row that is changed, in `keys` items.
    RowByRow(std::unique_ptr<BoundSelect> select, std::size_t keys) : select_(std::move(select)), keys_(keys) {}

    [[nodiscard]] BoundSelect& select() { return *select_; }
    [[nodiscard]] std::unique_ptr<BoundSelect> takeSelect() { return std::move(select_); }
    [[nodiscard]] std::vector<BoundPtr>& values() { return values_; }
    [[nodiscard]] std::size_t keys() const { return keys_; }

    // One more value of the row; for the change it has the type that is given.
    BoundPtr add(BoundPtr value, const SqlType& type);
    // A part of the key.
    [[nodiscard]] static BoundPtr key(std::size_t index, const SqlType& type);
    // In an OUTPUT, whose columns without an alias are those of the changed row: the others come with the row that was
    // read.
    void supply(BoundPtr& shown);

private:
    std::unique_ptr<BoundSelect> select_;
    std::size_t keys_;
    std::vector<BoundPtr> values_;
};

}  // namespace basalt::embedded
