// Short cuts for the host's own statements: one statement, its values, its rows.
//
//   const RowSet rows = rowsOf(session, "SELECT Title FROM dbo.SoftwarePart WHERE Code = ?", {code});
//   if (execute(session, "DELETE FROM dbo.HostProperties WHERE Name = ?", {name}) == 0) ...
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "ado/session.h"

namespace basalt::host {

using Values = std::initializer_list<Value>;

// The first result set; empty without columns when there is none.
[[nodiscard]] RowSet rowsOf(Session& session, std::string_view sql, Values values = {});
// Cells whatever the column's type; null reads as 0 and as the empty text.
[[nodiscard]] std::int64_t integerAt(const RowSet& rows, std::size_t column, std::size_t row);
[[nodiscard]] std::string textAt(const RowSet& rows, std::size_t column, std::size_t row);
// The rows changed by the statement.
std::int64_t execute(Session& session, std::string_view sql, Values values = {});
// The update, and the insert when the update met no row. Another client may insert at the same moment.
void updateOrInsert(Session& session, std::string_view update, Values updateValues, std::string_view insert,
                    Values insertValues);

// Statements that nobody should be kept waiting for, as when a screen closes: for as long as this lives, a lock of
// another program is waited for a moment only, and then the statement is DatabaseError (Busy).
class ShortWait {
public:
    explicit ShortWait(Session& session);
    ~ShortWait();
    ShortWait(const ShortWait&) = delete;
    ShortWait& operator=(const ShortWait&) = delete;

private:
    Session& session_;
};

// A transaction of the host, or a part of the one that is open already. Without commit it is rolled back; in a part of
// another transaction that is for whoever began it to do.
class HostTransaction {
public:
    explicit HostTransaction(Session& session);
    ~HostTransaction();
    HostTransaction(const HostTransaction&) = delete;
    HostTransaction& operator=(const HostTransaction&) = delete;

    void commit();

private:
    Session& session_;
    bool mine_;
};

}  // namespace basalt::host
