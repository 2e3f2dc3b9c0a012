// Writes one record of a data set back to its table.
//
//   RowWriter writer(connection, "CostLevelGet_QUR", rows, statement);
//   writer.update(row, {{rateColumn, rate}});     UPDATE [CostLevel] SET [Rate] = ? WHERE [Code] = ? AND [Rate] = ?
//
// The table is the one to which the changed columns belong; its primary key must be among the columns. UsageError when
// the rows cannot be written back, before anything is sent. DatabaseError (Conflict) when the row is not as it was
// read; texts are compared to the letter.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ado/connection.h"
#include "ado/rowset.h"

namespace basalt {

class RowWriter {
public:
    struct Change {
        std::size_t column;
        Value value;
    };

    RowWriter(TADOConnection& connection, const std::string& component, const RowSet& rows, std::string statement);

    void update(std::size_t row, const std::vector<Change>& changes);
    struct Identity {
        std::size_t column;
        Value value;
    };
    // The value that the table gave the new row's identity column, when that column is among the rows' columns.
    std::optional<Identity> insert(const std::vector<Change>& changes);
    void remove(std::size_t row);

private:
    struct Target {
        std::string table;
        std::vector<std::string>
            columns;  // by column of the rows: the table's column, empty when it is not of the table
    };

    [[nodiscard]] Target targetOf(const std::vector<Change>& changes) const;
    [[nodiscard]] std::string commonTable(const std::vector<Change>& changes) const;
    void requireColumns(const Target& target, const std::vector<Change>& changes) const;
    // " WHERE [Code] = ? AND ..." with its values appended to `values`.
    std::string condition(const Target& target, std::size_t row, const std::vector<Change>& changes,
                          std::vector<Value>& values);
    [[nodiscard]] std::string given(const Change& change, std::vector<Value>& values) const;
    BatchResult send(const Target& target, const std::string& text, const std::vector<Value>& values);
    void requireOneRow(const BatchResult& result, const std::string& text) const;
    [[noreturn]] void fail(const std::string& problem) const;

    TADOConnection& connection_;
    const std::string& component_;
    const RowSet& rows_;
    std::string statement_;
};

// The table of `select ... from ONE_TABLE [alias] [where ...] [order by ...]`; empty for any statement in which a row
// of the result is not one row of one table.
[[nodiscard]] std::string singleTableOf(std::string_view statement);

}  // namespace basalt
