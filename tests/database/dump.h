// All that a database holds, as lines, to compare two states of it.
#pragma once

#include <regex>
#include <set>
#include <string>
#include <vector>

#include "database/scripts.h"
#include "tests/host_services/demo_database.h"

namespace basalt::host {

// The tables that the scripts make, under the names that they are made with.
inline std::vector<std::string> deployedTables() {
    static const std::regex create(R"(CREATE TABLE (dbo\.(\w+|\[[^\]]+\])))");
    std::vector<std::string> tables;
    for (const database::SqlScript& script : database::scripts()) {
        if (!script.name.starts_with("schema/")) continue;
        const std::string text(script.text);
        for (std::sregex_iterator match(text.begin(), text.end(), create), end; match != end; ++match)
            tables.push_back((*match)[1]);
    }
    return tables;
}

inline std::vector<std::string> dump(Session& session) {
    std::vector<std::string> lines;
    for (const std::string& table : deployedTables()) {
        std::string columns = table;
        for (const ColumnInfo& column : session.table(table).columns)
            columns += " " + column.name;
        lines.push_back(columns);
        // By content, so that the order in which rows lie does not count.
        const auto rows = linesOf(session, "SELECT * FROM " + table);
        const std::multiset<std::string> sorted(rows.begin(), rows.end());
        lines.insert(lines.end(), sorted.begin(), sorted.end());
    }
    return lines;
}

}  // namespace basalt::host
