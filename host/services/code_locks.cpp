#include "host/services/code_locks.h"

#include <utility>

#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

constexpr int kMostAttempts = 100;

DatabaseError everySlotTaken(const std::string& code) {
    return DatabaseError(ErrorCategory::Busy, "HYT00", 0,
                         "Other clients took every code or slot that was tried, the last one being " + code);
}

}  // namespace

CodeLock::CodeLock(CodeLocks& locks, TSoftwarePart part, Value value, int owner, int slot)
    : locks_(&locks), part_(part), value_(std::move(value)), code_(toText(value_)), owner_(owner), slot_(slot) {}

CodeLock::CodeLock(CodeLock&& other) noexcept
    : locks_(std::exchange(other.locks_, nullptr)),
      part_(other.part_),
      value_(std::move(other.value_)),
      code_(std::move(other.code_)),
      owner_(other.owner_),
      slot_(other.slot_) {}

CodeLock& CodeLock::operator=(CodeLock&& other) noexcept {
    if (this == &other) return *this;
    releaseQuietly();
    locks_ = std::exchange(other.locks_, nullptr);
    part_ = other.part_;
    value_ = std::move(other.value_);
    code_ = std::move(other.code_);
    owner_ = other.owner_;
    slot_ = other.slot_;
    return *this;
}

CodeLock::~CodeLock() {
    releaseQuietly();
}

void CodeLock::releaseQuietly() noexcept {
    try {
        release();
    } catch (const std::exception&) {
        // The row stays until this client ends or the machine's next client starts.
    }
}

void CodeLock::release() {
    CodeLocks* locks = std::exchange(locks_, nullptr);
    if (!locks) return;
    execute(locks->session_, "DELETE FROM dbo.CodeLock_TBL WHERE Status = ? AND Code = ? AND Slot = ? AND Owner = ?",
            {std::int64_t{part_}, code_, std::int64_t{slot_}, std::int64_t{owner_}});
}

bool CodeLocks::insert(const std::string& code, TSoftwarePart part, const CodeLockOwner& owner, int slot) {
    try {
        execute(session_,
                "INSERT INTO dbo.CodeLock_TBL (Code, Status, Slot, Owner, UserCode, WorkstationName, LockDate) "
                "VALUES (?, ?, ?, ?, ?, ?, ?)",
                {code, std::int64_t{part}, std::int64_t{slot}, std::int64_t{owner.owner}, std::int64_t{owner.userCode},
                 owner.workstationName, owner.moment});
        return true;
    } catch (const DatabaseError& error) {
        if (error.category() != ErrorCategory::Constraint) throw;
        return false;
    }
}

CodeLock CodeLocks::hold(const std::string& code, TSoftwarePart part) {
    const CodeLockOwner owner = describe_();
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        const RowSet rows =
            rowsOf(session_, "SELECT ISNULL(MAX(Slot), -1) + 1 FROM dbo.CodeLock_TBL WHERE Status = ? AND Code = ?",
                   {std::int64_t{part}, code});
        const int slot = static_cast<int>(integerAt(rows, 0, 0));
        if (insert(code, part, owner, slot)) return {*this, part, code, owner.owner, slot};
    }
    throw everySlotTaken(code);
}

CodeLock CodeLocks::holdNew(TSoftwarePart part, const std::function<Value()>& nextCode) {
    const CodeLockOwner owner = describe_();
    std::string code;
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        // In one transaction, so that the code is not computed between another client's save and its release.
        HostTransaction transaction(session_);
        Value value = nextCode();
        code = toText(value);
        const bool taken = insert(code, part, owner, 0);
        transaction.commit();
        if (taken) return {*this, part, std::move(value), owner.owner, 0};
    }
    throw everySlotTaken(code);
}

bool CodeLocks::isHeld(const std::string& code, TSoftwarePart part, int owner, bool anyOwner) {
    // A row without an owner was not written by an editor of ours: it is somebody else's.
    const RowSet rows = anyOwner
                            ? rowsOf(session_, "SELECT COUNT(*) FROM dbo.CodeLock_TBL WHERE Status = ? AND Code = ?",
                                     {std::int64_t{part}, code})
                            : rowsOf(session_,
                                     "SELECT COUNT(*) FROM dbo.CodeLock_TBL WHERE Status = ? AND Code = ? "
                                     "AND (Owner IS NULL OR Owner <> ?)",
                                     {std::int64_t{part}, code, std::int64_t{owner}});
    return integerAt(rows, 0, 0) > 0;
}

std::vector<CodeLockHolder> CodeLocks::others(const std::string& code, TSoftwarePart part) {
    const RowSet rows =
        rowsOf(session_,
               "SELECT L.Owner, U.FullName, L.WorkstationName, L.LockDate "
               "FROM dbo.CodeLock_TBL AS L LEFT JOIN dbo.HostUsers AS U ON U.Code = L.UserCode "
               "WHERE L.Status = ? AND L.Code = ? AND (L.Owner IS NULL OR L.Owner <> ?) ORDER BY L.Slot",
               {std::int64_t{part}, code, std::int64_t{describe_().owner}});
    std::vector<CodeLockHolder> holders;
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        holders.push_back({static_cast<int>(integerAt(rows, 0, row)), textAt(rows, 1, row), textAt(rows, 2, row),
                           textAt(rows, 3, row)});
    }
    return holders;
}

}  // namespace basalt::host
