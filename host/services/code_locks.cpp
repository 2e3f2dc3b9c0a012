#include "host/services/code_locks.h"

#include <algorithm>
#include <charconv>
#include <optional>
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
    release();
    locks_ = std::exchange(other.locks_, nullptr);
    part_ = other.part_;
    value_ = std::move(other.value_);
    code_ = std::move(other.code_);
    owner_ = other.owner_;
    slot_ = other.slot_;
    return *this;
}

CodeLock::~CodeLock() {
    release();
}

void CodeLock::release() noexcept {
    CodeLocks* locks = std::exchange(locks_, nullptr);
    if (!locks) return;
    locks->release({part_, code_, owner_, slot_});
}

void CodeLocks::release(Row row) noexcept {
    try {
        unreleased_.push_back(std::move(row));
        releaseRest();
    } catch (const std::exception&) {
        // It is among those of the next time.
    }
    if (!unreleased_.empty() && unreleasedTold_) unreleasedTold_();
}

bool CodeLocks::retryReleases() noexcept {
    try {
        if (!session_.inTransaction()) releaseRest();
    } catch (const std::exception&) {
        // Neither now.
    }
    return unreleased_.empty();
}

void CodeLocks::releaseRest() {
    if (unreleased_.empty()) return;
    const ShortWait wait(session_);
    while (!unreleased_.empty()) {
        const Row row = std::move(unreleased_.back());
        unreleased_.pop_back();
        try {
            execute(session_, "DELETE FROM dbo.CodeLock_TBL WHERE Status = ? AND Code = ? AND Slot = ? AND Owner = ?",
                    {std::int64_t{row.part}, row.code, std::int64_t{row.slot}, std::int64_t{row.owner}});
        } catch (const DatabaseError&) {
            unreleased_.push_back(row);
            return;
        }
    }
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
    releaseRest();
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
    releaseRest();
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

namespace {

std::optional<std::int64_t> numberIn(std::string_view code) {
    while (code.starts_with(' '))
        code.remove_prefix(1);
    while (code.ends_with(' '))
        code.remove_suffix(1);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(code.data(), code.data() + code.size(), number);
    if (error != std::errc() || end != code.data() + code.size()) return std::nullopt;
    return number;
}

// Codes are texts here, but where both are numbers it is the number that is held: other programs write 07 for 7.
bool isSameCode(const std::string& a, const std::string& b) {
    if (a == b) return true;
    const auto number = numberIn(a);
    return number && number == numberIn(b);
}

}  // namespace

std::vector<CodeLockHolder> CodeLocks::holders(const std::string& code, TSoftwarePart part) {
    releaseRest();
    const RowSet rows = rowsOf(session_,
                               "SELECT L.Code, L.Owner, U.FullName, L.WorkstationName, L.LockDate "
                               "FROM dbo.CodeLock_TBL AS L LEFT JOIN dbo.HostUsers AS U ON U.Code = L.UserCode "
                               "WHERE L.Status = ? ORDER BY L.Slot",
                               {std::int64_t{part}});
    std::vector<CodeLockHolder> holders;
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        if (!isSameCode(textAt(rows, 0, row), code)) continue;
        holders.push_back({static_cast<int>(integerAt(rows, 1, row)), textAt(rows, 2, row), textAt(rows, 3, row),
                           textAt(rows, 4, row)});
    }
    return holders;
}

bool CodeLocks::isHeld(const std::string& code, TSoftwarePart part, int owner, bool anyOwner) {
    const auto all = holders(code, part);
    return std::any_of(all.begin(), all.end(),
                       [&](const CodeLockHolder& holder) { return anyOwner || holder.isOtherThan(owner); });
}

std::vector<CodeLockHolder> CodeLocks::others(const std::string& code, TSoftwarePart part) {
    auto all = holders(code, part);
    std::erase_if(all, [own = describe_().owner](const CodeLockHolder& holder) { return !holder.isOtherThan(own); });
    return all;
}

}  // namespace basalt::host
