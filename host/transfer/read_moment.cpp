#include "host/transfer/read_moment.h"

namespace basalt::host {

namespace {

// Transactions of the embedded engine read what was there when they began.
bool isServer(const Session& session) {
    return session.engine() != "embedded";
}

bool allowsSnapshots(Session& session) {
    constexpr std::int64_t kOn = 1;
    const RowSet state =
        rowsOf(session, "SELECT snapshot_isolation_state FROM sys.databases WHERE database_id = DB_ID()");
    return state.rowCount() > 0 && integerAt(state, 0, 0) == kOn;
}

}  // namespace

ReadMoment::ReadMoment(Session& session) : session_(session) {
    // The server refuses another level within a transaction.
    if (isServer(session_) && !session_.inTransaction()) {
        const bool snapshots = allowsSnapshots(session_);
        levelChanged_ = true;
        execute(session_, snapshots ? "SET TRANSACTION ISOLATION LEVEL SNAPSHOT"
                                    : "SET TRANSACTION ISOLATION LEVEL SERIALIZABLE");
    }
    try {
        transaction_.emplace(session_);
    } catch (...) {
        restoreLevel();
        throw;
    }
}

ReadMoment::~ReadMoment() {
    transaction_.reset();
    restoreLevel();
}

void ReadMoment::restoreLevel() {
    if (!levelChanged_) return;
    try {
        execute(session_, "SET TRANSACTION ISOLATION LEVEL READ COMMITTED");
    } catch (const std::exception&) {
        // A lost connection begins anew at the level that it should have.
    }
}

}  // namespace basalt::host
