#include "host/services/unit_list.h"

#include "host/services/sql_access.h"

namespace basalt::host {

std::vector<Unit> unitList(Session& session) {
    const RowSet rows = rowsOf(session, "SELECT Code, Name FROM dbo.Units ORDER BY Name, Code");
    std::vector<Unit> units;
    for (std::size_t row = 0; row < rows.rowCount(); ++row)
        units.push_back({.code = static_cast<int>(integerAt(rows, 0, row)), .name = textAt(rows, 1, row)});
    return units;
}

}  // namespace basalt::host
