#include "host/services/sql_access.h"

#include <utility>

namespace basalt::host {

RowSet rowsOf(Session& session, std::string_view sql, Values values) {
    BatchResult batch = session.run(sql, std::span<const Value>(values.begin(), values.size()));
    for (StatementResult& result : batch.results) {
        if (result.rows) return std::move(*result.rows);
    }
    return {};
}

std::int64_t integerAt(const RowSet& rows, std::size_t column, std::size_t row) {
    return toInt64(rows.column(column).valueAt(row));
}

std::string textAt(const RowSet& rows, std::size_t column, std::size_t row) {
    return toText(rows.column(column).valueAt(row));
}

std::int64_t execute(Session& session, std::string_view sql, Values values) {
    const BatchResult batch = session.run(sql, std::span<const Value>(values.begin(), values.size()));
    std::int64_t affected = 0;
    for (const StatementResult& result : batch.results) {
        if (result.affectedRows > 0) affected += result.affectedRows;
    }
    return affected;
}

void updateOrInsert(Session& session, std::string_view update, Values updateValues, std::string_view insert,
                    Values insertValues) {
    if (execute(session, update, updateValues) > 0) return;
    try {
        execute(session, insert, insertValues);
    } catch (const DatabaseError& error) {
        if (error.category() != ErrorCategory::Constraint) throw;
        if (execute(session, update, updateValues) == 0) throw;
    }
}

ShortWait::ShortWait(Session& session) : session_(session) {
    execute(session_, "SET LOCK_TIMEOUT 300");
}

ShortWait::~ShortWait() {
    try {
        execute(session_, "SET LOCK_TIMEOUT -1");
    } catch (const std::exception&) {
        // A lost connection begins anew with the setting that it should have.
    }
}

HostTransaction::HostTransaction(Session& session) : session_(session), mine_(!session.inTransaction()) {
    if (mine_) session_.begin();
}

HostTransaction::~HostTransaction() {
    if (!mine_ || !session_.inTransaction()) return;
    try {
        session_.rollback();
    } catch (const std::exception&) {
        // A lost connection has rolled back already, and a replay does not know of this rollback; the error that led
        // here is the one to report.
    }
}

void HostTransaction::commit() {
    if (!std::exchange(mine_, false)) return;
    session_.commit();
}

}  // namespace basalt::host
