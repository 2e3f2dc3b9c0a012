// The numbers that one INSERT gives to the identity column of its table.
#pragma once

#include "engines/embedded/executor/executor.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

struct Executor::IdentityRun {
    // `used` is the last number that was given, if it was given since in a change that did not last.
    void start(Catalog& catalog, const Table& table, std::optional<std::int64_t> used) {
        table_ = table.name;
        // Reading behind the first lock for writing keeps two programs from giving the same number.
        state_ = catalog.identity(table.name);
        kind_ = table.identityColumn()->type;
        const bool ahead =
            used && (!state_.last || (state_.increment > 0 ? *used > *state_.last : *used < *state_.last));
        if (ahead) state_.last = used;
        last_.reset();
    }

    std::int64_t next() {
        std::int64_t value = state_.seed;
        if (state_.last && __builtin_add_overflow(*state_.last, state_.increment, &value)) overflow();
        const std::int64_t highestValue = kind_.isInteger() ? highest(kind_.kind) : highest(TypeKind::BigInt);
        if (value > highestValue) overflow();
        state_.last = last_ = value;
        return value;
    }

    // A number that the statement brought itself.
    void given(std::int64_t value) {
        last_ = value;
        if (!state_.last || (state_.increment > 0 ? value > *state_.last : value < *state_.last)) state_.last = value;
    }

    void finish(Catalog& catalog) {
        if (last_) catalog.takeIdentity(table_, state_);
    }

    [[nodiscard]] std::optional<std::int64_t> last() const { return last_; }
    [[nodiscard]] const SqlType& type() const { return kind_; }

private:
    [[noreturn]] void overflow() const {
        throwSqlError(error::kArithmeticOverflow, "Arithmetic overflow error converting IDENTITY to data type " +
                                                      std::string(kind_.baseName()) + ".");
    }

    std::string table_;
    IdentityState state_;
    SqlType kind_;
    std::optional<std::int64_t> last_;
};

}  // namespace basalt::embedded
