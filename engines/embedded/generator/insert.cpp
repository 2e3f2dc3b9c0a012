#include "engines/embedded/generator/sql_writer.h"

namespace basalt::embedded {

void SqlWriter::insert(const BoundInsert& insert) {
    with(insert.with);
    const Table& table = *insert.table;
    *this << "INSERT INTO " << table.sqlName();
    if (insert.columns.empty() && !insert.generatesIdentity) {
        *this << " DEFAULT VALUES";
        returning(insert.returning);
        return;
    }
    *this << "(";
    for (std::size_t i = 0; i < insert.columns.size(); ++i)
        *this << (i == 0 ? "" : ", ") << sqlQuoted(table.columns[insert.columns[i]].name);
    if (insert.generatesIdentity)
        *this << (insert.columns.empty() ? "" : ", ") << sqlQuoted(table.identityColumn()->name);
    *this << ") ";
    const std::size_t begin = sql_.size();
    const auto values = [&](const std::vector<BoundPtr>& row) {
        list(row);
        if (insert.generatesIdentity) *this << (row.empty() ? "" : ", ") << "t_identity()";
    };
    if (insert.query != nullptr) {
        *this << "SELECT ";
        values(insert.values);
        *this << " FROM (";
        query(*insert.query);
        *this << ") AS q";
    } else {
        for (std::size_t i = 0; i < insert.rows.size(); ++i) {
            *this << (i == 0 ? "VALUES (" : ", (");
            values(insert.rows[i]);
            *this << ")";
        }
    }
    if (readsUnseen_ && (insert.query != nullptr || insert.rows.size() > 1)) {
        // By itself SQLite works the rows out before it writes the first of them only where it sees that they are read
        // from the table.
        const std::string rows = sql_.substr(begin);
        sql_.resize(begin);
        *this << "WITH m AS MATERIALIZED (" << rows << ") SELECT * FROM m";
    }
    returning(insert.returning);
}

}  // namespace basalt::embedded
