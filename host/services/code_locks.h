// Codes of records that are open in an editor, shared by all clients through CodeLock_TBL.
//
//   CodeLock lock = host.codeLocks().hold("3", spPriceLevels);                       // an existing record
//   CodeLock lock = host.codeLocks().holdNew(part, [&] { return editor.GetNewCode(); });  // a new one
//   editor.SetCode(lock.value());
//   ...                                                                              // released when `lock` goes away
//
// Several clients may have the same record open; others() tells of them. A new code belongs to one client alone.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ado/session.h"
#include "ado/value.h"
#include "package/types.h"

namespace basalt::host {

class CodeLocks;

// A held code; not to outlive the CodeLocks that gave it. Moving hands it on; destroying it releases the code. A row
// that cannot be removed now (another program is writing, or the disk is full) is nobody's worry: what was done under
// the lock is done. It goes with the next use of CodeLocks, with retryReleases (which screens call after a while), when
// this client ends, or at the workstation's next start.
class CodeLock {
public:
    CodeLock() = default;
    CodeLock(CodeLock&& other) noexcept;
    CodeLock& operator=(CodeLock&& other) noexcept;
    ~CodeLock();

    [[nodiscard]] bool held() const { return locks_ != nullptr; }
    [[nodiscard]] const std::string& code() const { return code_; }
    [[nodiscard]] const Value& value() const { return value_; }  // the code as nextCode gave it; for hold() its text
    void release() noexcept;

private:
    friend class CodeLocks;
    CodeLock(CodeLocks& locks, TSoftwarePart part, Value value, int owner, int slot);

    CodeLocks* locks_ = nullptr;
    TSoftwarePart part_{};
    Value value_;
    std::string code_;
    int owner_ = 0;
    int slot_ = 0;
};

struct CodeLockHolder {
    int owner = 0;
    std::string userName = {};  // the full name; empty when unknown
    std::string workstationName = {};
    std::string lockDate = {};  // "1405/08/30 09:15:00"

    // A row without an owner was not written by an editor of ours: it is somebody else's.
    [[nodiscard]] bool isOtherThan(int other) const { return owner == 0 || owner != other; }
};

// What a row of CodeLock_TBL says of its holder.
struct CodeLockOwner {
    int owner = 0;
    int userCode = 0;
    std::string workstationName = {};
    std::string moment = {};
};

class CodeLocks {
public:
    // `describe` is asked at each hold.
    CodeLocks(Session& session, std::function<CodeLockOwner()> describe)
        : session_(session), describe_(std::move(describe)) {}

    [[nodiscard]] CodeLock hold(const std::string& code, TSoftwarePart part);
    // Asks `nextCode` for a free code and takes it. When another client takes the same code at that moment, it is asked
    // again. DatabaseError (Busy) when that happens a hundred times in a row.
    [[nodiscard]] CodeLock holdNew(TSoftwarePart part, const std::function<Value()>& nextCode);

    // Codes that are numbers are compared as numbers: a row of code 07 holds 7.
    //
    // True when an owner other than `owner` holds the code; with `anyOwner` also when `owner` does.
    [[nodiscard]] bool isHeld(const std::string& code, TSoftwarePart part, int owner, bool anyOwner);
    // The other owners that hold the code.
    [[nodiscard]] std::vector<CodeLockHolder> others(const std::string& code, TSoftwarePart part);

    // Is told whenever a row could not be removed, which others then take for a record that is open.
    void onUnreleased(std::function<void()> told) { unreleasedTold_ = std::move(told); }
    // Tries once more. Not within a transaction, whose end could undo it. True when no such row is left.
    [[nodiscard]] bool retryReleases() noexcept;

private:
    friend class CodeLock;
    struct Row {
        TSoftwarePart part{};
        std::string code;
        int owner = 0;
        int slot = 0;
    };
    void release(Row row) noexcept;
    void releaseRest();
    [[nodiscard]] std::vector<CodeLockHolder> holders(const std::string& code, TSoftwarePart part);
    // False when the slot is taken.
    [[nodiscard]] bool insert(const std::string& code, TSoftwarePart part, const CodeLockOwner& owner, int slot);

    Session& session_;
    std::function<CodeLockOwner()> describe_;
    std::function<void()> unreleasedTold_;
    std::vector<Row> unreleased_;  // what another program's writing has held up
};

}  // namespace basalt::host
