// In what drivers and their servers differ, each difference by its name. Nothing else asks which driver it has.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "engines/odbc/odbc_api.h"
#include "engines/odbc/result_calls.h"

namespace basalt::odbc {

struct DriverTraits {
    // The server speaks T-SQL: @@TRANCOUNT, XACT_STATE(), conditional ROLLBACK. Taken for granted unless the server is
    // one that is known not to, because a server that is compatible with SQL Server may go by any name.
    bool speaksTransactSql = true;
    // A column that SQLGetData reads may stand before bound ones (SQL_GD_ANY_COLUMN). Without it everything from the
    // first long column on is read with SQLGetData.
    bool readsAnyColumn = false;
    // Of a result without rows FreeTDS has read the end when it stands on it, and knows the count. A fetch would then
    // take the end of the next statement for that of this result, whose count would be lost.
    bool fetchPassesEmptyResults = false;
    // FreeTDS passes nvarchar(max) for a parameter bound as SQL_WLONGVARCHAR, and nvarchar(1) for one bound as
    // SQL_WVARCHAR without a length, which is Microsoft's way to say max. The binary types alike.
    bool maxParametersAreLong = false;
    // What follows a failed execution is read with these. Only of FreeTDS it is known how it behaves.
    std::optional<ResultCalls> callsBehindFailure;

    [[nodiscard]] static DriverTraits of(SQLHDBC connection);
};

// The message without the labels of its source: "[FreeTDS][SQL Server]Invalid object name" is "Invalid object name".
// Brackets that belong to the message itself stay.
[[nodiscard]] std::string_view withoutSource(std::string_view message);

}  // namespace basalt::odbc
