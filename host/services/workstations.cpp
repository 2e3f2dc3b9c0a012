#include "host/services/workstations.h"

#include <vector>

#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

constexpr int kMostAttempts = 100;

struct Client {
    int owner = 0;
    bool inUse = false;
    ProcessIdentity process;
};

std::vector<Client> clientsOf(Session& session, const std::string& machine) {
    const RowSet rows = rowsOf(session,
                               "SELECT Owner, ProcessId, ProcessStarted FROM dbo.HostWorkstations "
                               "WHERE MachineName = ? ORDER BY Owner",
                               {machine});
    std::vector<Client> clients;
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        clients.push_back({static_cast<int>(integerAt(rows, 0, row)),
                           !rows.column(1).isNull(row),
                           {machine, integerAt(rows, 1, row), textAt(rows, 2, row)}});
    }
    return clients;
}

void removeLocks(Session& session, int owner) {
    execute(session, "DELETE FROM dbo.CodeLock_TBL WHERE Owner = ?", {std::int64_t{owner}});
}

// Marks the number as unused unless somebody else did or took it over since it was read.
bool takeFromKilled(Session& session, const Client& client) {
    return execute(session,
                   "UPDATE dbo.HostWorkstations SET ProcessId = NULL, ProcessStarted = NULL "
                   "WHERE Owner = ? AND ProcessId = ? AND ProcessStarted = ?",
                   {std::int64_t{client.owner}, client.process.id, client.process.started}) == 1;
}

bool takeUnused(Session& session, int owner, const ProcessIdentity& process, const std::string& workstationName) {
    return execute(session,
                   "UPDATE dbo.HostWorkstations SET ProcessId = ?, ProcessStarted = ?, WorkstationName = ? "
                   "WHERE Owner = ? AND ProcessId IS NULL",
                   {process.id, process.started, workstationName, std::int64_t{owner}}) == 1;
}

bool addOwner(Session& session, int owner, const ProcessIdentity& process, const std::string& workstationName) {
    try {
        execute(session,
                "INSERT INTO dbo.HostWorkstations (Owner, MachineName, WorkstationName, ProcessId, ProcessStarted) "
                "VALUES (?, ?, ?, ?, ?)",
                {std::int64_t{owner}, process.machine, workstationName, process.id, process.started});
        return true;
    } catch (const DatabaseError& error) {
        if (error.category() != ErrorCategory::Constraint) throw;
        return false;
    }
}

}  // namespace

void Workstations::removeKilled(const std::string& machine) {
    for (const Client& client : clientsOf(session_, machine)) {
        if (!client.inUse || mayBeAlive(client.process)) continue;
        HostTransaction transaction(session_);
        if (!takeFromKilled(session_, client)) continue;
        removeLocks(session_, client.owner);
        transaction.commit();
    }
}

void Workstations::removeKilledIfPossible(const std::string& machine) noexcept {
    try {
        const ShortWait wait(session_);
        removeKilled(machine);
    } catch (const std::exception&) {
        // Whoever needs a code asks again.
    }
}

int Workstations::claim(const ProcessIdentity& process, const std::string& workstationName) {
    removeKilled(process.machine);
    for (const Client& client : clientsOf(session_, process.machine)) {
        if (!client.inUse && takeUnused(session_, client.owner, process, workstationName)) return client.owner;
    }
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        const RowSet rows = rowsOf(session_, "SELECT ISNULL(MAX(Owner), 0) + 1 FROM dbo.HostWorkstations");
        const int owner = static_cast<int>(integerAt(rows, 0, 0));
        if (addOwner(session_, owner, process, workstationName)) return owner;
    }
    throw DatabaseError(ErrorCategory::Busy, "HYT00", 0, "Other clients took every workstation number that was tried");
}

void Workstations::release(int owner) {
    HostTransaction transaction(session_);
    removeLocks(session_, owner);
    execute(session_, "UPDATE dbo.HostWorkstations SET ProcessId = NULL, ProcessStarted = NULL WHERE Owner = ?",
            {std::int64_t{owner}});
    transaction.commit();
}

void Workstations::rename(int owner, const std::string& workstationName) {
    execute(session_, "UPDATE dbo.HostWorkstations SET WorkstationName = ? WHERE Owner = ?",
            {workstationName, std::int64_t{owner}});
}

}  // namespace basalt::host
