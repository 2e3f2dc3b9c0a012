// Everything that is read while this lives is of one moment, whatever others write meanwhile.
//
//   const ReadMoment moment(session);
//   const RowSet goods = rowsOf(session, "SELECT ...");
//   const RowSet prices = rowsOf(session, "SELECT ...");     as they were with those goods
//
// A transaction that is rolled back at the end. On a server READ COMMITTED is not enough for that: it is SNAPSHOT where
// the database allows it, which nobody has to wait for; otherwise SERIALIZABLE, under which those who write wait until
// the reading is over. Afterwards the connection is at READ COMMITTED again. Within a transaction of the caller's the
// level stays as the caller has it.
#pragma once

#include <optional>

#include "ado/session.h"
#include "host/services/sql_access.h"

namespace basalt::host {

class ReadMoment {
public:
    // DatabaseError as the session throws it.
    explicit ReadMoment(Session& session);
    ~ReadMoment();
    ReadMoment(const ReadMoment&) = delete;
    ReadMoment& operator=(const ReadMoment&) = delete;

private:
    void restoreLevel();

    Session& session_;
    bool levelChanged_ = false;
    std::optional<HostTransaction> transaction_;
};

}  // namespace basalt::host
