// The clients of one database. Each running client has a number of its own, the owner of its code locks.
//
// A client that ends gives its number back. One that was killed cannot; the next client of the same machine sees that
// the process is gone, takes the number over and removes the code locks that were left behind. Clients of other
// machines and containers, also of the same name, are never touched, because nobody here can tell whether they live.
#pragma once

#include <string>

#include "ado/session.h"
#include "host/services/process_identity.h"

namespace basalt::host {

class Workstations {
public:
    explicit Workstations(Session& session) : session_(session) {}

    // A number that no other client has. What killed clients of this machine left is removed first.
    [[nodiscard]] int claim(const ProcessIdentity& process, const std::string& workstationName);
    // Removes what killed clients of this machine left.
    void removeKilled(const std::string& machine);
    // The same at a start, which nothing of it may hinder: a database that is read-only, or that another program is
    // writing, is left to the next time.
    void removeKilledIfPossible(const std::string& machine) noexcept;
    // Gives the number back and removes the owner's code locks.
    void release(int owner);
    // Shown to others at the records that are open here.
    void rename(int owner, const std::string& workstationName);

private:
    Session& session_;
};

}  // namespace basalt::host
