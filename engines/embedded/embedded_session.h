// The default database: T-SQL on one SQLite file.
//
//   auto session = EmbeddedSession::open("shop.basalt", {.createIfMissing = true});
//   session->run("create table CostLevel(Code int primary key, Name nvarchar(50))");
//   session->run("insert into CostLevel values(1, N'عمده')");
//   const BatchResult r = session->run("select Name from CostLevel where Code = 1");
//
// One thread uses a session; several sessions, also of several processes, may have the same file open. What commit()
// or a statement outside of a transaction has returned from is on the disk. Statements that differ only in their
// literals share a plan.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "ado/progress.h"
#include "ado/schema.h"
#include "ado/session.h"

namespace basalt::embedded {

struct EmbeddedOptions {
    // How long a lock of another program is waited for, unless SET LOCK_TIMEOUT tells a time; -1 there means this.
    int busyTimeoutMs = 5000;
    bool createIfMissing = false;
    // The newest schema version (EmbeddedSession::schemaVersion) that the caller knows; a newer file is refused.
    int knownSchemaVersion = std::numeric_limits<int>::max();
    std::size_t planCacheSize = 512;  // batches
    // Bytes of a text or binary value, of a row and of a statement at most; 256 MiB when it is more.
    int longestValue = std::numeric_limits<int>::max();
    // The moment for GETDATE(), in ticks of DateTime; the local time of this computer when empty.
    std::function<std::int64_t()> clock = {};
};

struct PlanStatistics {
    std::uint64_t hits = 0;
    std::uint64_t misses = 0;
};

class EmbeddedSession final : public Session, public InterruptibleSession {
public:
    // `path` is a file or ":memory:". Throws DatabaseError: NotFound (no such file), Connection (cannot be opened or
    // written), Corrupt (damaged, or not a database of this program), Version (newer than known), Busy (locked).
    [[nodiscard]] static std::unique_ptr<EmbeddedSession> open(const std::string& path,
                                                               const EmbeddedOptions& options = {});
    ~EmbeddedSession() override;

    BatchResult run(std::string_view sql) override;
    BatchResult run(std::string_view sql, std::span<const Value> parameters) override;
    ProcedureInfo procedure(std::string_view name) override;
    CallResult call(std::string_view name, std::span<const Argument> arguments) override;
    void begin() override;
    void commit() override;
    void rollback() override;
    [[nodiscard]] bool inTransaction() const override;
    TableInfo table(std::string_view name) override;
    [[nodiscard]] std::string engine() const override { return "embedded"; }
    [[nodiscard]] std::string location() const override;

    void onProgress(std::function<bool()> goOn) override;

    [[nodiscard]] PlanStatistics planStatistics() const;
    // Problems that a full check of the file finds, in words; empty when it is sound.
    [[nodiscard]] std::vector<std::string> integrityCheck();
    // All that was created in the database, without temporary tables.
    [[nodiscard]] DatabaseSchema schema();
    // Copies the database, as its last commit left it, into a new file, while others go on writing. Throws
    // DatabaseError (DiskFull, Connection) and leaves a file of no use behind when it cannot be written whole.
    void backUp(const std::string& path);
    // Brings what was committed from the log into the file itself, which then may be moved. Throws DatabaseError
    // (DiskFull, Busy); what was committed stays in the log then.
    void flush();
    // A number that the application keeps for its own schema; 0 in a new file.
    [[nodiscard]] int schemaVersion();
    void setSchemaVersion(int version);

private:
    class Core;
    explicit EmbeddedSession(std::unique_ptr<Core> core);

    std::unique_ptr<Core> core_;
};

}  // namespace basalt::embedded
