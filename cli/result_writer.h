// Shows the results of a batch of statements.
//
//   ResultWriter writer(std::cout, std::cerr, ResultFormat::Table, outputColumns());
//   writer.write(session.run("select Code, Name from CostLevel"));
//
// Tables are aligned by the columns that characters take, whatever their script; numbers stand to the right. CSV is RFC
// 4180 with a line of titles, an empty line between two results, and an empty field for NULL where an empty text is "".
// JSON is one line a result set, a list of objects; {"affectedRows":n} for a statement without rows. What statements
// print is part of tables and goes to the notes otherwise.
#pragma once

#include <ostream>

#include "ado/session.h"

namespace basalt::cli {

enum class ResultFormat { Table, Csv, Json };

class ResultWriter {
public:
    // `terminalColumns` is 0 for an output that is no terminal. On a terminal, right-to-left cells are kept in their
    // columns by invisible marks, and a result that is too wide is shown row by row, a column a line.
    ResultWriter(std::ostream& out, std::ostream& notes, ResultFormat format, std::size_t terminalColumns)
        : out_(out), notes_(notes), format_(format), terminalColumns_(terminalColumns) {}

    void write(const BatchResult& batch);
    // In JSON a line {"error":{"type":"DatabaseError","number":208,"message":"..."}}; in the other formats nothing,
    // because errors go to the standard error.
    void write(const DatabaseError& error);

private:
    void writeTable(const RowSet& rows);
    void writeCsv(const RowSet& rows);
    void writeJson(const RowSet& rows);

    std::ostream& out_;
    std::ostream& notes_;
    ResultFormat format_;
    std::size_t terminalColumns_;
    bool written_ = false;  // a result in CSV
};

}  // namespace basalt::cli
