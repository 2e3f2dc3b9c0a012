// Makes one change all or nothing: inside a transaction by a savepoint, outside by a transaction of its own.
#pragma once

#include "engines/embedded/executor/executor.h"

namespace basalt::embedded {

class Executor::StatementGuard {
public:
    // A change that is one statement of SQLite's needs no transaction of its own; `several` says that it is more.
    // Inside a transaction a function that fails half-way leaves the rows changed so far, so a savepoint stands around
    // every change but those of one row, which SQLite makes whole or not at all.
    // `temporary` says that nothing but temporary tables changes: then other programs may write meanwhile, and a report
    // does not wait for them.
    StatementGuard(Executor& executor, bool several, bool whole = false, bool temporary = false) : executor_(executor) {
        // A function works inside a statement that is guarded itself, and SQLite lets no savepoint begin there.
        if (executor_.state_.functionDepth > 0) return;
        if (executor_.inTransaction()) {
            if (whole) return;
            executor_.savepoint_.run();
            mode_ = Mode::Savepoint;
        } else if (several) {
            (temporary ? executor_.beginDeferred_ : executor_.beginImmediate_).run();
            mode_ = Mode::Transaction;
        }
    }
    StatementGuard(const StatementGuard&) = delete;
    StatementGuard& operator=(const StatementGuard&) = delete;

    // Undoes the change unless succeed() was called.
    ~StatementGuard() {
        if (mode_ == Mode::None || !executor_.inTransaction()) return;
        sqlite3_stmt* undo = mode_ == Mode::Savepoint ? executor_.rollbackTo_.handle() : executor_.rollback_.handle();
        sqlite3_step(undo);
        sqlite3_reset(undo);
        if (mode_ == Mode::Transaction) executor_.catalog_.forgetIdentities();
        if (mode_ == Mode::Savepoint) {
            sqlite3_step(executor_.release_.handle());
            sqlite3_reset(executor_.release_.handle());
        }
    }

    void succeed() {
        if (mode_ == Mode::Savepoint) executor_.release_.run();
        if (mode_ == Mode::Transaction) {
            executor_.catalog_.settleIdentities();
            executor_.commit_.run();
        }
        mode_ = Mode::None;
    }

private:
    enum class Mode { None, Savepoint, Transaction };
    Executor& executor_;
    Mode mode_ = Mode::None;
};

}  // namespace basalt::embedded
